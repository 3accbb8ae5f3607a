# zelt_keep_symbols(<program>): the program is built without symbols. With ZELT_SYMBOLS, the build also leaves <program>.symbols
# beside it, from which ./dev symbols tells the source line of an address.
function(zelt_keep_symbols program)
  if(ZELT_SYMBOLS)
    # strip takes the time that it writes into the file's header from the environment.
    add_custom_command(TARGET ${program} POST_BUILD
      COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${program}> $<TARGET_FILE:${program}>.symbols
      COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0 ${CMAKE_STRIP} $<TARGET_FILE:${program}>)
  else()
    target_link_options(${program} PRIVATE -s)
  endif()
endfunction()
