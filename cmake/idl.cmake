# zelt_idl(<name> [<folder>]): compiles <name>.idl, from res/ or the given folder, to <build>/idl/<name>.tlb and
# <build>/idl/<name>.h, and defines the interface target idl_<name>. One .idl is the only source of a library's identities, C++
# declarations and type information. The 32-bit form of the type library serves both widths: only its pointer size differs, and
# readers scale it.
find_program(ZELT_WIDL i686-w64-mingw32-widl REQUIRED)
find_program(PERL_EXECUTABLE perl REQUIRED)
find_path(ZELT_STDOLE_DIR stdole2.tlb NO_CMAKE_FIND_ROOT_PATH REQUIRED
          PATHS /usr/lib/i386-linux-gnu/wine/i386-windows /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
                /usr/lib/wine/i386-windows
          DOC "Folder of stdole2.tlb, the automation base library that the type libraries refer to")

set(ZELT_IDL_DIR ${CMAKE_BINARY_DIR}/idl)
file(MAKE_DIRECTORY ${ZELT_IDL_DIR})

function(zelt_idl name)
  set(folder ${CMAKE_SOURCE_DIR}/res)
  if(ARGC GREATER 1)
    set(folder ${ARGV1})
  endif()
  set(source ${folder}/${name}.idl)
  set(flags -m32 -I${CMAKE_SOURCE_DIR}/res -L${ZELT_STDOLE_DIR})
  add_custom_command(
    OUTPUT ${ZELT_IDL_DIR}/${name}.tlb ${ZELT_IDL_DIR}/${name}.h
    COMMAND ${ZELT_WIDL} ${flags} -t -o ${ZELT_IDL_DIR}/${name}.tlb ${source}
    COMMAND ${PERL_EXECUTABLE} ${CMAKE_SOURCE_DIR}/cmake/fixed_time.pl ${ZELT_IDL_DIR}/${name}.tlb
    COMMAND ${ZELT_WIDL} ${flags} -h -o ${ZELT_IDL_DIR}/${name}.h ${source}
    DEPENDS ${source} ${CMAKE_SOURCE_DIR}/res/automation.idl ${CMAKE_SOURCE_DIR}/cmake/fixed_time.pl
    COMMENT "Compiling ${name}.idl" VERBATIM)
  add_custom_target(idl_${name}_files DEPENDS ${ZELT_IDL_DIR}/${name}.tlb ${ZELT_IDL_DIR}/${name}.h)
  add_library(idl_${name} INTERFACE)
  target_include_directories(idl_${name} SYSTEM INTERFACE ${ZELT_IDL_DIR})
  add_dependencies(idl_${name} idl_${name}_files)
endfunction()
