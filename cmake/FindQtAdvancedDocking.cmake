# Qt Advanced Docking System, the panes of a window that can be tiled, stacked and torn off, as the target
# ads::qtadvanceddocking of its own CMake package. Debian has the headers in a folder which that package does not name.

find_package(qtadvanceddocking CONFIG QUIET)
find_path(QTADVANCEDDOCKING_INCLUDE_DIR DockManager.h PATH_SUFFIXES qtadvanceddocking)
mark_as_advanced(qtadvanceddocking_DIR QTADVANCEDDOCKING_INCLUDE_DIR)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(QtAdvancedDocking
    REQUIRED_VARS qtadvanceddocking_DIR QTADVANCEDDOCKING_INCLUDE_DIR
    VERSION_VAR qtadvanceddocking_VERSION)
if(QtAdvancedDocking_FOUND)
    set_target_properties(ads::qtadvanceddocking PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES ${QTADVANCEDDOCKING_INCLUDE_DIR})
endif()
