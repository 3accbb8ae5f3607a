# The headers of protozero, which reads and writes Protocol Buffers. They come from this system; a link to their folder alone
# keeps the system's other headers away from a cross compiler.
find_path(ZELT_PROTOZERO_FOLDER protozero/pbf_writer.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/protozero)
file(CREATE_LINK ${ZELT_PROTOZERO_FOLDER}/protozero ${CMAKE_BINARY_DIR}/protozero/protozero SYMBOLIC)
add_library(protozero INTERFACE)
target_include_directories(protozero SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/protozero)
