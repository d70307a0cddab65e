# Tests that do not run on Windows. Each counts as skipped, and its reason stands in left-out-tests.txt of the build folder.
set(VIREO_LEFT_OUT_TESTS ${PROJECT_BINARY_DIR}/left-out-tests.txt)
file(WRITE ${VIREO_LEFT_OUT_TESTS} "")
set(VIREO_NO_RECORDER "the call recorder has no form for Windows yet")

function(vireo_leave_out name reason)
    file(APPEND ${VIREO_LEFT_OUT_TESTS} "${name}: ${reason}\n")
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "left out on Windows: ${reason}")
    set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "left out on Windows")
endfunction()

# The same for a program: the target is there to be told more about, but is not built.
function(vireo_leave_out_program name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "REASON" "SOURCES")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${arg_SOURCES})
    vireo_leave_out(${name} "${arg_REASON}")
endfunction()
