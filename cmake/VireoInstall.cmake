# What an installed copy needs to be found: a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vireo)
configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/vireoConfig.cmake.in ${PROJECT_BINARY_DIR}/vireoConfig.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vireoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(
    FILES ${PROJECT_BINARY_DIR}/vireoConfig.cmake ${PROJECT_BINARY_DIR}/vireoConfigVersion.cmake
    DESTINATION ${package_dir})
if(VIREO_HAVE_CG)
    install(FILES ${PROJECT_SOURCE_DIR}/cmake/FindCg.cmake DESTINATION ${package_dir})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/vireo-cg.pc.in ${PROJECT_BINARY_DIR}/vireo-cg.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/vireo-cg.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
install(EXPORT tavoTargets NAMESPACE tavo:: DESTINATION ${package_dir})
install(EXPORT vireoTargets NAMESPACE vireo:: DESTINATION ${package_dir})

# Relative, so that the prefix may be chosen, or changed, after configuring.
file(RELATIVE_PATH PREFIX_FROM_PKGCONFIG /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
if(WIN32)
    set(PKGCONFIG_WGL "-lopengl32 -lgdi32")
else()
    set(PKGCONFIG_GL gl)
    set(PKGCONFIG_WGL -ltavowgl)
    set(PKGCONFIG_PIC -fPIC)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/vireo.pc.in ${PROJECT_BINARY_DIR}/vireo.pc @ONLY)
if(VIREO_BUILD_SHOW)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/vireo-show.pc.in ${PROJECT_BINARY_DIR}/vireo-show.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/vireo-show.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
install(FILES ${PROJECT_BINARY_DIR}/vireo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
