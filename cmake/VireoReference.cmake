# The target "reference": pages made from the comments of the public headers, in <build folder>/reference/html. Its warnings are
# errors.
if(WIN32)
    return() # the build for Linux makes it
endif()
find_package(Doxygen COMPONENTS dot)
if(NOT DOXYGEN_FOUND)
    message(STATUS "There is no target \"reference\" without doxygen and graphviz (scripts/setup --with-reference)")
    return()
endif()

set(libraries tavobase tavopoints tavowgl vireo)
if(TARGET vireo_show)
    list(APPEND libraries vireo_show)
endif()
set(headers ${PROJECT_SOURCE_DIR}/docs/reference.md)
foreach(library IN LISTS libraries)
    get_target_property(library_headers ${library} HEADER_SET)
    list(APPEND headers ${library_headers})
endforeach()
set(reference_dir ${PROJECT_BINARY_DIR}/reference)
set(VIREO_REFERENCE_DOXYFILE ${reference_dir}/Doxyfile)
list(JOIN headers "\" \\\n    \"" input)
file(WRITE ${VIREO_REFERENCE_DOXYFILE} "@INCLUDE = \"${PROJECT_SOURCE_DIR}/Doxyfile\"
PROJECT_NUMBER = ${PROJECT_VERSION}
OUTPUT_DIRECTORY = \"${reference_dir}\"
INPUT = \"${input}\"
")
add_custom_target(reference
    COMMAND Doxygen::doxygen ${VIREO_REFERENCE_DOXYFILE}
    COMMAND ${CMAKE_COMMAND} -E echo "The reference begins at ${reference_dir}/html/index.html"
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} VERBATIM)
