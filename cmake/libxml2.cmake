# Builds libxml2 with this toolchain from Debian's sources, as the static target LibXml2. It contains the reader and what the reader
# itself needs: no network, no files except the one that it is given, no compression.
set(ZELT_LIBXML2_SOURCE ${CMAKE_SOURCE_DIR}/build/sources/libxml2 CACHE PATH "Folder of the sources of libxml2 2.9.14")
if(NOT EXISTS ${ZELT_LIBXML2_SOURCE}/CMakeLists.txt)
  message(FATAL_ERROR "The sources of libxml2 are not in ${ZELT_LIBXML2_SOURCE}. ./dev build fetches them "
                      "(as does apt-get source libxml2); or set ZELT_LIBXML2_SOURCE to their folder.")
endif()

function(zelt_add_libxml2)
  foreach(feature C14N CATALOG DEBUG DOCB FTP HTML HTTP ICONV ICU ISO8859X LEGACY LZMA MEM_DEBUG MODULES OUTPUT PATTERN
                  PROGRAMS PYTHON REGEXPS RUN_DEBUG SAX1 SCHEMAS SCHEMATRON TESTS THREAD_ALLOC VALID WRITER XINCLUDE
                  XPATH XPTR ZLIB)
    set(LIBXML2_WITH_${feature} OFF)
  endforeach()
  foreach(feature PUSH READER TREE THREADS)
    set(LIBXML2_WITH_${feature} ON)
  endforeach()
  set(BUILD_SHARED_LIBS OFF)
  set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
  add_subdirectory(${ZELT_LIBXML2_SOURCE} ${CMAKE_BINARY_DIR}/libxml2 EXCLUDE_FROM_ALL SYSTEM)
endfunction()
zelt_add_libxml2()

# Its warnings are left to its maintainers.
target_compile_options(LibXml2 PRIVATE -w)
# Otherwise the programs that contain it export its functions.
target_compile_definitions(LibXml2 PRIVATE LIBXML_STATIC)
