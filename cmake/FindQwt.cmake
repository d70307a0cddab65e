# Qwt, which draws the axes and curves of plots, as the target Qwt::Qwt. GCC takes its headers for C++17, not for C++20, and
# whoever includes them has to be compiled so.

find_path(QWT_INCLUDE_DIR qwt_global.h PATH_SUFFIXES qwt)
find_library(QWT_LIBRARY NAMES qwt-qt5 qwt)
set(required QWT_LIBRARY QWT_INCLUDE_DIR)
if(WIN32)
    find_file(QWT_DLL qwt.dll HINTS ${QWT_INCLUDE_DIR}/../../bin)
    list(APPEND required QWT_DLL)
endif()
mark_as_advanced(QWT_INCLUDE_DIR QWT_LIBRARY QWT_DLL)
if(QWT_INCLUDE_DIR)
    file(STRINGS ${QWT_INCLUDE_DIR}/qwt_global.h version REGEX "define QWT_VERSION_STR ")
    string(REGEX MATCH "[0-9.]+" QWT_VERSION "${version}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qwt
    REQUIRED_VARS ${required}
    VERSION_VAR QWT_VERSION)
if(Qwt_FOUND AND NOT TARGET Qwt::Qwt)
    add_library(Qwt::Qwt SHARED IMPORTED)
    target_include_directories(Qwt::Qwt INTERFACE ${QWT_INCLUDE_DIR})
    target_link_libraries(Qwt::Qwt INTERFACE Qt5::Widgets)
    if(WIN32)
        # It is built for a Qt that cannot print.
        target_compile_definitions(Qwt::Qwt INTERFACE QWT_DLL QT_NO_PRINTER)
        set_target_properties(Qwt::Qwt PROPERTIES IMPORTED_IMPLIB ${QWT_LIBRARY} IMPORTED_LOCATION ${QWT_DLL})
    else()
        set_target_properties(Qwt::Qwt PROPERTIES IMPORTED_LOCATION ${QWT_LIBRARY})
    endif()
endif()
