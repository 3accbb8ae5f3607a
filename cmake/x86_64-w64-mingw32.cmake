# The 64-bit toolchain: ZELT64.EXE, the packages that it hosts, and the 64-bit simulator.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(toolchain_prefix x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
