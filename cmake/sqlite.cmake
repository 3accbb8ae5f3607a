# Builds SQLite with this toolchain from Debian's sources, as the static target sqlite: the library without threads, loadable
# extensions, shared caches and deprecated functions.
set(ZELT_SQLITE_SOURCE ${CMAKE_SOURCE_DIR}/build/sources/sqlite3 CACHE PATH "Folder of sqlite3.c, of SQLite 3.40.1")
if(NOT EXISTS ${ZELT_SQLITE_SOURCE}/sqlite3.c)
  message(FATAL_ERROR "sqlite3.c is not in ${ZELT_SQLITE_SOURCE}. ./dev build fetches it; or set ZELT_SQLITE_SOURCE to its "
                      "folder.")
endif()

add_library(sqlite STATIC EXCLUDE_FROM_ALL ${ZELT_SQLITE_SOURCE}/sqlite3.c)
target_include_directories(sqlite SYSTEM INTERFACE ${ZELT_SQLITE_SOURCE})
target_compile_definitions(sqlite PRIVATE SQLITE_THREADSAFE=0 SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_DEPRECATED
                                          SQLITE_OMIT_SHARED_CACHE SQLITE_DQS=0 SQLITE_DEFAULT_MEMSTATUS=0)
# Its warnings are left to its maintainers. At -O1 it compiles in a third of the time, and an export takes a tenth longer.
target_compile_options(sqlite PRIVATE -w -O1)
