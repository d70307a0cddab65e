# The target `package` makes a zip for those who do not build it themselves: libraries with headers, import libraries and
# the CMake package, vireo-info and vireo-view, and all DLLs that it takes to run them. To build with it takes Qt for Windows besides.

install(FILES ${VIREO_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})
# Qt looks for them in the folder above its libraries; a program that lies beside those has to say so.
foreach(plugin IN LISTS VIREO_QT_PLUGINS)
    cmake_path(GET plugin PARENT_PATH folder)
    cmake_path(GET folder FILENAME kind)
    install(FILES ${plugin} DESTINATION plugins/${kind})
endforeach()
file(WRITE ${PROJECT_BINARY_DIR}/qt.conf "[Paths]\nPrefix = ..\n")
install(FILES ${PROJECT_BINARY_DIR}/qt.conf DESTINATION ${CMAKE_INSTALL_BINDIR})

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME vireo-${PROJECT_VERSION}-win64)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
