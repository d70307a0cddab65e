# Programs for Windows that were cross-built are run with Wine, by a script in the build folder that says where their DLLs are.
# CTest uses it, and so may a person: build/windows/run-with-wine build/windows/bin/library_test.exe

if(NOT CMAKE_CROSSCOMPILING)
    return()
endif()

set(dll_folders ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
foreach(dll IN LISTS VIREO_RUNTIME_DLLS)
    cmake_path(GET dll PARENT_PATH folder)
    list(APPEND dll_folders ${folder})
endforeach()
list(REMOVE_DUPLICATES dll_folders)
# Wine shows the root of this machine's files as drive Z.
list(TRANSFORM dll_folders PREPEND "Z:")
string(REPLACE "/" "\\" WINE_DLL_FOLDERS "${dll_folders}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/run-with-wine.in ${PROJECT_BINARY_DIR}/run-with-wine @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_BINARY_DIR}/run-with-wine)
