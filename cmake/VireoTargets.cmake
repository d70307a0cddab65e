# How every target of the project is compiled, and how a library of it is declared.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}") # of programs, which lie in bin

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    # Without that, it would keep nothing that is compiled with precompiled headers.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE_PROGRAM})
endif()

# Warnings and sanitizers are this project's own affair: neither is handed on to those who link it.
function(vireo_compile_options target)
    # GCC 12 sees overlapping copies in "text" + std::string() where there are none (its bug 105329).
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
    if(VIREO_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(VIREO_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                 -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=address,undefined)
    endif()
    if(VIREO_BUILD_FUZZERS)
        # What tells a fuzzer which way its input took. Numbers beyond the range of an integer are found besides.
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link,float-cast-overflow
                                                 -fno-sanitize-recover=float-cast-overflow)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    if(VIREO_SANITIZE_THREADS)
        target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer)
        target_link_options(${target} PRIVATE -fsanitize=thread)
    endif()
endfunction()

# Half of the time in which a source is compiled goes into reading the standard library, which each target reads once where the
# sanitizers make that worth it. Optimised, GCC 12 would see more of what its bug above invents. A source includes what it uses
# all the same.
option(VIREO_PRECOMPILE_HEADERS "Read what most sources and tests include once for all" ON)
function(vireo_precompile target)
    if(VIREO_PRECOMPILE_HEADERS AND VIREO_SANITIZE)
        target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map>
            <memory> <optional> <set> <string> <string_view> <utility> <vector>)
    endif()
endfunction()

# vireo_add_library(<target> ALIAS <name> DEFINE <export macro's switch> HEADERS ... SOURCES ...)
# A shared library of the project. HEADERS are public: they are installed under their path from the repository root,
# from which they are included, and a test compiles each of them alone.
function(vireo_add_library target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "ALIAS;DEFINE" "HEADERS;SOURCES")
    add_library(${target} SHARED)
    add_library(${arg_ALIAS} ALIAS ${target})
    target_sources(${target} PRIVATE ${arg_SOURCES}
        PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${arg_HEADERS})
    target_compile_definitions(${target} PRIVATE ${arg_DEFINE})
    target_compile_features(${target} PUBLIC cxx_std_20)
    string(REGEX MATCH "^(.*)::(.*)$" unused ${arg_ALIAS})
    set(namespace ${CMAKE_MATCH_1})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${CMAKE_MATCH_2} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN" VERIFY_INTERFACE_HEADER_SETS ON)
    vireo_compile_options(${target})
    vireo_precompile(${target})
    # Nobody replaces functions of the libraries by others of the same name: they may be inlined where they are exported.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    install(TARGETS ${target} EXPORT ${namespace}Targets FILE_SET HEADERS)
endfunction()
