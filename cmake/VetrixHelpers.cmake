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
