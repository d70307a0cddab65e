# 64-bit Windows, cross-built with MinGW-w64 (its variant with POSIX threads); programs are run with Wine.
#
# Qt for Windows is looked for in VIREO_WINDOWS_QT_PREFIX, which scripts/test-windows fills.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(triplet x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${triplet}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

if(DEFINED ENV{XDG_CACHE_HOME})
    set(cache $ENV{XDG_CACHE_HOME})
else()
    set(cache $ENV{HOME}/.cache)
endif()
set(VIREO_WINDOWS_QT_PREFIX ${cache}/vireo/qt5-win64 CACHE PATH "Where Qt for Windows, with tools that run here, is")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VIREO_WINDOWS_QT_PREFIX)

# Libraries, headers and packages are those of Windows only; programs are those of this machine.
set(CMAKE_FIND_ROOT_PATH /usr/${triplet} ${VIREO_WINDOWS_QT_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
