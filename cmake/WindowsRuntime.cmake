# Windows builds: the DLLs the programs need at run time, copied into bin/
# (so the build tree runs in place, as on Linux) and installed beside the
# programs:
#   bin/Qt5*.dll                       the Qt modules the programs link
#   bin/libstdc++-6.dll, libgcc_s_seh-1.dll, libwinpthread-1.dll
#                                      the MinGW run time (Qt links it too)
#   bin/platforms/qwindows.dll         the platform plug-in, found beside the
#                                      program before main() runs
#   bin/imageformats/, bin/styles/     GIF/ICO/JPEG readers, the Vista style
# The test-only pieces (Qt5Test.dll, the offscreen platform) are copied into
# the build tree but not installed.

set(VX_WIN_QT_MODULES Core Gui Widgets Network Concurrent)
set(VX_WIN_QT_PLUGINS platforms/qwindows imageformats/qgif imageformats/qico imageformats/qjpeg
    styles/qwindowsvistastyle)
set(VX_WIN_TEST_QT_MODULES Test)
set(VX_WIN_TEST_QT_PLUGINS platforms/qoffscreen platforms/qminimal)
set(VX_WIN_MINGW_DLLS libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)

function(vx_find_mingw_dll var name)
    find_file(${var} ${name} PATHS ${VX_MINGW_RUNTIME_DIRS} NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
    if(NOT ${var})
        message(FATAL_ERROR "${name} not found in ${VX_MINGW_RUNTIME_DIRS}")
    endif()
endfunction()

# vx_windows_runtime(): call once Qt has been found.
function(vx_windows_runtime)
    get_target_property(qt_core_dll Qt5::Core IMPORTED_LOCATION_RELEASE)
    get_filename_component(qt_bin ${qt_core_dll} DIRECTORY)
    get_filename_component(qt_prefix ${qt_bin} DIRECTORY)
    set(qt_plugins ${qt_prefix}/plugins)

    set(copies) # "source|folder below bin (or empty)|installed (ON/OFF)"
    foreach(module IN LISTS VX_WIN_QT_MODULES)
        list(APPEND copies "${qt_bin}/Qt5${module}.dll||ON")
    endforeach()
    foreach(module IN LISTS VX_WIN_TEST_QT_MODULES)
        list(APPEND copies "${qt_bin}/Qt5${module}.dll||OFF")
    endforeach()
    foreach(plugin IN LISTS VX_WIN_QT_PLUGINS)
        get_filename_component(sub ${plugin} DIRECTORY)
        list(APPEND copies "${qt_plugins}/${plugin}.dll|${sub}|ON")
    endforeach()
    foreach(plugin IN LISTS VX_WIN_TEST_QT_PLUGINS)
        get_filename_component(sub ${plugin} DIRECTORY)
        list(APPEND copies "${qt_plugins}/${plugin}.dll|${sub}|OFF")
    endforeach()
    foreach(dll IN LISTS VX_WIN_MINGW_DLLS)
        string(MAKE_C_IDENTIFIER "VX_MINGW_${dll}" var)
        vx_find_mingw_dll(${var} ${dll})
        list(APPEND copies "${${var}}||ON")
    endforeach()

    set(outputs)
    foreach(copy IN LISTS copies)
        string(REPLACE "|" ";" parts "${copy}")
        list(GET parts 0 src)
        list(GET parts 1 sub)
        list(GET parts 2 inst)
        if(NOT EXISTS ${src})
            message(FATAL_ERROR "Windows run time: ${src} not found")
        endif()
        get_filename_component(name ${src} NAME)
        if(sub)
            set(dst ${VX_BIN_DIR}/${sub}/${name})
        else()
            set(dst ${VX_BIN_DIR}/${name})
        endif()
        add_custom_command(OUTPUT ${dst}
            COMMAND ${CMAKE_COMMAND} -E copy_if_different ${src} ${dst}
            DEPENDS ${src}
            VERBATIM)
        list(APPEND outputs ${dst})
        if(inst)
            install(FILES ${src} DESTINATION bin/${sub})
        endif()
    endforeach()
    add_custom_target(winruntime ALL DEPENDS ${outputs} COMMENT "Copying the Windows run-time DLLs")
endfunction()
