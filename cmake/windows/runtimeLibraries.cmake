# VIREO_RUNTIME_DLLS: what programs and libraries of this build need of others, besides what Windows has: Qt's libraries,
# those of the front door, and the compiler's. VIREO_QT_PLUGINS: what Qt's libraries load by themselves.

set(libraries Qt5::Core Qt5::Gui Qt5::Widgets Qt5::OpenGL)
set(plugins Qt5::QWindowsIntegrationPlugin Qt5::QGifPlugin Qt5::QICOPlugin)
if(VIREO_BUILD_SHOW)
    list(APPEND libraries Qt5::Svg Qwt::Qwt ads::qtadvanceddocking)
    list(APPEND plugins Qt5::QSvgPlugin Qt5::QSvgIconPlugin) # for the buttons of docks
endif()
foreach(library IN LISTS libraries)
    get_target_property(dll ${library} LOCATION)
    list(APPEND VIREO_RUNTIME_DLLS ${dll})
endforeach()
foreach(plugin IN LISTS plugins)
    get_target_property(dll ${plugin} LOCATION)
    list(APPEND VIREO_QT_PLUGINS ${dll})
endforeach()
# Not every Qt has it, and one that has got it later does not name it.
get_target_property(gif Qt5::QGifPlugin LOCATION)
cmake_path(REPLACE_FILENAME gif qjpeg.dll OUTPUT_VARIABLE jpeg)
if(EXISTS ${jpeg})
    list(APPEND VIREO_QT_PLUGINS ${jpeg})
else()
    message(STATUS "This Qt has no plugin for JPEG, and vireo-view reads none with it")
endif()
if(MINGW)
    foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
            OUTPUT_VARIABLE dll OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        file(REAL_PATH ${dll} dll)
        list(APPEND VIREO_RUNTIME_DLLS ${dll})
    endforeach()
endif()
