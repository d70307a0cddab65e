# Programs for Windows that were cross-built are run with Wine, by a script in the build folder that says where their DLLs are.
# CTest uses it, and so may a person: build/windows/run-with-wine build/windows/bin/library_test.exe

if(NOT WIN32 OR NOT CMAKE_CROSSCOMPILING)
    return()
endif()

set(dll_folders ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
foreach(library Qt5::Core)
    get_target_property(dll ${library} LOCATION)
    get_filename_component(folder ${dll} DIRECTORY)
    list(APPEND dll_folders ${folder})
endforeach()
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    get_filename_component(folder ${file} REALPATH)
    get_filename_component(folder ${folder} DIRECTORY)
    list(APPEND dll_folders ${folder})
endforeach()
list(REMOVE_DUPLICATES dll_folders)
# Wine shows the root of this machine's files as drive Z.
list(TRANSFORM dll_folders PREPEND "Z:")
string(REPLACE "/" "\\" WINE_DLL_FOLDERS "${dll_folders}")
set(WINE_QT_PLUGINS "Z:${VIREO_WINDOWS_LIBRARIES}/qt5-win64/plugins")
configure_file(${CMAKE_CURRENT_LIST_DIR}/run-with-wine.in ${PROJECT_BINARY_DIR}/run-with-wine @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_BINARY_DIR}/run-with-wine)
