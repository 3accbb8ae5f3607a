#include "shell/log_viewer/pages/page_file.h"

#include <io.h>

#include <cstring>

#include "log_reader/byte_search.h"

namespace zelt {

std::string_view PageFile::Read(std::int64_t offset, std::int64_t end)
{
    const auto size = static_cast<std::size_t>(end - offset);
    if (buffer.size() < size + kSlack) buffer.resize(size + kSlack);
    std::size_t filled = 0;
    if (_lseeki64(file.Descriptor(), offset, SEEK_SET) == offset) {
        while (filled < size) {
            const int count = _read(file.Descriptor(), buffer.data() + filled, static_cast<unsigned>(size - filled));
            if (count <= 0) break;
            filled += static_cast<std::size_t>(count);
        }
    }
    std::memset(buffer.data() + filled, 0, kSlack);
    return {buffer.data(), filled};
}

}  // namespace zelt
