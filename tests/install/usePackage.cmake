cmake_minimum_required(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# make_picture(<pattern of the picture's file> <command>...)
function(make_picture pattern)
    run(${RUN} ${ARGN})
    file(GLOB pictures ${pattern})
    if(NOT pictures)
        message(FATAL_ERROR "there is no ${pattern}")
    endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH_DIR})
run(${CMAKE_COMMAND} -E chdir ${BUILD_DIR} ${CMAKE_CPACK_COMMAND} --config CPackConfig.cmake -B ${SCRATCH_DIR})
file(GLOB package ${SCRATCH_DIR}/*.zip)
file(ARCHIVE_EXTRACT INPUT ${package} DESTINATION ${SCRATCH_DIR}/unpacked)
file(GLOB package ${SCRATCH_DIR}/unpacked/*)

# Each DLL that is not vireo's comes with its licence.
set(licences Qt5Svg:libqt5svg5 Qt5:libqt5core5a qwt:libqwt-qt5-6 docking:libqt-advanced-docking-system-dev
    gcc:gcc-mingw-w64-base stdc[+][+]:gcc-mingw-w64-base winpthread:mingw-w64-common)
file(GLOB dlls RELATIVE ${package}/bin ${package}/bin/*.dll)
list(FILTER dlls EXCLUDE REGEX "^lib(vireo|tavo)")
foreach(dll IN LISTS dlls)
    set(licence)
    foreach(entry IN LISTS licences)
        string(REGEX MATCH "^([^:]+):(.+)$" unused "${entry}")
        if(NOT licence AND dll MATCHES "${CMAKE_MATCH_1}")
            string(REGEX REPLACE "^[^:]+:" "" licence "${entry}")
        endif()
    endforeach()
    if(NOT licence OR NOT EXISTS ${package}/licences/${licence}.txt)
        message(FATAL_ERROR "the zip holds ${dll} without its licence")
    endif()
endforeach()
if(NOT EXISTS ${package}/licences/copyright)
    message(FATAL_ERROR "the zip does not say what vireo is made with")
endif()

set(example ${SCRATCH_DIR}/geometry-list)
run(${CMAKE_COMMAND} -S ${package}/examples/geometry-list -B ${example} -G Ninja --toolchain ${TOOLCHAIN}
    -Dvireo_DIR=${package}/lib/cmake/vireo)
run(${CMAKE_COMMAND} --build ${example})

# The same example, by what pkg-config says. Qt's files may name the folder that it was built for.
set(ENV{PKG_CONFIG_LIBDIR} ${package}/lib/pkgconfig:${QT_LIB_DIR}/pkgconfig)
execute_process(COMMAND pkg-config --define-prefix --cflags --libs vireo
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -I${SOURCE_DIR}/examples/support ${SOURCE_DIR}/examples/geometry-list/main.cpp ${flags} -lglu32
    -o ${example}/by-pkg-config.exe)

if(WITH_SHOW)
    set(docked_plot ${SCRATCH_DIR}/docked-plot)
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/install/docked-plot -B ${docked_plot} -G Ninja --toolchain ${TOOLCHAIN})
    run(${CMAKE_COMMAND} --build ${docked_plot})
endif()

string(REPLACE "/" "\\" dlls "Z:${package}/bin")
set(ENV{WINEPATH} ${dlls})
foreach(program geometry-list by-pkg-config)
    make_picture(${example}/${program}.png ${example}/${program}.exe ${example}/${program}.png)
endforeach()
if(WITH_SHOW)
    foreach(icon icon.png icon.jpg)
        make_picture(${docked_plot}/${icon} ${docked_plot}/docked-plot.exe ${docked_plot}/plot.svg ${docked_plot}/${icon})
    endforeach()
endif()

set(ENV{WINEPATH} "")
run(${RUN} ${package}/bin/vireo-info.exe)
file(WRITE ${SCRATCH_DIR}/columns.csv "1\n3\n2\n")
make_picture(${SCRATCH_DIR}/pictures/*.png
    ${package}/bin/vireo-view.exe --pictures ${SCRATCH_DIR}/pictures ${SCRATCH_DIR}/columns.csv)
if(WITH_SHOW)
    # Qt's plugin for JPEG reads what it has written.
    make_picture(${SCRATCH_DIR}/of-jpeg/*.png
        ${package}/bin/vireo-view.exe --pictures ${SCRATCH_DIR}/of-jpeg ${docked_plot}/icon.jpg)
endif()
