#include "bench/tag_scan.h"

#include <fcntl.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "bench/rows.h"

#ifdef _WIN32
#include <emmintrin.h>
#include <io.h>

#include <bit>
#else
#include <unistd.h>
#endif

namespace zelt::bench {
namespace {

constexpr std::size_t kPiece = 1 << 16;

#ifdef _WIN32
constexpr std::size_t kSlack = sizeof(__m128i);

int Open(const std::filesystem::path& path) { return _wopen(path.c_str(), _O_RDONLY | _O_BINARY | _O_SEQUENTIAL); }
long Read(int file, char* out) { return _read(file, out, kPiece); }
void Close(int file) { _close(file); }

// Compares sixteen bytes at a time, because memchr of this C library compares them one by one. Reads up to kSlack bytes past
// the end.
const char* Find(const char* from, const char* end, char c)
{
    const __m128i wanted = _mm_set1_epi8(c);
    for (; from < end; from += sizeof wanted) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        const int found = _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, wanted));
        if (!found) continue;
        from += std::countr_zero(static_cast<unsigned>(found));
        return from < end ? from : nullptr;
    }
    return nullptr;
}
#else
constexpr std::size_t kSlack = 0;

int Open(const std::filesystem::path& path) { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }
long Read(int file, char* out) { return read(file, out, kPiece); }
void Close(int file) { close(file); }

// This C library's memchr is fast.
const char* Find(const char* from, const char* end, char c)
{
    return static_cast<const char*>(std::memchr(from, c, static_cast<std::size_t>(end - from)));
}
#endif

// A tag that continues in the next piece is not counted.
long long CountTags(const char* at, const char* end)
{
    long long tags = 0;
    while ((at = Find(at, end, '<')) && (at = Find(at, end, '>'))) ++tags;
    return tags;
}

}  // namespace

double ScanForTags(const std::filesystem::path& path)
{
    const WorkWatch watch;
    const int file = Open(path);
    if (file < 0) throw std::runtime_error("the log cannot be opened");
    const std::unique_ptr<char[]> bytes(new char[kPiece + kSlack]());
    long long tags = 0;
    long length;
    while ((length = Read(file, bytes.get())) > 0) tags += CountTags(bytes.get(), bytes.get() + length);
    Close(file);
    if (length < 0 || tags == 0) throw std::runtime_error("there are no tags in the log");
    return watch.Seconds();
}

}  // namespace zelt::bench
