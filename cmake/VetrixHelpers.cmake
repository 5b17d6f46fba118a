# vx_add_test(NAME name SOURCES a.cpp ... LIBS target ... [GUI] [PORTABLE | WINDOWS]
#             [LABELS l ...] [ENV VAR=value ...])
# Adds one Qt Test executable and registers it with CTest. Widget tests run
# on the offscreen platform so they need no display.
#
# Which builds get the test:
#   (no flag)  host builds only (Linux): fixtures of sysfs, /etc, netns, D-Bus.
#   PORTABLE   every build: also cross-built for Windows and run under Wine
#              (tools/wine-run); the same assertions must hold on both.
#   WINDOWS    Windows builds only (tests/win/).
# A test left out of a build has no target: guard follow-up commands with
# if(TARGET name).
function(vx_add_test)
    cmake_parse_arguments(T "GUI;PORTABLE;WINDOWS" "NAME" "SOURCES;LIBS;LABELS;ENV" ${ARGN})
    if(WIN32 AND NOT (T_PORTABLE OR T_WINDOWS))
        return()
    endif()
    if(NOT WIN32 AND T_WINDOWS)
        return()
    endif()
    add_executable(${T_NAME} ${T_SOURCES})
    set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${T_NAME} PRIVATE Qt5::Test ${T_LIBS})
    target_compile_definitions(${T_NAME} PRIVATE
        VX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" VX_BIN_DIR="${VX_BIN_DIR}" VX_EXE_SUFFIX="${CMAKE_EXECUTABLE_SUFFIX}")
    add_test(NAME ${T_NAME} COMMAND ${T_NAME})
    set(env QT_QPA_PLATFORM=offscreen ${T_ENV})
    set(labels ${T_LABELS})
    if(WIN32)
        # Qt Test under Wine writes its report to a file (see tools/wine-run);
        # the DLLs and plug-ins come from bin/.
        set_tests_properties(${T_NAME} PROPERTIES TIMEOUT 300)
        list(APPEND labels windows)
    endif()
    set_tests_properties(${T_NAME} PROPERTIES ENVIRONMENT "${env}" LABELS "${labels}")
    vx_wine_test(${T_NAME})
endfunction()

# vx_wine_test(name ...): under Wine, the tests run in the prefix that the
# fixture test "wine_prefix" (tests/CMakeLists.txt) makes fresh for each run.
function(vx_wine_test)
    if(VX_WINEPREFIX)
        set_tests_properties(${ARGN} PROPERTIES FIXTURES_REQUIRED wineprefix)
    endif()
endfunction()

# vx_add_fuzz_target(NAME name SOURCES a.cpp ... [LIBS target ...] [INCLUDES dir ...] CORPUS dir)
# Adds the fuzz target fuzz_<name>. The sources under test belong in SOURCES
# (not only in a linked library) so a libFuzzer build instruments them. With
# clang and VX_BUILD_FUZZ it is a libFuzzer program (ASan + UBSan) and its
# corpus folder is listed in fuzz-targets.txt of the build folder for
# tools/fuzz; otherwise a small main replays the corpus as a CTest test.
function(vx_add_fuzz_target)
    cmake_parse_arguments(F "" "NAME;CORPUS" "SOURCES;LIBS;INCLUDES" ${ARGN})
    set(target fuzz_${F_NAME})
    add_executable(${target} ${F_SOURCES})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_include_directories(${target} PRIVATE ${F_INCLUDES})
    target_link_libraries(${target} PRIVATE ${F_LIBS})
    if(VX_BUILD_FUZZ AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer,address,undefined -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer,address,undefined)
        set_property(GLOBAL APPEND PROPERTY VX_FUZZ_TARGETS "${F_NAME} ${CMAKE_BINARY_DIR}/tests/${target} ${F_CORPUS}")
    else()
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/fuzz_replay_main.cpp)
        add_test(NAME ${target}_replay COMMAND ${target} ${F_CORPUS})
        # A hang is a finding too: fail long before CTest's default of 25 minutes.
        set_tests_properties(${target}_replay PROPERTIES TIMEOUT 600)
        vx_wine_test(${target}_replay)
    endif()
endfunction()

# vx_platform_sources(target stem ...)
# Adds each stem's platform file to the target: stem_win.cpp in Windows
# builds, stem_linux.cpp otherwise. The portable part (stem.h, stem.cpp) is
# listed with the target as usual; files that exist on one platform only are
# added in an if(WIN32) block of their own.
function(vx_platform_sources target)
    if(WIN32)
        set(suffix win)
    else()
        set(suffix linux)
    endif()
    foreach(stem IN LISTS ARGN)
        target_sources(${target} PRIVATE ${stem}_${suffix}.cpp)
    endforeach()
endfunction()
