# VIREO_RUNTIME_DLLS: what programs and libraries of this build need of others, besides what Windows has: Qt's libraries,
# those of plots and docks, and the compiler's. VIREO_QT_PLUGINS: what Qt's libraries load by themselves; the buttons of docks
# are SVG pictures.

foreach(library Qt5::Core Qt5::Gui Qt5::Widgets Qt5::OpenGL Qt5::Svg Qwt::Qwt ads::qtadvanceddocking)
    get_target_property(dll ${library} LOCATION)
    list(APPEND VIREO_RUNTIME_DLLS ${dll})
endforeach()
foreach(plugin QWindowsIntegrationPlugin QSvgPlugin QSvgIconPlugin)
    get_target_property(dll Qt5::${plugin} LOCATION)
    list(APPEND VIREO_QT_PLUGINS ${dll})
endforeach()
if(MINGW)
    foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
            OUTPUT_VARIABLE dll OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        file(REAL_PATH ${dll} dll)
        list(APPEND VIREO_RUNTIME_DLLS ${dll})
    endforeach()
endif()
