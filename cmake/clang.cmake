# clang in the place of GCC in a toolchain. Debian's clang does not find the libraries of Debian's GCC for MinGW by itself.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-libgcc-file-name OUTPUT_VARIABLE gcc_library OUTPUT_STRIP_TRAILING_WHITESPACE)
get_filename_component(gcc_folder ${gcc_library} DIRECTORY)
set(clang_target --target=${CMAKE_SYSTEM_PROCESSOR}-w64-windows-gnu)
set(clang_system "-isystem /usr/${toolchain_prefix}/include")
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_ASM_COMPILER clang)
set(CMAKE_C_FLAGS_INIT "${clang_target} ${clang_system}")
set(CMAKE_ASM_FLAGS_INIT "${clang_target} ${clang_system}")
# The headers declare members of interfaces as nothrow; their implementations need not repeat it.
set(CMAKE_CXX_FLAGS_INIT "${clang_target} -Wno-missing-exception-spec -nostdinc++ -isystem ${gcc_folder}/include/c++ -isystem ${gcc_folder}/include/c++/${toolchain_prefix} ${clang_system}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-B${gcc_folder} -L${gcc_folder} -L/usr/${toolchain_prefix}/lib")
endforeach()
# GCC adds the library of its threads by itself; for clang it is named here, after the C++ library, which needs it. The libraries
# before these two are those that CMake adds for MinGW.
set(CMAKE_CXX_STANDARD_LIBRARIES
    "-lkernel32 -luser32 -lgdi32 -lwinspool -lshell32 -lole32 -loleaut32 -luuid -lcomdlg32 -ladvapi32 -lstdc++ -lwinpthread"
    CACHE STRING "")
