# The target `package` makes a zip for those who do not build it themselves: libraries with headers, import libraries and
# the CMake package, examples, vireo-info and vireo-view, and all DLLs that it takes to run them, with their licences. To build with it takes Qt for Windows besides.

install(FILES ${VIREO_RUNTIME_DLLS} DESTINATION ${CMAKE_INSTALL_BINDIR})
# Qt looks for them in the folder above its libraries; a program that lies beside those has to say so.
foreach(plugin IN LISTS VIREO_QT_PLUGINS)
    cmake_path(GET plugin PARENT_PATH folder)
    cmake_path(GET folder FILENAME kind)
    install(FILES ${plugin} DESTINATION plugins/${kind})
endforeach()
file(WRITE ${PROJECT_BINARY_DIR}/qt.conf "[Paths]\nPrefix = ..\n")
install(FILES ${PROJECT_BINARY_DIR}/qt.conf DESTINATION ${CMAKE_INSTALL_BINDIR})

# What everything stands under: the file that Debian's packages have, and for each DLL that is not vireo's the terms of what it
# was made from, as the packages say from which it came here.
install(FILES ${PROJECT_SOURCE_DIR}/packaging/debian/copyright DESTINATION licences)
set(origins libqt5core5a libqt5svg5 libqwt-qt5-6 libqt-advanced-docking-system-dev libnifti2-dev gcc-mingw-w64-base
    mingw-w64-common libz-mingw-w64)
foreach(origin IN LISTS origins)
    install(FILES /usr/share/doc/${origin}/copyright DESTINATION licences RENAME ${origin}.txt)
endforeach()
foreach(licence LGPL-2.1 LGPL-3 GPL-2 GPL-3)
    install(FILES /usr/share/common-licenses/${licence} DESTINATION licences RENAME ${licence}.txt)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME vireo-${PROJECT_VERSION}-win64)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
