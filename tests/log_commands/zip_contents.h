// The files in a zip file, each unpacked and compared with its checksum and size. Reads only zip files written by ZipWriter.
#pragma once

#include <gtest/gtest.h>
#include <zlib.h>

#include <map>
#include <string>

namespace zelt::test {

class ZipContents {
public:
    explicit ZipContents(const std::string& bytes) : bytes(bytes)
    {
        constexpr std::size_t kEndSize = 22;
        if (bytes.size() < kEndSize || Long(bytes.size() - kEndSize) != 0x06054b50) {
            ADD_FAILURE() << "no zip file ends here";
            return;
        }
        const std::size_t end = bytes.size() - kEndSize;
        EXPECT_EQ(Word(end + 8), Word(end + 10));
        EXPECT_EQ(end, Long(end + 16) + Long(end + 12)) << "directory and end record do not meet";
        std::size_t at = Long(end + 16);
        for (unsigned i = 0; i < Word(end + 10); ++i) at = Take(at);
        EXPECT_EQ(end, at);
    }
    // By their names.
    const std::map<std::string, std::string>& Files() const { return files; }

private:
    unsigned Word(std::size_t at) const
    {
        return static_cast<unsigned char>(bytes.at(at)) | static_cast<unsigned char>(bytes.at(at + 1)) << 8;
    }
    unsigned long Long(std::size_t at) const { return Word(at) | static_cast<unsigned long>(Word(at + 2)) << 16; }

    // Reads a row of the directory and the file that it describes. Returns the place of the next row.
    std::size_t Take(std::size_t row)
    {
        EXPECT_EQ(0x02014b50u, Long(row));
        const std::string name = bytes.substr(row + 46, Word(row + 28));
        const unsigned long checksum = Long(row + 16), compressed = Long(row + 20), size = Long(row + 24);
        const std::size_t file = Long(row + 42);
        EXPECT_EQ(0x04034b50u, Long(file));
        EXPECT_EQ(name, bytes.substr(file + 30, Word(file + 26)));
        const std::size_t begin = file + 30 + Word(file + 26) + Word(file + 28);
        const std::string content = Inflated(bytes.substr(begin, compressed), size);
        EXPECT_EQ(size, content.size()) << name;
        EXPECT_EQ(checksum,
                  crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())));
        // Checksum and sizes follow the content.
        const std::size_t after = begin + compressed;
        EXPECT_EQ(8u, Word(file + 6));
        EXPECT_EQ(0x08074b50u, Long(after));
        EXPECT_EQ(checksum, Long(after + 4));
        EXPECT_EQ(compressed, Long(after + 8));
        EXPECT_EQ(size, Long(after + 12));
        EXPECT_TRUE(files.emplace(name, content).second) << name << " is there twice";
        return row + 46 + name.size() + Word(row + 30) + Word(row + 32);
    }
    static std::string Inflated(const std::string& compressed, std::size_t size)
    {
        std::string content(size + 1, '\0');
        z_stream state = {};
        EXPECT_EQ(Z_OK, inflateInit2(&state, -MAX_WBITS));
        state.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(compressed.data()));
        state.avail_in = static_cast<uInt>(compressed.size());
        state.next_out = reinterpret_cast<Bytef*>(content.data());
        state.avail_out = static_cast<uInt>(content.size());
        EXPECT_EQ(Z_STREAM_END, inflate(&state, Z_FINISH));
        EXPECT_EQ(0u, state.avail_in);
        content.resize(state.total_out);
        inflateEnd(&state);
        return content;
    }

    const std::string& bytes;
    std::map<std::string, std::string> files;
};

}  // namespace zelt::test
