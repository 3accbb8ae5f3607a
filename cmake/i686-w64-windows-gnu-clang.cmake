# The 32-bit toolchain with clang in the place of GCC, and GCC's libraries and linker: a second opinion on the sources.
include(${CMAKE_CURRENT_LIST_DIR}/i686-w64-mingw32.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/clang.cmake)
