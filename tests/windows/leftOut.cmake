# Tests that do not run on Windows. Each counts as skipped; its reason stands in left-out-tests.txt of the build folder.
set(VIREO_LEFT_OUT_TESTS ${PROJECT_BINARY_DIR}/left-out-tests.txt)
file(WRITE ${VIREO_LEFT_OUT_TESTS} "")
function(vireo_leave_out name reason)
    file(APPEND ${VIREO_LEFT_OUT_TESTS} "${name}: ${reason}\n")
    add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "left out on Windows: ${reason}")
    set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "left out on Windows")
endfunction()

if(NOT VIREO_HAVE_CG)
    foreach(program shaders_cg_gl_test cg_examples_test cg_fallback_test ProgramKindsGLTest.Cg)
        vireo_leave_out(${program} "there is no Cg runtime")
    endforeach()
endif()
