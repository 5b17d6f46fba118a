# The Windows installer (NSIS): target "installer" stages `cmake --install`
# into installer/stage and packs it with makensis into VX_INSTALLER
# (VetrixTool-<version>-win64-setup.exe in the build folder). Not part of
# "all" (packing takes a while); dev.sh builds it for the tests (tests/win).
find_program(VX_MAKENSIS makensis)
if(NOT VX_MAKENSIS)
    message(STATUS "makensis not found (apt-get install nsis): no installer target")
    return()
endif()

set(vx_stage ${CMAKE_BINARY_DIR}/installer/stage)
set(vx_nsi ${CMAKE_CURRENT_SOURCE_DIR}/windows/VetrixTool.nsi)
if(VX_HOST_ICON)
    set(vx_icon ${VX_HOST_ICON})
else()
    set(vx_icon ${CMAKE_BINARY_DIR}/resources/gen/orvex/Vetrix/Vetrix/Client.ico)
endif()
set(vx_installed_targets VetrixTool vetrix-check probekit winruntime rccpackages translations logconfig usermanual)
set(vx_existing)
foreach(target IN LISTS vx_installed_targets)
    if(TARGET ${target})
        list(APPEND vx_existing ${target})
    endif()
endforeach()

add_custom_command(OUTPUT ${VX_INSTALLER}
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${vx_stage}
    COMMAND ${CMAKE_COMMAND} --install ${CMAKE_BINARY_DIR} --prefix ${vx_stage} --strip
    COMMAND ${VX_MAKENSIS} -V2 -DVX_VERSION=${PROJECT_VERSION} -DVX_STAGE=${vx_stage}
            -DVX_OUTFILE=${VX_INSTALLER} -DVX_ICON=${vx_icon} ${vx_nsi}
    DEPENDS ${vx_existing} ${vx_nsi}
    COMMENT "Packing the Windows installer"
    VERBATIM)
add_custom_target(installer DEPENDS ${VX_INSTALLER})
