#include "ctl/report/zip_writer.h"

#include <zlib.h>

#include <ctime>
#include <limits>
#include <stdexcept>

namespace zelt::ctl {
namespace {

constexpr std::uint32_t kFileMark = 0x04034b50, kSizesMark = 0x08074b50, kDirectoryMark = 0x02014b50,
                        kEndMark = 0x06054b50;
constexpr std::uint16_t kVersion = 20;          // of the format: deflated files
constexpr std::uint16_t kSizesFollow = 1 << 3;  // checksum and sizes come after the content
constexpr std::uint16_t kDeflated = 8;

// zip files store times in the form of old file systems, in units of two seconds.
struct ZipTime {
    std::uint16_t time, date;
};
ZipTime Now()
{
    const std::time_t now = std::time(nullptr);
    const std::tm* const local = std::localtime(&now);
    if (!local || local->tm_year < 80) return {0, 1 << 5 | 1};
    return {static_cast<std::uint16_t>(local->tm_hour << 11 | local->tm_min << 5 | local->tm_sec / 2),
            static_cast<std::uint16_t>((local->tm_year - 80) << 9 | (local->tm_mon + 1) << 5 | local->tm_mday)};
}

std::uint32_t Checked(std::uint64_t size)
{
    // The format reserves the largest number: it means that the true one is elsewhere.
    if (size >= std::numeric_limits<std::uint32_t>::max()) throw std::runtime_error("the zip file would be too large");
    return static_cast<std::uint32_t>(size);
}

// Compresses without zlib's own header: a zip file has headers of its own.
class Deflater {
public:
    Deflater()
    {
        if (deflateInit2(&state, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    ~Deflater() { deflateEnd(&state); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    void Write(std::string& piece, bool isLast, Output& out)
    {
        state.next_in = reinterpret_cast<Bytef*>(piece.data());
        state.avail_in = static_cast<uInt>(piece.size());
        do {
            state.next_out = reinterpret_cast<Bytef*>(buffer);
            state.avail_out = sizeof buffer;
            deflate(&state, isLast ? Z_FINISH : Z_NO_FLUSH);
            out.Bytes({buffer, sizeof buffer - state.avail_out});
        } while (state.avail_out == 0);
    }

private:
    z_stream state = {};
    char buffer[1 << 14] = {};
};

}  // namespace

std::uint32_t ZipWriter::Offset() const { return Checked(out.Written() - start); }

void ZipWriter::WriteWords(std::initializer_list<std::uint16_t> words)
{
    for (const std::uint16_t word : words) {
        const char bytes[] = {static_cast<char>(word & 0xff), static_cast<char>(word >> 8)};
        out.Bytes({bytes, sizeof bytes});
    }
}

void ZipWriter::WriteLong(std::uint32_t number)
{
    WriteWords({static_cast<std::uint16_t>(number & 0xffff), static_cast<std::uint16_t>(number >> 16)});
}

// What a file's own header and its row in the directory have in common.
void ZipWriter::WriteEntryFields(std::uint32_t checksum, std::uint32_t compressed, std::uint32_t size,
                                 const std::string& name)
{
    const ZipTime now = Now();
    WriteWords({kVersion, kSizesFollow, kDeflated, now.time, now.date});
    for (const std::uint32_t number : {checksum, compressed, size}) WriteLong(number);
    WriteWords({static_cast<std::uint16_t>(name.size()), 0});
}

void ZipWriter::Add(const std::string& name, std::istream& content)
{
    const std::uint32_t offset = Offset();
    WriteLong(kFileMark);
    WriteEntryFields(0, 0, 0, name);
    out.Bytes(name);

    const std::uint32_t begin = Offset();
    Deflater deflater;
    uLong checksum = crc32(0, nullptr, 0);
    std::uint64_t size = 0;
    std::string piece;
    do {
        piece.resize(1 << 16);
        content.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        if (content.bad() || (content.fail() && !content.eof())) throw std::runtime_error(name + " cannot be read");
        piece.resize(static_cast<std::size_t>(content.gcount()));
        checksum = crc32(checksum, reinterpret_cast<const Bytef*>(piece.data()), static_cast<uInt>(piece.size()));
        size += piece.size();
        deflater.Write(piece, content.eof(), out);
    } while (!content.eof());

    const Entry entry = {name, offset, static_cast<std::uint32_t>(checksum), Offset() - begin, Checked(size)};
    WriteLong(kSizesMark);
    for (const std::uint32_t number : {entry.checksum, entry.compressed, entry.size}) WriteLong(number);
    entries.push_back(entry);
}

void ZipWriter::Finish()
{
    const std::uint32_t directory = Offset();
    for (const Entry& entry : entries) {
        WriteLong(kDirectoryMark);
        WriteWords({kVersion});
        WriteEntryFields(entry.checksum, entry.compressed, entry.size, entry.name);
        // No comment, the first disk, and no attributes.
        WriteWords({0, 0, 0, 0, 0});
        WriteLong(entry.offset);
        out.Bytes(entry.name);
    }
    const std::uint32_t end = Offset();
    const auto count = static_cast<std::uint16_t>(entries.size());
    WriteLong(kEndMark);
    WriteWords({0, 0, count, count});
    WriteLong(end - directory);
    WriteLong(directory);
    WriteWords({0});
}

}  // namespace zelt::ctl
