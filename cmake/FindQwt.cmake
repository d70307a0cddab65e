# Qwt, which draws the axes and curves of plots, as the target Qwt::Qwt. Its headers are no C++20: with GCC they compile as
# C++17 at most.

find_path(QWT_INCLUDE_DIR qwt_global.h PATH_SUFFIXES qwt)
find_library(QWT_LIBRARY NAMES qwt-qt5 qwt)
mark_as_advanced(QWT_INCLUDE_DIR QWT_LIBRARY)
if(QWT_INCLUDE_DIR)
    file(STRINGS ${QWT_INCLUDE_DIR}/qwt_global.h version REGEX "define QWT_VERSION_STR ")
    string(REGEX MATCH "[0-9.]+" QWT_VERSION "${version}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qwt
    REQUIRED_VARS QWT_LIBRARY QWT_INCLUDE_DIR
    VERSION_VAR QWT_VERSION)
if(Qwt_FOUND AND NOT TARGET Qwt::Qwt)
    add_library(Qwt::Qwt UNKNOWN IMPORTED)
    set_target_properties(Qwt::Qwt PROPERTIES IMPORTED_LOCATION ${QWT_LIBRARY})
    target_include_directories(Qwt::Qwt INTERFACE ${QWT_INCLUDE_DIR})
    target_link_libraries(Qwt::Qwt INTERFACE Qt5::Widgets)
endif()
