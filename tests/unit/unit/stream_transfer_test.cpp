// Moving bytes to and from a simulator's stream: piece by piece, with a failure unless all bytes have been moved.
#include "unit/stream_transfer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "refusing_stream.h"

namespace zelt::test {
namespace {

constexpr ULONG kMegabyte = 1024 * 1024;

// Holds what was written, and notes the length of each request. The request with the number `shortRequest` moves one byte too
// few.
class PieceStream final : public com::Object {
public:
    struct Stream final : RefusingStream {
        using RefusingStream::RefusingStream;
        STDMETHOD(Read)(void* bytes, ULONG count, ULONG* read) override
        {
            *read = Take(count);
            std::memcpy(bytes, content.data() + position, *read);
            position += *read;
            return result;
        }
        STDMETHOD(Write)(const void* bytes, ULONG count, ULONG* written) override
        {
            *written = Take(count);
            content.append(static_cast<const char*>(bytes), *written);
            return result;
        }
        ULONG Take(ULONG count)
        {
            requests.push_back(count);
            return requests.size() == shortRequest ? count - 1 : count;
        }

        std::string content;
        std::size_t position = 0, shortRequest = 0;
        std::vector<ULONG> requests;
        HRESULT result = S_OK;
    } stream{*this};
};

std::string Pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + (i >> 12));
    return bytes;
}

TEST(StreamTransfer, MovesAtMostAMegabyteAtOnce)
{
    const struct {
        std::uint32_t size;
        std::vector<ULONG> requests;
    } kRows[] = {
        {0, {}},
        {1, {1}},
        {kMegabyte, {kMegabyte}},
        {kMegabyte + 1, {kMegabyte, 1}},
        {2 * kMegabyte + 5, {kMegabyte, kMegabyte, 5}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.size);
        const Microsoft::WRL::ComPtr<PieceStream> object(new PieceStream);
        const std::string bytes = Pattern(row.size);
        EXPECT_TRUE(WriteAll(&object->stream, bytes.data(), row.size));
        EXPECT_EQ(row.requests, object->stream.requests);
        EXPECT_TRUE(bytes == object->stream.content);
        object->stream.requests.clear();
        std::string read(row.size, '?');
        EXPECT_TRUE(ReadAll(&object->stream, read.data(), row.size));
        EXPECT_EQ(row.requests, object->stream.requests);
        EXPECT_TRUE(bytes == read);
    }
}

TEST(StreamTransfer, FailsWithTheFirstPieceThatIsNotWhole)
{
    const std::string bytes = Pattern(2 * kMegabyte);
    for (const bool fails : {false, true}) {
        const Microsoft::WRL::ComPtr<PieceStream> object(new PieceStream);
        if (fails) {
            object->stream.result = STG_E_MEDIUMFULL;
        } else {
            object->stream.shortRequest = 1;
        }
        EXPECT_FALSE(WriteAll(&object->stream, bytes.data(), 2 * kMegabyte));
        EXPECT_EQ(1u, object->stream.requests.size());
    }
    EXPECT_FALSE(WriteAll(nullptr, bytes.data(), 1));
}

}  // namespace
}  // namespace zelt::test
