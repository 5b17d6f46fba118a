# vx_add_test(NAME name SOURCES a.cpp ... LIBS target ... [GUI] [LABELS l ...])
# Adds one Qt Test executable and registers it with CTest. Widget tests run
# on the offscreen platform so they need no display.
function(vx_add_test)
    cmake_parse_arguments(T "GUI" "NAME" "SOURCES;LIBS;LABELS;ENV" ${ARGN})
    add_executable(${T_NAME} ${T_SOURCES})
    set_target_properties(${T_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    target_link_libraries(${T_NAME} PRIVATE Qt5::Test ${T_LIBS})
    target_compile_definitions(${T_NAME} PRIVATE
        VX_SOURCE_DIR="${PROJECT_SOURCE_DIR}" VX_BIN_DIR="${VX_BIN_DIR}")
    add_test(NAME ${T_NAME} COMMAND ${T_NAME})
    set(env QT_QPA_PLATFORM=offscreen ${T_ENV})
    set_tests_properties(${T_NAME} PROPERTIES ENVIRONMENT "${env}" LABELS "${T_LABELS}")
endfunction()
