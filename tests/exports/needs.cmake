# cmake -DREADELF=... -DLIBRARY=... "-DALLOWED=name;..." -P needs.cmake
# Fails if the library needs any other than the allowed ones, which are written without "lib" and version.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE entries COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "[][]" "|" entries "${entries}") # a list cannot hold single brackets
string(REGEX MATCHALL "\\(NEEDED\\)[^\n]*" needed "${entries}")
if(NOT needed)
    message(FATAL_ERROR "${READELF} names nothing that ${LIBRARY} needs")
endif()
list(TRANSFORM needed REPLACE ".*\\|(lib)?([^.]+)\\.so.*" "\\2")
list(REMOVE_ITEM needed ${ALLOWED})
if(needed)
    message(FATAL_ERROR "${LIBRARY} needs ${needed}")
endif()
