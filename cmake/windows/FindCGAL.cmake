# CGAL's headers alone, as the target CGAL::CGAL. CGAL's own package would look for the libraries of exact numbers too, which
# reading files does not need, and which are not to be had for Windows.

find_path(CGAL_INCLUDE_DIR CGAL/version.h)
find_path(BOOST_INCLUDE_DIR boost/version.hpp)
mark_as_advanced(CGAL_INCLUDE_DIR BOOST_INCLUDE_DIR)
if(CGAL_INCLUDE_DIR)
    file(STRINGS ${CGAL_INCLUDE_DIR}/CGAL/version.h version REGEX "define CGAL_VERSION ")
    string(REGEX MATCH "[0-9.]+" CGAL_VERSION "${version}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(CGAL
    REQUIRED_VARS CGAL_INCLUDE_DIR BOOST_INCLUDE_DIR
    VERSION_VAR CGAL_VERSION)
if(CGAL_FOUND AND NOT TARGET CGAL::CGAL)
    add_library(CGAL::CGAL INTERFACE IMPORTED)
    target_include_directories(CGAL::CGAL INTERFACE ${CGAL_INCLUDE_DIR} ${BOOST_INCLUDE_DIR})
    target_compile_definitions(CGAL::CGAL INTERFACE CGAL_DISABLE_GMP)
endif()
