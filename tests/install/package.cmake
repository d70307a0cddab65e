# The zip is unpacked elsewhere; an example is built against what lies there and run, and so are vireo-view and a program with
# a plot in a dock, with no DLLs and plugins but those of the zip.
add_test(NAME install.package
    COMMAND ${CMAKE_COMMAND}
        -DBUILD_DIR=${PROJECT_BINARY_DIR}
        -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
        -DSCRATCH_DIR=${CMAKE_CURRENT_BINARY_DIR}/package
        -DTOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
        -DRUN=${CMAKE_CROSSCOMPILING_EMULATOR}
        -DCXX=${CMAKE_CXX_COMPILER}
        -DQT_LIB_DIR=$<TARGET_LINKER_FILE_DIR:Qt5::Core>
        -DWITH_SHOW=${VIREO_BUILD_SHOW}
        -P ${CMAKE_CURRENT_SOURCE_DIR}/usePackage.cmake)
set_tests_properties(install.package PROPERTIES RESOURCE_LOCK display)
