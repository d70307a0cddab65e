# VIREO_HAVE_CG says whether the Cg runtime is there, and wanted; if so, it is the target Cg::Cg. VIREO_HAVE_CG_HEADERS says
# that its headers, in CG_INCLUDE_DIR, are all there is: as on 64-bit Windows, where they may come from another system.

set(VIREO_HAVE_CG OFF)
set(VIREO_HAVE_CG_HEADERS OFF)
if(NOT VIREO_WITH_CG)
    message(STATUS "Cg runtime: switched off; the library is built without Cg programs")
else()
    find_package(Cg QUIET)
    if(Cg_FOUND)
        set(VIREO_HAVE_CG ON)
        message(STATUS "Cg runtime: ${CG_LIBRARY}")
    elseif(CG_INCLUDE_DIR)
        set(VIREO_HAVE_CG_HEADERS ON)
        message(STATUS "Cg runtime: headers only; GLShaderCG is compiled against them, and left out of the library")
    else()
        message(STATUS "Cg runtime: not found (Cg/cgGL.h, libCg, libCgGL); the library is built without Cg programs")
    endif()
endif()
