# vx_windows_resources(target DESCRIPTION text LEVEL asInvoker|requireAdministrator)
# Embeds the program's icon, an application manifest and version information
# (packaging/windows/program.rc.in, program.manifest.in) with windres. The
# manifest asks for the execution level and declares the Windows versions the
# program knows (7 to 11): without that, Windows 10 and 11 report themselves
# to the program as 6.2.
function(vx_windows_resources target)
    cmake_parse_arguments(R "" "DESCRIPTION;LEVEL" "" ${ARGN})
    if(VX_HOST_ICON)
        set(VX_RC_ICON ${VX_HOST_ICON})
    else()
        # A native Windows build renders the icon itself (resources/).
        set(VX_RC_ICON ${CMAKE_BINARY_DIR}/resources/gen/orvex/Vetrix/Vetrix/Client.ico)
    endif()
    get_target_property(VX_RC_NAME ${target} OUTPUT_NAME)
    if(NOT VX_RC_NAME)
        set(VX_RC_NAME ${target})
    endif()
    set(VX_FILE_DESCRIPTION ${R_DESCRIPTION})
    set(VX_EXECUTION_LEVEL ${R_LEVEL})
    set(version ${PROJECT_VERSION_MAJOR} ${PROJECT_VERSION_MINOR} ${PROJECT_VERSION_PATCH} 0)
    list(JOIN version "," VX_VERSION_COMMAS)
    list(JOIN version "." VX_VERSION_QUAD)

    set(dir ${CMAKE_CURRENT_BINARY_DIR}/${target}_win)
    set(VX_RC_MANIFEST ${dir}/${VX_RC_NAME}.manifest)
    set(templates ${PROJECT_SOURCE_DIR}/packaging/windows)
    configure_file(${templates}/program.manifest.in ${VX_RC_MANIFEST} @ONLY)
    configure_file(${templates}/program.rc.in ${dir}/${VX_RC_NAME}.rc @ONLY)
    target_sources(${target} PRIVATE ${dir}/${VX_RC_NAME}.rc)
    set_source_files_properties(${dir}/${VX_RC_NAME}.rc PROPERTIES OBJECT_DEPENDS "${VX_RC_ICON};${VX_RC_MANIFEST}")
    # The icon is made by the resources folder (or copied from the host build).
    if(TARGET rccpackages)
        add_dependencies(${target} rccpackages)
    endif()
endfunction()
