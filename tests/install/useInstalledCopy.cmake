cmake_minimum_required(VERSION 3.25)

# Installs into a scratch prefix, builds EXAMPLES and the program start-up against the copy there, and runs it and two of them.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(prefix ${SCRATCH_DIR}/prefix)
file(REMOVE_RECURSE ${SCRATCH_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

function(build folder)
    get_filename_component(example ${folder} NAME)
    set(source ${SOURCE_DIR}/${folder})
    set(scratch ${SCRATCH_DIR}/${example})
    file(MAKE_DIRECTORY ${scratch})
    if(WAY STREQUAL "cmake")
        run(${CMAKE_COMMAND} -S ${source} -B ${scratch} -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX}
            -DCMAKE_CXX_FLAGS=${EXTRA_FLAGS})
        run(${CMAKE_COMMAND} --build ${scratch})
    else()
        set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIB_DIR}/pkgconfig)
        set(package vireo)
        if(example STREQUAL "cg-program")
            set(package vireo-cg)
        elseif(example MATCHES "^(plot|scene|image)$")
            set(package vireo-show)
        endif()
        execute_process(COMMAND pkg-config --cflags --libs ${package} glu
            OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        separate_arguments(flags UNIX_COMMAND "${flags} ${EXTRA_FLAGS}")
        run(${CXX} -I${SOURCE_DIR}/examples/support ${source}/main.cpp ${flags} -Wl,-rpath,${prefix}/${LIB_DIR}
            -o ${scratch}/${example})
    endif()
endfunction()

separate_arguments(EXAMPLES UNIX_COMMAND "${EXAMPLES}")
foreach(example IN LISTS EXAMPLES)
    build(examples/${example})
endforeach()
build(tests/install/start-up)
run(${prefix}/bin/vireo-info --version)

# A copy with Cg programs is of use without the runtime's headers too, but for these.
if(WAY STREQUAL "cmake" AND "cg-program" IN_LIST EXAMPLES)
    function(configure_without_cg source result output)
        execute_process(
            COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR}/${source} -B ${SCRATCH_DIR}/without-cg/${source}
                -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_DISABLE_FIND_PACKAGE_Cg=ON
            RESULT_VARIABLE code ERROR_VARIABLE errors OUTPUT_QUIET)
        set(${result} ${code} PARENT_SCOPE)
        set(${output} "${errors}" PARENT_SCOPE)
    endfunction()
    configure_without_cg(examples result errors)
    if(NOT result EQUAL 0 OR EXISTS ${SCRATCH_DIR}/without-cg/examples/cg-program)
        message(FATAL_ERROR "the examples cannot do without the Cg runtime: ${errors}")
    endif()
    configure_without_cg(examples/cg-program result errors)
    string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
    if(result EQUAL 0 OR NOT errors MATCHES "The headers or libraries of the Cg runtime were not found")
        message(FATAL_ERROR "what is missing for Cg programs is not said: ${errors}")
    endif()
endif()

# A component that there is none of is named.
if(WAY STREQUAL "cmake")
    set(misspelt ${SCRATCH_DIR}/misspelt)
    file(WRITE ${misspelt}/CMakeLists.txt
        "cmake_minimum_required(VERSION 3.25)\nproject(misspelt CXX)\nfind_package(vireo REQUIRED COMPONENTS shwo)\n")
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${misspelt} -B ${misspelt}/build -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX}
        RESULT_VARIABLE result ERROR_VARIABLE errors OUTPUT_QUIET)
    if(result EQUAL 0 OR NOT errors MATCHES "no component \"shwo\"")
        message(FATAL_ERROR "a misspelt component is not named: ${errors}")
    endif()
endif()

# Leaks are looked for by the tests of the examples.
set(ENV{ASAN_OPTIONS} "detect_leaks=0:$ENV{ASAN_OPTIONS}")
run(${SCRATCH_DIR}/start-up/start-up)
set(picture ${SCRATCH_DIR}/picture.png)
run(${SCRATCH_DIR}/geometry-list/geometry-list ${picture})
if(NOT EXISTS ${picture})
    message(FATAL_ERROR "there is no ${picture}")
endif()

foreach(example_and_picture plot:pressure scene:world image:heights)
    string(REGEX MATCH "(.*):(.*)" unused ${example_and_picture})
    set(example ${CMAKE_MATCH_1})
    set(picture ${SCRATCH_DIR}/pictures/${CMAKE_MATCH_2}.png)
    run(${CMAKE_COMMAND} -E env VIREO_SHOW=pictures:${SCRATCH_DIR}/pictures ${SCRATCH_DIR}/${example}/${example})
    if(NOT EXISTS ${picture})
        message(FATAL_ERROR "there is no ${picture}")
    endif()
endforeach()

# This one runs until its window is closed, so being ended by the time limit is its success.
execute_process(COMMAND ${SCRATCH_DIR}/curve/curve TIMEOUT 5 RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result MATCHES "timeout")
    message(FATAL_ERROR "the program did not stay open: ${result}\n${errors}")
endif()
