# Included by what vireo_add_test writes, where ctest reads the tests of a build: adds each fixture of PROGRAM as one test,
# PREFIX<fixture>, run by COMMAND in DIRECTORY with ENVIRONMENT and PROPERTIES. The program is asked for its fixtures only
# where it is newer than LIST, which keeps the answer.
if(NOT EXISTS "${PROGRAM}")
    add_test(${PREFIX}${NAME}_NOT_BUILT "${PROGRAM}")
    return()
endif()

if("${PROGRAM}" IS_NEWER_THAN "${LIST}")
    execute_process(COMMAND ${COMMAND} --gtest_list_tests WORKING_DIRECTORY "${DIRECTORY}" TIMEOUT 60
        OUTPUT_VARIABLE answer ERROR_VARIABLE errors RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${PROGRAM} does not list its tests (${result}):\n${answer}${errors}")
    endif()
    file(WRITE "${LIST}" "${answer}")
endif()

file(STRINGS "${LIST}" fixtures REGEX "^[A-Za-z0-9_/]+\\.")
foreach(fixture IN LISTS fixtures)
    string(REGEX REPLACE "\\..*" "" fixture "${fixture}")
    add_test(${PREFIX}${fixture} ${COMMAND} "--gtest_filter=${fixture}.*")
    # Skipped is what has skipped each of its tests, which GoogleTest says last.
    set_tests_properties(${PREFIX}${fixture} PROPERTIES WORKING_DIRECTORY "${DIRECTORY}" TIMEOUT 900
        ENVIRONMENT "${ENVIRONMENT};VIREO_TIME_LIMIT=880"
        SKIP_REGULAR_EXPRESSION "PASSED  \\] 0 tests\\.\r?\n\\[  SKIPPED[^\n]*\n(\\[  SKIPPED \\] [^\n]*\n)+\$" ${PROPERTIES})
endforeach()
