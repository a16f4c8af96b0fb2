# core-coverage: how much of varda_core the core's own tests reach (the tests that ctest labels "core").
# Prints the share of lines, file by file and in all, and fails below the minimum.
set(VARDA_MINIMUM_COVERAGE 97 CACHE STRING "Least line coverage of the core, in percent")

find_program(GCOVR gcovr REQUIRED)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    string(REGEX MATCH "^[0-9]+" version "${CMAKE_CXX_COMPILER_VERSION}")
    set(gcov --gcov-executable "llvm-cov-${version} gcov")
endif()

# Counts of an earlier run would be added to this one's. gcovr reads the filters from where it stands.
add_custom_target(core-coverage
    COMMAND find . -name "*.gcda" -delete
    COMMAND ${CMAKE_CTEST_COMMAND} --output-on-failure --no-tests=error -L "^core$" -LE "^long$"
    COMMAND ${CMAKE_COMMAND} -E chdir ${PROJECT_SOURCE_DIR}
        ${GCOVR} ${gcov} --filter src/core/ --fail-under-line ${VARDA_MINIMUM_COVERAGE} ${PROJECT_BINARY_DIR}
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    DEPENDS varda_core_tests
    VERBATIM USES_TERMINAL
    COMMENT "Line coverage of the core")
