# 64-bit Windows, cross-built with MinGW-w64 (its variant with POSIX threads); programs are run with Wine.
#
# What it needs of Qt, niftilib and others is looked for in VIREO_WINDOWS_LIBRARIES, which scripts/setup-windows fills.

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
set(VIREO_WINDOWS_LIBRARIES ${cache}/vireo CACHE PATH "Where Qt and other libraries for Windows are")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VIREO_WINDOWS_LIBRARIES)

# Libraries, headers and packages are those of Windows only; programs are those of this machine.
set(CMAKE_FIND_ROOT_PATH
    /usr/${triplet}
    ${VIREO_WINDOWS_LIBRARIES}/qt5-win64
    ${VIREO_WINDOWS_LIBRARIES}/qwt-win64
    ${VIREO_WINDOWS_LIBRARIES}/ads-win64
    ${VIREO_WINDOWS_LIBRARIES}/nifti-win64
    ${VIREO_WINDOWS_LIBRARIES}/headers-win64
)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
