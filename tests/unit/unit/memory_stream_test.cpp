// The stream in memory: its contents, and its results for misuse.
#include "unit/memory_stream.h"

#include <wrl/client.h>

#include <cstring>

#include "log_fixture.h"

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;

constexpr char kReadMisuse[] = "<error value=\"Attempt to write to IStream when reading\"/>\n";
constexpr char kWriteMisuse[] = "<error value=\"Attempt to read from IStream when writing\"/>\n";
constexpr char kTooSmall[] = "<warning value=\"Size returned by GetSizeMax was too small\"/>\n";
constexpr char kPastEnd[] = "<error value=\"Attempt to Seek past end of file\"/>\n";
constexpr char kTooLarge[] = "<error value=\"Position too large for Seek\"/>\n";
constexpr char kNoMemory[] = "<error value=\"Out of memory trying to re-allocate stream data\"/>\n";

class MemoryStream : public LogFixture {
protected:
    void BeginReading(const std::string& content)
    {
        ASSERT_TRUE(memory->Allocate(static_cast<std::uint32_t>(content.size())));
        std::memcpy(memory->Data(), content.data(), content.size());
        memory->BeginReading();
    }
    void BeginWriting(std::uint32_t capacity, bool unitChoseSize)
    {
        ASSERT_TRUE(memory->Allocate(capacity));
        memory->BeginWriting(unitChoseSize);
    }
    // The bytes that one call of Read returns.
    std::string Read(ULONG count)
    {
        std::string text(count, '?');
        ULONG read = 99;
        EXPECT_EQ(S_OK, memory->Stream()->Read(text.data(), count, &read));
        EXPECT_LE(read, count);
        text.resize(read);
        return text;
    }
    void Write(const std::string& text)
    {
        ULONG written = 99;
        EXPECT_EQ(S_OK, memory->Stream()->Write(text.data(), static_cast<ULONG>(text.size()), &written));
        EXPECT_EQ(text.size(), written);
    }
    // The new position, or -1 if refused.
    LONGLONG Seek(LONGLONG move, DWORD origin)
    {
        LARGE_INTEGER distance;
        distance.QuadPart = move;
        ULARGE_INTEGER position;
        position.QuadPart = 0xDEADBEEFDEADBEEFull;
        const HRESULT result = memory->Stream()->Seek(distance, origin, &position);
        if (result == S_OK) return static_cast<LONGLONG>(position.QuadPart);
        EXPECT_EQ(E_FAIL, result);
        EXPECT_EQ(0xDEADBEEFDEADBEEFull, position.QuadPart) << "written after a failure";
        return -1;
    }
    std::string Used() const
    {
        return std::string(reinterpret_cast<const char*>(memory->Data()), memory->UsedLength());
    }

    ComPtr<CStreamImpl> memory{new CStreamImpl(document)};
};

TEST_F(MemoryStream, IsReadToItsEnd)
{
    BeginReading("abcdef");
    EXPECT_EQ("abcd", Read(4));
    EXPECT_EQ("ef", Read(4));
    EXPECT_EQ("", Read(0));
    EXPECT_EQ("", Written());
    EXPECT_EQ("", Read(1));
    EXPECT_EQ("<error value=\"Attempt to read past end of input stream\"/>\n", Written());
    EXPECT_EQ(S_OK, memory->Stream()->Read(nullptr, 0, nullptr));
}

TEST_F(MemoryStream, NoCountIsNeeded)
{
    BeginReading("ab");
    char byte = 0;
    EXPECT_EQ(S_OK, memory->Stream()->Read(&byte, 1, nullptr));
    EXPECT_EQ('a', byte);
    memory->End();
    BeginWriting(1, true);
    EXPECT_EQ(S_OK, memory->Stream()->Write("x", 1, nullptr));
    LARGE_INTEGER start = {};
    EXPECT_EQ(S_OK, memory->Stream()->Seek(start, STREAM_SEEK_SET, nullptr));
    EXPECT_EQ("x", Used());
}

TEST_F(MemoryStream, MisuseIsLoggedWithTheTextsSwapped)
{
    char byte = 'x';
    ULONG count = 7;
    BeginReading("ab");
    EXPECT_EQ(E_FAIL, memory->Stream()->Write(&byte, 1, &count));
    EXPECT_EQ(kWriteMisuse, Written());
    memory->End();
    BeginWriting(4, true);
    EXPECT_EQ(E_FAIL, memory->Stream()->Read(&byte, 1, &count));
    EXPECT_EQ(std::string(kWriteMisuse) + kReadMisuse, Written());
    // After the save or load is over, neither reading nor writing works.
    memory->End();
    EXPECT_EQ(E_FAIL, memory->Stream()->Read(&byte, 1, &count));
    EXPECT_EQ(E_FAIL, memory->Stream()->Write(&byte, 1, &count));
    EXPECT_EQ(-1, Seek(1, STREAM_SEEK_SET));
    EXPECT_EQ(0, Seek(0, STREAM_SEEK_END));
    EXPECT_EQ(std::string(kWriteMisuse) + kReadMisuse + kReadMisuse + kWriteMisuse + kPastEnd, Written());
    EXPECT_EQ(7u, count);
    EXPECT_EQ('x', byte);
}

TEST_F(MemoryStream, GrowsAndSaysOnceThatTheSizeWasTooSmall)
{
    BeginWriting(4, true);
    Write("1234");
    EXPECT_EQ("", Written());
    Write("5");
    EXPECT_EQ(kTooSmall, Written());
    EXPECT_EQ("12345", Used());
    // Now there is room for 1 + 2 * 4 + 1024 bytes.
    Write(std::string(1033 - 5, 'x'));
    Write("y");
    EXPECT_EQ(kTooSmall, Written());
    EXPECT_EQ("12345" + std::string(1028, 'x') + "y", Used());
    EXPECT_EQ(1 + 2 * 1033 + 1024, Seek(0, STREAM_SEEK_END));
}

TEST_F(MemoryStream, GrowsSilentlyWhenTheSizeWasNotTheUnits)
{
    BeginWriting(0, false);
    Write("abc");
    EXPECT_EQ("", Written());
    EXPECT_EQ("abc", Used());
}

TEST_F(MemoryStream, WritingElsewhere)
{
    BeginWriting(8, true);
    Write("abcd");
    EXPECT_EQ(1, Seek(1, STREAM_SEEK_SET));
    Write("X");
    EXPECT_EQ("aXcd", Used());
    EXPECT_EQ(5, Seek(3, STREAM_SEEK_CUR));
    EXPECT_EQ(std::string("aXcd\0", 5), Used());
    // STREAM_SEEK_END counts from the end of the allocated room. The gap before the new position is filled with zeros.
    EXPECT_EQ(8, Seek(0, STREAM_SEEK_END));
    EXPECT_EQ(std::string("aXcd\0\0\0\0", 8), Used());
    EXPECT_EQ("", Written());
    EXPECT_EQ(10, Seek(2, STREAM_SEEK_END));
    EXPECT_EQ(kTooSmall, Written());
    EXPECT_EQ(std::string("aXcd\0\0\0\0\0\0", 10), Used());
    EXPECT_EQ(10 + 1024, Seek(0, STREAM_SEEK_END));
    EXPECT_EQ(3000, Seek(3000, STREAM_SEEK_SET));
    EXPECT_EQ(4024, Seek(0, STREAM_SEEK_END));
    EXPECT_EQ(kTooSmall, Written());
}

TEST_F(MemoryStream, SeekingWhileReading)
{
    BeginReading("abcdef");
    EXPECT_EQ(6, Seek(6, STREAM_SEEK_SET));
    EXPECT_EQ(6, Seek(0, STREAM_SEEK_END));
    EXPECT_EQ(2, Seek(2, STREAM_SEEK_SET));
    EXPECT_EQ(4, Seek(2, STREAM_SEEK_CUR));
    EXPECT_EQ("", Written());
    EXPECT_EQ(-1, Seek(7, STREAM_SEEK_SET));
    EXPECT_EQ(-1, Seek(3, STREAM_SEEK_CUR));
    EXPECT_EQ(-1, Seek(1, STREAM_SEEK_END));
    EXPECT_EQ(std::string(kPastEnd) + kPastEnd + kPastEnd, Written());
    EXPECT_EQ("ef", Read(9));
}

TEST_F(MemoryStream, MovesThatNeedMoreThan32Bits)
{
    BeginReading("abcdef");
    EXPECT_EQ(2, Seek(2, STREAM_SEEK_SET));
    EXPECT_EQ(-1, Seek(-1, STREAM_SEEK_CUR));
    EXPECT_EQ(-1, Seek(-1, STREAM_SEEK_END));
    EXPECT_EQ(-1, Seek(0x100000000, STREAM_SEEK_SET));
    EXPECT_EQ(-1, Seek(-1, 17));
    EXPECT_EQ(std::string(kTooLarge) + kTooLarge + kTooLarge + kTooLarge, Written());
    EXPECT_EQ(-1, Seek(0, 17));
    EXPECT_TRUE(Written().ends_with("<error value=\"Invalid dwOrigin argument to IStream::Seek\"/>\n"));
    EXPECT_EQ("cdef", Read(9));
}

// If a position wrapped around at 32 bits, the unit would write in the wrong place.
TEST_F(MemoryStream, PositionsDoNotWrapAround)
{
    BeginWriting(16, true);
    Write("abcd");
    LARGE_INTEGER distant = {};
    distant.LowPart = 0xFFFFFFFF;
    EXPECT_EQ(E_OUTOFMEMORY, memory->Stream()->Seek(distant, STREAM_SEEK_CUR, nullptr));
    EXPECT_EQ(E_OUTOFMEMORY, memory->Stream()->Seek(distant, STREAM_SEEK_SET, nullptr));
    ULONG written = 9;
    EXPECT_EQ(E_OUTOFMEMORY, memory->Stream()->Write("x", 0xFFFFFFFF, &written));
    EXPECT_EQ(9u, written);
    EXPECT_EQ(std::string(kTooSmall) + kNoMemory + kNoMemory + kNoMemory, Written());
    EXPECT_EQ("abcd", Used());
    Write("e");
    EXPECT_EQ("abcde", Used());
}

TEST_F(MemoryStream, NothingCanBeAllocatedBeyondTheAddressSpace)
{
    if constexpr (sizeof(void*) == 4) {
        EXPECT_FALSE(memory->Allocate(0xFFFFFFFF));
        EXPECT_FALSE(memory->Allocate(0x80000000));
    }
    EXPECT_TRUE(memory->Allocate(0));
    EXPECT_TRUE(memory->Allocate(3));
    EXPECT_EQ(std::string(3, '\0'), std::string(reinterpret_cast<const char*>(memory->Data()), 3));
}

TEST_F(MemoryStream, TheOtherMethods)
{
    BeginWriting(4, true);
    IStream* stream = memory->Stream();
    EXPECT_EQ(E_FAIL, stream->SetSize({}));
    EXPECT_EQ(E_FAIL, stream->CopyTo(stream, {}, nullptr, nullptr));
    EXPECT_EQ(S_OK, stream->Commit(0));
    EXPECT_EQ(E_FAIL, stream->Revert());
    EXPECT_EQ(STG_E_INVALIDFUNCTION, stream->LockRegion({}, {}, 0));
    EXPECT_EQ(STG_E_INVALIDFUNCTION, stream->UnlockRegion({}, {}, 0));
    STATSTG status;
    EXPECT_EQ(STG_E_ACCESSDENIED, stream->Stat(&status, 0));
    IStream* clone = stream;
    EXPECT_EQ(E_FAIL, stream->Clone(&clone));
    EXPECT_EQ(nullptr, clone);
    EXPECT_EQ(E_FAIL, stream->Clone(nullptr));
    EXPECT_EQ("", Written());
}

TEST_F(MemoryStream, Identity)
{
    ComPtr<IUnknown> one, other;
    ComPtr<ISequentialStream> sequential;
    ComPtr<IDispatch> dispatch;
    ComPtr<IStorage> storage;
    EXPECT_EQ(S_OK, memory->Stream()->QueryInterface(IID_PPV_ARGS(&sequential)));
    EXPECT_EQ(S_OK, sequential.As(&one));
    EXPECT_EQ(S_OK, sequential->QueryInterface(IID_PPV_ARGS(&dispatch)));
    EXPECT_EQ(S_OK, dispatch.As(&other));
    EXPECT_EQ(one.Get(), other.Get());
    EXPECT_EQ(E_NOINTERFACE, memory->QueryInterface(IID_PPV_ARGS(&storage)));

    UINT count = 9;
    EXPECT_EQ(S_OK, dispatch->GetTypeInfoCount(&count));
    EXPECT_EQ(0u, count);
    auto* info = reinterpret_cast<ITypeInfo*>(memory.Get());
    EXPECT_EQ(E_NOTIMPL, dispatch->GetTypeInfo(0, 0, &info));
    EXPECT_EQ(nullptr, info);
    EXPECT_EQ(E_POINTER, dispatch->GetTypeInfo(0, 0, nullptr));
    EXPECT_EQ(E_POINTER, dispatch->GetTypeInfoCount(nullptr));
    OLECHAR name[] = L"Read";
    LPOLESTR names[] = {name};
    DISPID id = 5;
    EXPECT_EQ(DISP_E_UNKNOWNNAME, dispatch->GetIDsOfNames(IID_NULL, names, 1, 0, &id));
    EXPECT_EQ(DISPID_UNKNOWN, id);
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
              dispatch->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(MemoryStream, WithoutALogTheResultsAreTheSame)
{
    memory = ComPtr<CStreamImpl>(new CStreamImpl(nullptr));
    BeginWriting(1, true);
    Write("abc");
    EXPECT_EQ("abc", Used());
    char byte;
    EXPECT_EQ(E_FAIL, memory->Stream()->Read(&byte, 1, nullptr));
    EXPECT_EQ(-1, Seek(-1, STREAM_SEEK_SET));
    EXPECT_EQ("", Written());
}

}  // namespace
}  // namespace zelt::test
