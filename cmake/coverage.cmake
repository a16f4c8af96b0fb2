# core-coverage: how much of varda_core the core's own tests reach (the tests that ctest labels "core").
# Prints the share of lines, file by file and in all, and fails below the minimum.
set(VARDA_MINIMUM_COVERAGE 95 CACHE STRING "Least line coverage of the core, in percent")

find_program(GCOVR gcovr REQUIRED)

# A source of the core counts together with the header of its name.
get_target_property(core_sources varda_core SOURCES)
get_target_property(core_folder varda_core SOURCE_DIR)
file(RELATIVE_PATH core_folder ${PROJECT_SOURCE_DIR} ${core_folder})
set(core_filters "")
foreach(source IN LISTS core_sources)
    string(REGEX REPLACE "\\.(cpp|h)$" "" stem "${core_folder}/${source}")
    list(APPEND core_filters --filter "${stem}\\.(cpp|h)$")
endforeach()

# Counts of an earlier run would be added to this one's. gcovr reads the filters from where it stands.
add_custom_target(core-coverage
    COMMAND find . -name "*.gcda" -delete
    COMMAND ${CMAKE_CTEST_COMMAND} --output-on-failure --no-tests=error -L "^core$" -LE "^long$"
    COMMAND ${CMAKE_COMMAND} -E chdir ${PROJECT_SOURCE_DIR}
        ${GCOVR} ${core_filters} --fail-under-line ${VARDA_MINIMUM_COVERAGE} ${PROJECT_BINARY_DIR}
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    DEPENDS varda_core_tests
    VERBATIM USES_TERMINAL
    COMMENT "Line coverage of the core")
