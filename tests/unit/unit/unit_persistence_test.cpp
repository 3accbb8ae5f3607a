// Saving and loading through the logged unit operation: the form of the saved data, what is logged, and streams that fail or
// return wrong counts.
#include <windows.h>
#include <psapi.h>

#include <cstring>

#include "log/error_description.h"
#include "fake_unit.h"
#include "refusing_stream.h"
#include "unit/stream_transfer.h"

namespace zelt::test {
namespace {

std::string FailedCall() { return Error(ErrorText(E_FAIL, nullptr)); }

constexpr char kReadError[] = "Read error during Load";
constexpr char kWriteError[] = "Write error during Save.";

std::string StreamHeader(REFCLSID classId, std::uint32_t length)
{
    std::string bytes(20, '\0');
    std::memcpy(bytes.data(), &classId, 16);
    std::memcpy(bytes.data() + 16, &length, 4);
    return bytes;
}

// The simulator's stream, which may fail, move fewer bytes than it should, or return a wrong count.
class TestStream final : public com::Object {
public:
    explicit TestStream(std::string content = {}) : content(std::move(content)) {}
    std::string content;
    std::size_t position = 0;
    HRESULT readResult = S_OK, writeResult = S_OK;
    ULONG most = 0xFFFFFFFF;   // how many bytes one call moves at most
    LONG claim = 0;            // added to the returned counts
    int callsUntilFault = -1;  // counts down per call; the call at 0 raises a fault
    ULONG largestRequest = 0;

    IStream* Get() { return &stream; }

private:
    void Enter(ULONG count)
    {
        largestRequest = std::max(largestRequest, count);
        if (callsUntilFault >= 0 && callsUntilFault-- == 0) RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    }
    struct Stream final : RefusingStream {
        explicit Stream(TestStream& owner) : RefusingStream(owner), owner(owner) {}
        STDMETHOD(Read)(void* bytes, ULONG count, ULONG* read) override
        {
            owner.Enter(count);
            if (FAILED(owner.readResult)) return owner.readResult;
            const auto left = static_cast<ULONG>(owner.content.size() - owner.position);
            const ULONG moved = std::min({count, left, owner.most});
            std::memcpy(bytes, owner.content.data() + owner.position, moved);
            owner.position += moved;
            *read = moved + static_cast<ULONG>(owner.claim);
            return moved == count ? owner.readResult : S_FALSE;
        }
        STDMETHOD(Write)(const void* bytes, ULONG count, ULONG* written) override
        {
            owner.Enter(count);
            if (FAILED(owner.writeResult)) return owner.writeResult;
            const ULONG moved = std::min(count, owner.most);
            owner.content.append(static_cast<const char*>(bytes), moved);
            *written = moved + static_cast<ULONG>(owner.claim);
            return owner.writeResult;
        }
        TestStream& owner;
    } stream{*this};
};

class UnitPersistence : public UnitFixture {
protected:
    enum class Knows { Init, Plain, Nothing };
    static void Arrange(Knows way)
    {
        if (way != Knows::Init) unitScript.refused.push_back(IID_IPersistStreamInit);
        if (way == Knows::Nothing) unitScript.refused.push_back(IID_IPersistStream);
    }
    std::string SaveFunc(TestStream& stream, const std::string& body, bool clearDirty = true)
    {
        return UnitFunc("IPersistStreamInit::Save",
                        PointerArg("pstm", "in", stream.Get()) +
                            " <arg name=\"fClearDirty\" direc=\"in\" type=\"BOOL\">\n  <argval value=\"" +
                            (clearDirty ? "TRUE" : "FALSE") + "\"/>\n </arg>\n" + body);
    }
    static std::string LoadFunc(TestStream& stream, const std::string& body)
    {
        return UnitFunc("IPersistStreamInit::Load", PointerArg("pstm", "in", stream.Get()) + body);
    }
    static std::string Created() { return Info(std::string("Created unit operation from CLSID ") + kFakeUnitText); }

    static void WriteInto(IStream* stream, const std::string& text)
    {
        ULONG written = 0;
        EXPECT_EQ(S_OK, stream->Write(text.data(), static_cast<ULONG>(text.size()), &written));
        EXPECT_EQ(text.size(), written);
    }
    static std::string ReadFrom(IStream* stream, ULONG count)
    {
        std::string text(count, '?');
        ULONG read = 0;
        EXPECT_EQ(S_OK, stream->Read(text.data(), count, &read));
        text.resize(read);
        return text;
    }
};

constexpr char kUsingInitSave[] = "Using IPersistStreamInit::Save of logged PMC";
constexpr char kUsingPlainSave[] = "Using IPersistStream::Save of logged PMC";
constexpr char kUsingInitLoad[] = "Using IPersistStreamInit::Load of logged PMC";
constexpr char kUsingPlainLoad[] = "Using IPersistStream::Load of logged PMC";

TEST_F(UnitPersistence, TheFormOfWhatIsSaved)
{
    InitNew();
    unitScript.sizeMax = 6;
    unitScript.duringSave = [](IStream* stream) { WriteInto(stream, "state!"); };
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(StreamHeader(kFakeUnit, 6) + "state!", stream->content);
    EXPECT_EQ(SaveFunc(*stream.Get(), Info(kUsingInitSave)), News());
    EXPECT_EQ((std::vector<std::string>{"init.GetSizeMax", "init.Save"}), unitScript.calls);
    EXPECT_EQ(TRUE, unitScript.clearedDirty);

    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), FALSE));
    EXPECT_EQ(FALSE, unitScript.clearedDirty);
    EXPECT_EQ(SaveFunc(*stream.Get(), Info(kUsingInitSave), false), News());
}

TEST_F(UnitPersistence, WhatIsSavedIsLoadedIntoTheSameClass)
{
    for (const Knows way : {Knows::Init, Knows::Plain}) {
        SCOPED_TRACE(static_cast<int>(way));
        Begin();
        unitScript = {};
        Arrange(way);
        InitNew();
        unitScript.sizeMax = 100;
        std::string state(3000, 'x');
        state[7] = '\0';
        unitScript.duringSave = [&](IStream* stream) { WriteInto(stream, state); };
        const auto stream = ComPtr<TestStream>(new TestStream);
        EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
        const char* saving = way == Knows::Init ? kUsingInitSave : kUsingPlainSave;
        EXPECT_EQ(SaveFunc(*stream.Get(), Info(saving) + Warning("Size returned by GetSizeMax was too small")), News());
        EXPECT_EQ(3020u, stream->content.size());

        Begin();
        unitScript.calls.clear();
        options.pravikUnit = CLSID_NULL;
        std::string found;
        unitScript.duringLoad = [&](IStream* stream) {
            found = ReadFrom(stream, 1000);
            found += ReadFrom(stream, 5000);
            EXPECT_EQ("", ReadFrom(stream, 0));
        };
        EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
        EXPECT_EQ(state, found);
        const char* loading = way == Knows::Init ? kUsingInitLoad : kUsingPlainLoad;
        EXPECT_EQ(LoadFunc(*stream.Get(), Created() + Info(loading)), News());
        // Load does not call InitNew and does not ask the user.
        EXPECT_EQ((std::vector<std::string>{way == Knows::Init ? "init.Load" : "plain.Load"}), unitScript.calls);
        EXPECT_EQ(0, selectionScript.asked);

        // A loaded unit saves its class again.
        unitScript.duringSave = nullptr;
        const auto again = ComPtr<TestStream>(new TestStream);
        EXPECT_EQ(S_OK, persistence->Save(again->Get(), TRUE));
        EXPECT_EQ(StreamHeader(kFakeUnit, 0), again->content);
        options.pravikUnit = kFakeUnit;
    }
}

TEST_F(UnitPersistence, AUnitWithoutPersistence)
{
    Arrange(Knows::Nothing);
    InitNew();
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(SaveFunc(*stream.Get(), ""), News());
    EXPECT_EQ(StreamHeader(kFakeUnit, 0), stream->content);

    Begin();
    EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
    EXPECT_EQ(LoadFunc(*stream.Get(), Created()), News());

    Begin();
    const auto withData = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 3) + "abc"));
    EXPECT_EQ(S_OK, persistence->Load(withData->Get()));
    EXPECT_EQ(LoadFunc(*withData.Get(), Created() + Warning("Unit Operation has been saved, but provides no interface "
                                                            "for Load")),
              News());
    EXPECT_TRUE(unitScript.calls.empty());
}

TEST_F(UnitPersistence, WithoutALogTheSameIsSavedAndLoaded)
{
    Begin(false);
    InitNew();
    unitScript.duringSave = [](IStream* stream) { WriteInto(stream, "abc"); };
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(StreamHeader(kFakeUnit, 3) + "abc", stream->content);
    Begin(false);
    std::string found;
    unitScript.duringLoad = [&](IStream* inner) { found = ReadFrom(inner, 3); };
    EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
    EXPECT_EQ("abc", found);
    EXPECT_EQ(S_FALSE, (unitScript.isDirty = S_FALSE, persistence->IsDirty()));
    EXPECT_EQ("", News());
}

TEST_F(UnitPersistence, BeforeThereIsAUnit)
{
    const auto stream = ComPtr<TestStream>(new TestStream);
    ULARGE_INTEGER size;
    size.QuadPart = 77;
    EXPECT_EQ(E_UNEXPECTED, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(SaveFunc(*stream.Get(), Error("object not created")), News());
    EXPECT_EQ("", stream->content);
    EXPECT_EQ(E_UNEXPECTED, persistence->IsDirty());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::IsDirty", Error("object not created")), News());
    EXPECT_EQ(E_UNEXPECTED, persistence->GetSizeMax(&size));
    EXPECT_EQ(UnitFunc("IPersistStreamInit::GetSizeMax", Error("object not created")), News());
    EXPECT_EQ(77u, size.QuadPart);
}

// --- Saving.

TEST_F(UnitPersistence, SizesThatTheUnitTells)
{
    struct Row {
        const char* what;
        HRESULT result;
        ULONGLONG size;
        std::string warning;
        bool warnsOfGrowth;
    };
    const Row rows[] = {
        {"too small", S_OK, 2, "", true},
        {"fitting", S_OK, 3, "", false},
        {"nothing", S_OK, 0, "", true},
        {"refused", E_NOTIMPL, 9, Warning("Failed to get maximum file size from object. GetSizeMax returns: E_NOTIMPL"),
         false},
        {"beyond 32 bits", S_OK, 0x100000001, Warning("Object reports rediculously high max file size."), false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        Begin();
        unitScript = {};
        InitNew();
        unitScript.sizeResult = row.result;
        unitScript.sizeMax = row.size;
        unitScript.duringSave = [](IStream* stream) {
            WriteInto(stream, "abc");
            WriteInto(stream, std::string(5000, 'd'));
        };
        if (!row.warnsOfGrowth && row.result == S_OK && row.size == 3) {
            unitScript.duringSave = [](IStream* stream) { WriteInto(stream, "abc"); };
        }
        const auto stream = ComPtr<TestStream>(new TestStream);
        EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
        EXPECT_EQ(SaveFunc(*stream.Get(),
                           row.warning + Info(kUsingInitSave) +
                               (row.warnsOfGrowth ? Warning("Size returned by GetSizeMax was too small") : "")),
                  News());
        EXPECT_TRUE(stream->content.substr(20).starts_with("abc"));
    }
}

TEST_F(UnitPersistence, ASizeThatNoMemoryHas)
{
    if (sizeof(void*) != 4) GTEST_SKIP() << "a 64-bit process may well have 4 GiB";
    InitNew();
    unitScript.sizeMax = 0xFFFFFFFF;
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(E_OUTOFMEMORY, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(SaveFunc(*stream.Get(), Error(ErrorText(E_OUTOFMEMORY, nullptr))), News());
    EXPECT_EQ("", stream->content);
    EXPECT_EQ((std::vector<std::string>{"init.GetSizeMax"}), unitScript.calls);
}

TEST_F(UnitPersistence, AUnitThatFailsToSave)
{
    InitNew();
    const auto stream = ComPtr<TestStream>(new TestStream);
    unitScript.save = static_cast<HRESULT>(ECapePersistenceHR);
    EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR), persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(SaveFunc(*stream.Get(), Info(kUsingInitSave) + Error("Object failed to Save.") +
                                          Error("ECapePersistenceHR: storage / persistence error")),
              News());
    unitScript.save = S_FALSE;
    EXPECT_EQ(E_FAIL, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(
        SaveFunc(*stream.Get(), Info(kUsingInitSave) + Error("Object did not return S_OK from Save.") + FailedCall()),
        News());
    unitScript.duringSave = [](IStream*) { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); };
    EXPECT_EQ(E_UNEXPECTED, persistence->Save(stream->Get(), TRUE));
    const std::string news = News();
    EXPECT_NE(std::string::npos, news.find("Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION:"));
    EXPECT_NE(std::string::npos, news.find(Error("Object failed to Save.")));
    EXPECT_EQ("", stream->content);
}

TEST_F(UnitPersistence, AFaultInGetSizeMaxCostsOnlyTheSize)
{
    InitNew();
    int calls = 0;
    unitScript.duringCall = [&] {
        if (++calls == 1) RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    };
    unitScript.duringSave = [](IStream* stream) { WriteInto(stream, "abc"); };
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
    EXPECT_EQ(StreamHeader(kFakeUnit, 3) + "abc", stream->content);
    EXPECT_NE(std::string::npos,
              News().find("Failed to get maximum file size from object. GetSizeMax returns: E_UNEXPECTED"));
}

TEST_F(UnitPersistence, StreamsThatTakeNoData)
{
    InitNew();
    unitScript.sizeMax = 3;
    unitScript.duringSave = [](IStream* stream) { WriteInto(stream, "abc"); };
    const std::string expected = Info(kUsingInitSave) + Error(kWriteError) + FailedCall();
    struct Row {
        const char* what;
        HRESULT result;
        ULONG most;
        LONG claim;
        int callsUntilFault;
    };
    for (const Row& row : {Row{"failing", STG_E_MEDIUMFULL, 99, 0, -1}, Row{"short", S_OK, 15, 0, -1},
                           Row{"short at the length", S_OK, 16, -1, -1}, Row{"claiming more", S_OK, 99, 1, -1},
                           Row{"faulting", S_OK, 99, 0, 0}, Row{"faulting at the data", S_OK, 99, 0, 2}}) {
        SCOPED_TRACE(row.what);
        const auto stream = ComPtr<TestStream>(new TestStream);
        stream->writeResult = row.result;
        stream->most = row.most;
        stream->claim = row.claim;
        stream->callsUntilFault = row.callsUntilFault;
        EXPECT_EQ(E_FAIL, persistence->Save(stream->Get(), TRUE));
        EXPECT_EQ(SaveFunc(*stream.Get(), expected), News());
    }
    EXPECT_EQ(E_FAIL, persistence->Save(nullptr, TRUE));
    EXPECT_NE(std::string::npos, News().find(kWriteError));
}

TEST_F(UnitPersistence, AStreamThatTheUnitKeepsIsOfNoUseAfterwards)
{
    InitNew();
    ComPtr<IStream> kept;
    unitScript.duringSave = [&](IStream* stream) {
        WriteInto(stream, "abc");
        kept = stream;
    };
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
    News();
    char byte = 0;
    EXPECT_EQ(E_FAIL, kept->Write(&byte, 1, nullptr));
    EXPECT_EQ(E_FAIL, kept->Read(&byte, 1, nullptr));
    EXPECT_EQ(
        "<error value=\"Attempt to read from IStream when writing\"/>\n"
        "<error value=\"Attempt to write to IStream when reading\"/>\n",
        News());
    // The stream may even outlive the unit and the unit's log.
    persistence.Reset();
    unit.Reset();
    EXPECT_EQ(E_FAIL, kept->Write(&byte, 1, nullptr));
    kept.Reset();
}

// --- Loading.

TEST_F(UnitPersistence, AStreamThatEndsTooEarly)
{
    const std::string whole = StreamHeader(kFakeUnit, 5) + "state";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        SCOPED_TRACE(length);
        const auto stream = ComPtr<TestStream>(new TestStream(whole.substr(0, length)));
        EXPECT_EQ(E_FAIL, persistence->Load(stream->Get()));
        EXPECT_EQ(LoadFunc(*stream.Get(), Error(kReadError) + FailedCall()), News());
    }
    EXPECT_EQ(0, unitScript.created);
    // None of these failures prevents a later load.
    const auto stream = ComPtr<TestStream>(new TestStream(whole));
    EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
}

TEST_F(UnitPersistence, StreamsThatGiveNoData)
{
    struct Row {
        const char* what;
        HRESULT result;
        ULONG most;
        LONG claim;
        int callsUntilFault;
    };
    for (const Row& row : {Row{"failing", STG_E_READFAULT, 99, 0, -1}, Row{"short", S_OK, 15, 0, -1},
                           Row{"claiming less", S_OK, 99, -1, -1}, Row{"claiming more", S_OK, 99, 1, -1},
                           Row{"faulting", S_OK, 99, 0, 0}, Row{"faulting at the length", S_OK, 99, 0, 1},
                           Row{"faulting at the data", S_OK, 99, 0, 2}}) {
        SCOPED_TRACE(row.what);
        const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 5) + "state"));
        stream->readResult = row.result;
        stream->most = row.most;
        stream->claim = row.claim;
        stream->callsUntilFault = row.callsUntilFault;
        EXPECT_EQ(E_FAIL, persistence->Load(stream->Get()));
        EXPECT_EQ(LoadFunc(*stream.Get(), Error(kReadError) + FailedCall()), News());
    }
    EXPECT_EQ(E_FAIL, persistence->Load(nullptr));
    EXPECT_EQ(
        UnitFunc("IPersistStreamInit::Load", PointerArg("pstm", "in", nullptr) + Error(kReadError) + FailedCall()),
        News());
    EXPECT_EQ(0, unitScript.created);
}

TEST_F(UnitPersistence, ALengthThatNoMemoryHas)
{
    if (sizeof(void*) != 4) GTEST_SKIP() << "a 64-bit process may well have 4 GiB";
    for (const std::uint32_t length : {0xFFFFFFFFu, 0xFFFFFFECu, 0x80000000u}) {
        const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, length) + "state"));
        EXPECT_EQ(E_OUTOFMEMORY, persistence->Load(stream->Get()));
        EXPECT_EQ(LoadFunc(*stream.Get(), Error(ErrorText(E_OUTOFMEMORY, nullptr))), News());
    }
    EXPECT_EQ(0, unitScript.created);
}

// A false length uses address space for a moment, but hardly any memory.
TEST_F(UnitPersistence, AHugeLengthTouchesNoMemory)
{
    const auto Peak = [] {
        PROCESS_MEMORY_COUNTERS counters{};
        counters.cb = sizeof counters;
        EXPECT_TRUE(K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters));
        return counters.PeakWorkingSetSize;
    };
    const SIZE_T before = Peak();
    const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 0x40000000) + "state"));
    const HRESULT result = persistence->Load(stream->Get());
    EXPECT_TRUE(result == E_FAIL || result == E_OUTOFMEMORY) << std::hex << result;
    EXPECT_LE(stream->largestRequest, 1u << 20);
    EXPECT_LT(Peak() - before, SIZE_T{64} << 20);
    EXPECT_EQ(0, unitScript.created);
}

TEST_F(UnitPersistence, DataLargerThanOnePieceComeWhole)
{
    InitNew();
    std::string state(3'000'001, 'a');
    for (std::size_t i = 0; i < state.size(); i += 997) state[i] = static_cast<char>(i / 997);
    unitScript.duringSave = [&](IStream* stream) { WriteInto(stream, state); };
    const auto stream = ComPtr<TestStream>(new TestStream);
    EXPECT_EQ(S_OK, persistence->Save(stream->Get(), TRUE));
    Begin();
    std::string found;
    unitScript.duringLoad = [&](IStream* inner) { found = ReadFrom(inner, static_cast<ULONG>(state.size())); };
    EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
    EXPECT_TRUE(state == found);
}

TEST_F(UnitPersistence, AClassThatIsNotThereAnyMore)
{
    RecordedMessages messages;
    const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kNoUnit, 2) + "ab"));
    EXPECT_EQ(E_FAIL, persistence->Load(stream->Get()));
    EXPECT_EQ(LoadFunc(*stream.Get(), Error("Failed to create unit operation: REGDB_E_CLASSNOTREG") +
                                          Error("Unit Operation creation failed: REGDB_E_CLASSNOTREG") + FailedCall()),
              News());
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"REGDB_E_CLASSNOTREG", messages.All()[0].text);
    EXPECT_EQ(L"Unit Operation", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[0].flags);
}

TEST_F(UnitPersistence, AUnitThatFailsToLoadIsTheAnswer)
{
    unitScript.load = static_cast<HRESULT>(ECapePersistenceHR);
    const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 2) + "ab"));
    EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR), persistence->Load(stream->Get()));
    EXPECT_EQ(LoadFunc(*stream.Get(),
                       Created() + Info(kUsingInitLoad) + Error("ECapePersistenceHR: storage / persistence error")),
              News());
    EXPECT_EQ(S_OK, As<ICapeUnit>(unit)->Calculate());
}

TEST_F(UnitPersistence, AFaultWhileTheUnitLoads)
{
    unitScript.duringLoad = [](IStream*) { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); };
    const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 2) + "ab"));
    EXPECT_EQ(E_UNEXPECTED, persistence->Load(stream->Get()));
    EXPECT_NE(std::string::npos,
              News().find("Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION:"));
}

TEST_F(UnitPersistence, AUnitThatReadsBeyondItsData)
{
    unitScript.duringLoad = [](IStream* stream) {
        EXPECT_EQ("ab", ReadFrom(stream, 10));
        EXPECT_EQ("", ReadFrom(stream, 1));
        EXPECT_EQ(E_FAIL, stream->Write("x", 1, nullptr));
    };
    const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 2) + "ab" + "of somebody else"));
    EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
    EXPECT_EQ(
        LoadFunc(*stream.Get(), Created() + Info(kUsingInitLoad) + Error("Attempt to read past end of input stream") +
                                    Error("Attempt to read from IStream when writing")),
        News());
    // Later data in the simulator's stream is not read.
    EXPECT_EQ(22u, stream->position);
}

TEST_F(UnitPersistence, NothingElseIsMadeWhileAUnitIsLoaded)
{
    static IPersistStreamInit* running;
    running = persistence.Get();
    unitScript.duringCreation = [] {
        EXPECT_EQ(E_FAIL, running->InitNew());
        EXPECT_EQ(E_FAIL, running->Load(nullptr));
    };
    const auto stream = ComPtr<TestStream>(new TestStream(StreamHeader(kFakeUnit, 0)));
    EXPECT_EQ(S_OK, persistence->Load(stream->Get()));
    EXPECT_EQ(1, unitScript.created);
}

// --- IsDirty and GetSizeMax.

TEST_F(UnitPersistence, IsDirty)
{
    struct Row {
        HRESULT result;
        std::string entry;
    };
    InitNew();
    for (const Row& row : {Row{S_OK, Info("Returning S_OK")}, Row{S_FALSE, Info("Returning S_FALSE")},
                           Row{2, Warning("Returning other value than S_FALSE or S_OK")},
                           Row{E_NOTIMPL, Warning("Returning other value than S_FALSE or S_OK")}}) {
        unitScript.isDirty = row.result;
        EXPECT_EQ(row.result, persistence->IsDirty());
        EXPECT_EQ(UnitFunc("IPersistStreamInit::IsDirty", row.entry), News());
    }
    EXPECT_EQ("init.IsDirty", unitScript.calls.back());

    Begin();
    unitScript = {};
    Arrange(Knows::Plain);
    InitNew();
    unitScript.isDirty = S_OK;
    EXPECT_EQ(S_OK, persistence->IsDirty());
    EXPECT_EQ((std::vector<std::string>{"plain.IsDirty"}), unitScript.calls);

    Begin();
    unitScript = {};
    Arrange(Knows::Nothing);
    InitNew();
    EXPECT_EQ(S_FALSE, persistence->IsDirty());
    EXPECT_EQ(UnitFunc("IPersistStreamInit::IsDirty", Info("Returning S_FALSE")), News());
}

TEST_F(UnitPersistence, GetSizeMax)
{
    struct Row {
        ULONGLONG inner;
        ULONGLONG outer;
        const char* shown;
    };
    const Row rows[] = {
        {0, 20, "20"},
        {1000, 1020, "1020"},
        {0x7FFFFFEB, 0x7FFFFFFF, "2147483647"},
        {0x7FFFFFEC, 0xFFFFFFFF80000000, "-2147483648"},
        {0xFFFFFFF0, 4, "4"},
        {0x500000005, 25, "25"},
    };
    InitNew();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.shown);
        unitScript.sizeMax = row.inner;
        ULARGE_INTEGER size;
        size.QuadPart = 0xDEADBEEFDEADBEEF;
        EXPECT_EQ(S_OK, persistence->GetSizeMax(&size));
        EXPECT_EQ(row.outer, size.QuadPart);
        EXPECT_EQ(UnitFunc("IPersistStreamInit::GetSizeMax",
                           std::string(" <arg name=\"pcbSize\" direc=\"out\" type=\"long\">\n  <argval value=\"") +
                               row.shown + "\"/>\n </arg>\n"),
                  News());
    }
    ULARGE_INTEGER size;
    size.QuadPart = 77;
    unitScript.sizeResult = E_NOTIMPL;
    EXPECT_EQ(E_NOTIMPL, persistence->GetSizeMax(&size));
    EXPECT_EQ(77u, size.QuadPart);
    EXPECT_EQ(UnitFunc("IPersistStreamInit::GetSizeMax", Error(ErrorText(E_NOTIMPL, nullptr))), News());
    EXPECT_EQ(E_POINTER, persistence->GetSizeMax(nullptr));

    // A unit that supports only the older interface is asked through that interface.
    Begin();
    unitScript = {};
    Arrange(Knows::Plain);
    InitNew();
    unitScript.sizeMax = 1000;
    EXPECT_EQ(S_OK, persistence->GetSizeMax(&size));
    EXPECT_EQ(1020u, size.QuadPart);
    EXPECT_EQ((std::vector<std::string>{"plain.GetSizeMax"}), unitScript.calls);
    EXPECT_EQ(UnitFunc("IPersistStreamInit::GetSizeMax",
                       " <arg name=\"pcbSize\" direc=\"out\" type=\"long\">\n  <argval value=\"1020\"/>\n </arg>\n"),
              News());
    unitScript.sizeResult = static_cast<HRESULT>(0x80040501);
    size.QuadPart = 77;
    EXPECT_EQ(unitScript.sizeResult, persistence->GetSizeMax(&size));
    EXPECT_EQ(77u, size.QuadPart);
    EXPECT_EQ(
        UnitFunc("IPersistStreamInit::GetSizeMax", Error("ECapeUnknownHR: Failed to get error name for ECapeUnknown")),
        News());

    Begin();
    unitScript = {};
    Arrange(Knows::Nothing);
    InitNew();
    size.QuadPart = 0x300000007;
    EXPECT_EQ(S_OK, persistence->GetSizeMax(&size));
    EXPECT_EQ(27u, size.QuadPart);
}

}  // namespace
}  // namespace zelt::test
