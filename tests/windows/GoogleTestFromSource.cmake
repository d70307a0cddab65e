# GoogleTest is packaged for this machine only; for Windows it is built from the source that libgtest-dev brings.
set(VIREO_GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest's source, for the tests on Windows")
mark_as_advanced(VIREO_GOOGLETEST_SOURCE)
set(INSTALL_GTEST OFF CACHE INTERNAL "")
add_subdirectory(${VIREO_GOOGLETEST_SOURCE} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
