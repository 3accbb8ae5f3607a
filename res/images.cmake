# Makes the program's pictures from text files, with a Perl script because every Debian system includes Perl.
find_program(PERL_EXECUTABLE perl REQUIRED)

function(zelt_picture kind source picture)
  set(converter ${CMAKE_SOURCE_DIR}/res/images/convert.pl)
  set(source ${CMAKE_SOURCE_DIR}/res/images/${source})
  set(picture ${CMAKE_CURRENT_BINARY_DIR}/${picture})
  add_custom_command(OUTPUT ${picture} COMMAND ${PERL_EXECUTABLE} ${converter} ${kind} ${source} ${picture}
                     DEPENDS ${converter} ${source} COMMENT "Drawing ${picture}" VERBATIM)
endfunction()

zelt_picture(strip small_images.txt images.bmp)
zelt_picture(icon application_icon.txt zelt.ico)
