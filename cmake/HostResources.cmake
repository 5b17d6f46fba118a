# Cross builds: the resource packages (bin/rcc/*.rcc) and the compiled
# translations (bin/Translation/*.qm) are the same bytes on every platform,
# so they come from a host build of this tree instead of being generated a
# second time (the Windows Qt has neither QtSvg nor the Linguist tools).
# The host build's own targets make them; this file only copies.
#
# VX_HOST_BUILD_DIR: the host build folder (dev.sh builds "build" first).
set(VX_HOST_BUILD_DIR "" CACHE PATH "Host build folder the cross build takes rcc/ and Translation/ from")
if(NOT VX_HOST_BUILD_DIR)
    if(EXISTS ${PROJECT_SOURCE_DIR}/build/CMakeCache.txt)
        set(VX_HOST_BUILD_DIR ${PROJECT_SOURCE_DIR}/build CACHE PATH "" FORCE)
    else()
        message(FATAL_ERROR "A cross build needs a host build of this tree for its resources: "
            "configure one (cmake -S . -B build) and pass -DVX_HOST_BUILD_DIR=<that folder>")
    endif()
endif()
if(NOT EXISTS ${VX_HOST_BUILD_DIR}/CMakeCache.txt)
    message(FATAL_ERROR "VX_HOST_BUILD_DIR=${VX_HOST_BUILD_DIR} is not a configured build folder")
endif()

set(vx_host_targets rccpackages translations)
# Bring the host's resources up to date now, so the lists below are known,
# and again at every build through the target hostresources.
execute_process(COMMAND ${CMAKE_COMMAND} --build ${VX_HOST_BUILD_DIR} --target ${vx_host_targets}
    RESULT_VARIABLE vx_host_result OUTPUT_QUIET)
if(NOT vx_host_result EQUAL 0)
    message(FATAL_ERROR "Building the resources of the host build ${VX_HOST_BUILD_DIR} failed")
endif()
file(GLOB vx_host_rcc ${VX_HOST_BUILD_DIR}/bin/rcc/*.rcc)
file(GLOB vx_host_qm ${VX_HOST_BUILD_DIR}/bin/Translation/*.qm)
# The program's icon, for the Windows resource script (app/).
set(VX_HOST_ICON ${VX_HOST_BUILD_DIR}/resources/gen/orvex/Vetrix/Vetrix/Client.ico
    CACHE INTERNAL "Client.ico rendered by the host build")

add_custom_target(hostresources
    COMMAND ${CMAKE_COMMAND} --build ${VX_HOST_BUILD_DIR} --target ${vx_host_targets}
    BYPRODUCTS ${vx_host_rcc} ${vx_host_qm} ${VX_HOST_ICON}
    COMMENT "Updating the resources of the host build"
    VERBATIM USES_TERMINAL)

# vx_copy_from_host(target subdir files...): copies into bin/<subdir> and
# installs there.
function(vx_copy_from_host target subdir)
    set(outputs)
    foreach(src IN LISTS ARGN)
        get_filename_component(name ${src} NAME)
        set(dst ${VX_BIN_DIR}/${subdir}/${name})
        add_custom_command(OUTPUT ${dst}
            COMMAND ${CMAKE_COMMAND} -E copy_if_different ${src} ${dst}
            DEPENDS ${src} hostresources
            VERBATIM)
        list(APPEND outputs ${dst})
    endforeach()
    add_custom_target(${target} ALL DEPENDS ${outputs})
    install(FILES ${outputs} DESTINATION bin/${subdir})
endfunction()
vx_copy_from_host(rccpackages rcc ${vx_host_rcc})
vx_copy_from_host(translations Translation ${vx_host_qm})
