# Compiler and linker settings of every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

if(WIN32)
  add_compile_definitions(UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00 WINVER=0x0A00)
endif()
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-Wall> $<$<COMPILE_LANGUAGE:C,CXX>:-Wextra>
                    $<$<COMPILE_LANGUAGE:C,CXX>:-Werror>)
# Programs contain no path of the machine that builds them: the same sources give the same programs in any folder.
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build>
                    $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
  # Windows 10 requires SSE2; with it a double is 64 bits wide everywhere, so that a package computes the same in every process.
  # Callers built by other compilers align the stack to only 4 bytes.
  add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-msse2> $<$<COMPILE_LANGUAGE:C,CXX>:-mfpmath=sse>
                      $<$<COMPILE_LANGUAGE:C,CXX>:-mstackrealign>)
endif()
# Otherwise the compiler packs neighbouring words into a vector register to store them, although they are read back one by one.
# That made each proxied call slower.
add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-fno-tree-slp-vectorize>)

# Programs need no runtime DLL: they contain the compiler's libraries.
if(WIN32)
  add_link_options(-static -Wl,--no-insert-timestamp)
endif()
