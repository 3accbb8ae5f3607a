// A zip file, written from its beginning to its end: deflated files without folders, each below 4 GB. zlib compresses; this
// class writes the structure around the compressed data.
#pragma once

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "ctl/output.h"

namespace zelt::ctl {

class ZipWriter {
public:
    explicit ZipWriter(Output& out) : out(out), start(out.Written()) {}

    // The name is ASCII. Throws std::runtime_error when the content cannot be read, or the zip file gets larger than its format
    // allows.
    void Add(const std::string& name, std::istream& content);
    // Writes the directory, without which the file is not a zip file.
    void Finish();

private:
    struct Entry {
        std::string name;
        std::uint32_t offset, checksum, compressed, size;
    };

    std::uint32_t Offset() const;
    void WriteWords(std::initializer_list<std::uint16_t> words);
    void WriteLong(std::uint32_t number);
    void WriteEntryFields(std::uint32_t checksum, std::uint32_t compressed, std::uint32_t size,
                          const std::string& name);

    Output& out;
    const std::size_t start;
    std::vector<Entry> entries;
};

}  // namespace zelt::ctl
