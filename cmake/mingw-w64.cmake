# Cross build for Windows x64 with Debian's mingw-w64 (posix thread model:
# std::thread and std::mutex need it) against a Qt 5.15 built for the same
# compiler.
#   cmake -S . -B build-win -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
#         -DVX_QT_WIN_PREFIX=/opt/qt5-mingw64 -DVX_HOST_BUILD_DIR=$PWD/build
# VX_QT_WIN_PREFIX (or the environment variable of the same name) is the
# unpacked Qt for Windows; its bin/ holds Linux moc, rcc and uic.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(VX_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${VX_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VX_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${VX_MINGW_TRIPLET}-windres)

if(NOT VX_QT_WIN_PREFIX)
    if(DEFINED ENV{VX_QT_WIN_PREFIX})
        set(VX_QT_WIN_PREFIX $ENV{VX_QT_WIN_PREFIX})
    else()
        set(VX_QT_WIN_PREFIX /opt/qt5-mingw64)
    endif()
endif()
set(VX_QT_WIN_PREFIX ${VX_QT_WIN_PREFIX} CACHE PATH "Qt 5.15 built for Windows x64 with mingw-w64")
# try_compile projects see the toolchain file again; hand them the prefix.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VX_QT_WIN_PREFIX)

# Libraries, headers and packages come from the mingw-w64 sysroot and the
# Windows Qt only; programs (moc, rcc, windres) from the host.
set(CMAKE_FIND_ROOT_PATH /usr/${VX_MINGW_TRIPLET} ${VX_QT_WIN_PREFIX})
set(CMAKE_PREFIX_PATH ${VX_QT_WIN_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The run-time DLLs of the compiler, copied beside the programs.
set(VX_MINGW_RUNTIME_DIRS /usr/lib/gcc/${VX_MINGW_TRIPLET}/12-posix /usr/${VX_MINGW_TRIPLET}/lib)
