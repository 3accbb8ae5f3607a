# The static zlib from Debian's package for this toolchain. Its header is in a folder that each compiler searches by default.
find_library(ZELT_ZLIB NAMES libz.a REQUIRED)
add_library(zlib STATIC IMPORTED)
set_target_properties(zlib PROPERTIES IMPORTED_LOCATION ${ZELT_ZLIB})
