# An installed copy is used by programs that know nothing of this tree: the example of the README, found through the CMake
# package and through pkg-config, and built, and run; one that saves its picture; and one that needs the headers of the Cg
# runtime, built.
foreach(way cmake pkgconfig)
    add_test(NAME install.${way}
        COMMAND ${CMAKE_COMMAND}
            -DWAY=${way}
            -DBUILD_DIR=${PROJECT_BINARY_DIR}
            -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
            -DSCRATCH_DIR=${CMAKE_CURRENT_BINARY_DIR}/${way}
            -DCXX=${CMAKE_CXX_COMPILER}
            -DLIB_DIR=${CMAKE_INSTALL_LIBDIR}
            "-DEXTRA_FLAGS=$<$<BOOL:${VIREO_SANITIZE}>:-fsanitize=address,undefined>"
            "-DEXAMPLES=curve plot scene image geometry-list $<$<BOOL:${VIREO_HAVE_CG}>:cg-program>"
            -P ${CMAKE_CURRENT_SOURCE_DIR}/useInstalledCopy.cmake)
endforeach()
set_tests_properties(install.cmake install.pkgconfig PROPERTIES RESOURCE_LOCK display)
