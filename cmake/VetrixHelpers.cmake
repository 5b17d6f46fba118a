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
    endif()
endfunction()
