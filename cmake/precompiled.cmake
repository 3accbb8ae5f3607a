# zelt_precompile(<name> <folder>... HEADERS <header>...): compiles the headers once, ahead of every C++ source of the targets
# below the folders; otherwise they take most of the compile time. Sources still include what they use: `./dev lint` reads each
# without the precompiled headers. Call it when the folders' targets are complete.
function(zelt_precompile name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" HEADERS)
  set(source ${CMAKE_BINARY_DIR}/${name}.cpp)
  file(GENERATE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
  target_link_libraries(${name} PRIVATE idl_cape-open)
  zelt_compiled_targets(targets ${arg_UNPARSED_ARGUMENTS})
  foreach(target IN LISTS targets)
    target_precompile_headers(${target} REUSE_FROM ${name})
  endforeach()
endfunction()
