# A room is a folder of sources that forms one library. It sees only the rooms that it uses, directly or through another room: the
# compiler does not find the headers of the others. The table of rooms is in docs/architecture.md.
#
# zelt_room(<name> [FOLDER <folder>] [SOURCES <source>...] [USES <library>...] [SYSTEM <library>...]): `USES` lists the rooms that
# it uses and any other library that its headers need; `SYSTEM` lists the libraries that only its sources need. A room without
# sources consists of headers alone.
function(zelt_room name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FOLDER" "SOURCES;USES;SYSTEM")
  if(NOT arg_FOLDER)
    set(arg_FOLDER ${name})
  endif()
  set(view ${CMAKE_BINARY_DIR}/rooms/${name})
  get_filename_component(above ${view}/${arg_FOLDER} DIRECTORY)
  file(MAKE_DIRECTORY ${above})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${arg_FOLDER} ${view}/${arg_FOLDER} SYMBOLIC)
  if(arg_SOURCES)
    add_library(${name} STATIC ${arg_SOURCES})
    set(reach PUBLIC)
    target_link_libraries(${name} PRIVATE ${arg_SYSTEM})
  else()
    add_library(${name} INTERFACE)
    set(reach INTERFACE)
  endif()
  target_include_directories(${name} ${reach} ${view})
  target_link_libraries(${name} ${reach} ${arg_USES})
endfunction()
