# What both toolchains share. They use the compilers with the posix thread model: only these have std::thread and std::mutex.
set(CMAKE_C_COMPILER   ${toolchain_prefix}-gcc-posix)
set(CMAKE_CXX_COMPILER ${toolchain_prefix}-g++-posix)
set(CMAKE_ASM_COMPILER ${toolchain_prefix}-gcc-posix)
set(CMAKE_RC_COMPILER  ${toolchain_prefix}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${toolchain_prefix})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)

# Built programs and tests run under Wine. For the 64-bit ones, its 64-bit loader is preferred, because the other loader starts an
# extra program before each of them.
if(CMAKE_HOST_UNIX)
  set(loaders wine)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL x86_64)
    set(loaders wine64 wine)
  endif()
  find_program(ZELT_WINE_LOADER NAMES ${loaders} PATHS /usr/lib/wine DOC "Runs the built programs on this system")
  set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-under-wine.sh ${ZELT_WINE_LOADER})
endif()
