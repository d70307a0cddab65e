# The Cg runtime with its headers, as the target Cg::Cg. Installed with the library, whose users look for it too.

find_path(CG_INCLUDE_DIR Cg/cgGL.h)
find_library(CG_LIBRARY NAMES Cg cg)
find_library(CG_GL_LIBRARY NAMES CgGL cgGL)
mark_as_advanced(CG_INCLUDE_DIR CG_LIBRARY CG_GL_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Cg REQUIRED_VARS CG_GL_LIBRARY CG_LIBRARY CG_INCLUDE_DIR)
if(Cg_FOUND AND NOT TARGET Cg::Cg)
    add_library(Cg::Cg INTERFACE IMPORTED)
    target_include_directories(Cg::Cg INTERFACE ${CG_INCLUDE_DIR})
    target_link_libraries(Cg::Cg INTERFACE ${CG_GL_LIBRARY} ${CG_LIBRARY})
endif()
