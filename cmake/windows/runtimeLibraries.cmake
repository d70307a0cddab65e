# VIREO_RUNTIME_DLLS: what programs and libraries of this build need of others, besides what Windows has: Qt's libraries,
# and the compiler's. VIREO_QT_PLATFORM_PLUGIN: what Qt's loads by itself.

foreach(module Core Gui Widgets OpenGL)
    get_target_property(dll Qt5::${module} LOCATION)
    list(APPEND VIREO_RUNTIME_DLLS ${dll})
endforeach()
get_target_property(VIREO_QT_PLATFORM_PLUGIN Qt5::QWindowsIntegrationPlugin LOCATION)
if(MINGW)
    foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
            OUTPUT_VARIABLE dll OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        file(REAL_PATH ${dll} dll)
        list(APPEND VIREO_RUNTIME_DLLS ${dll})
    endforeach()
endif()
