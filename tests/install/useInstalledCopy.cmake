# Installs into a scratch prefix, builds examples/curve against the copy there, and runs it.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(prefix ${SCRATCH_DIR}/prefix)
set(example ${SOURCE_DIR}/examples/curve)
set(program ${SCRATCH_DIR}/curve)
file(REMOVE_RECURSE ${SCRATCH_DIR})
file(MAKE_DIRECTORY ${SCRATCH_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

if(WAY STREQUAL "cmake")
    run(${CMAKE_COMMAND} -S ${example} -B ${SCRATCH_DIR} -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX}
        -DCMAKE_CXX_FLAGS=${EXTRA_FLAGS})
    run(${CMAKE_COMMAND} --build ${SCRATCH_DIR})
else()
    set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIB_DIR}/pkgconfig)
    execute_process(COMMAND pkg-config --cflags --libs vireo
        OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${flags} ${EXTRA_FLAGS}")
    run(${CXX} ${example}/main.cpp ${flags} -Wl,-rpath,${prefix}/${LIB_DIR} -o ${program})
endif()

# It runs until its window is closed, so being ended by the time limit is its success.
execute_process(COMMAND ${program} TIMEOUT 5 RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result MATCHES "timeout")
    message(FATAL_ERROR "the program did not stay open: ${result}\n${errors}")
endif()
