// Every allocation of our own fails, one after the other: no call goes further than a status code, no reference is lost, and
// the log stays whole.
#include <fcntl.h>
#include <io.h>

#include <cstdio>

#include "checked_heap.h"
#include "core/calls_in_progress.h"
#include "fault_kinds.h"
#include "proxy_fixture.h"
#include "shell/log_reader/log_reader.h"

namespace zelt::test {
namespace {

class NoErrors final : public LogSink {
public:
    void Item(const LogItem&) override { ++items; }
    void ParseError(int line) override { ADD_FAILURE() << "line " << line; }
    bool Continue() override { return true; }
    int items = 0;
};

// A package's life with calls of each sort.
class Story {
public:
    explicit Story(LogDocument* document) : document(document)
    {
        material.As(&face);
        material->created = face.Get();
        package->keepsMaterial = true;
        package->duringCall = [this] { ReadMaterial(); };
        package->errorDescription = L"it has failed";
    }
    ~Story()
    {
        package->duringCall = {};
        package->kept.Reset();
        EXPECT_EQ(1u, package->ReferenceCount());
        face.Reset();
        EXPECT_EQ(1u, material->ReferenceCount());
        EXPECT_EQ(0u, CountCallsInProgress());
    }
    Story(const Story&) = delete;
    Story& operator=(const Story&) = delete;

    // Ends early when there is no memory for the proxy.
    void Run()
    {
        ComPtr<CPropertyPackage11> proxy;
        const HRESULT made = com::NoThrow([&] {
            proxy = ComPtr<CPropertyPackage11>(new CPropertyPackage11);
            proxy->AttachAsRoot(package.Get(), document, "Pack");
            return S_OK;
        });
        if (FAILED(made)) return;
        ComPtr<ICapeThermoMaterialContext> context;
        ComPtr<ICapeThermoPropertyRoutine> routine;
        ComPtr<ICapeIdentification> identification;
        ComPtr<ICapeThermoMaterial> unknown;
        if (SUCCEEDED(proxy.As(&context))) context->SetMaterial(face.Get());
        if (SUCCEEDED(proxy.As(&routine))) {
            routine->CalcSinglePhaseProp(VARIANT{}, nullptr);
            package->result = static_cast<HRESULT>(ECapeComputationHR);
            routine->CalcSinglePhaseProp(VARIANT{}, nullptr);
            package->result = S_OK;
        }
        if (SUCCEEDED(proxy.As(&identification))) identification->put_ComponentName(name);
        proxy.As(&unknown);
    }

private:
    void ReadMaterial()
    {
        ComPtr<ICapeThermoMaterial> state;
        if (!package->kept || FAILED(package->kept.As(&state))) return;
        VARIANT value;
        VariantInit(&value);
        state->GetSinglePhaseProp(name, nullptr, name, &value);
        ComPtr<IDispatch> created;
        state->CreateMaterial(&created);
    }

    LogDocument* document;
    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();
    ComPtr<IDispatch> face;
    _bstr_t name = L"a name that is longer than what a string has room for by itself";
};

TEST(MemoryFailure, OfEachAllocationEndsInStatusCodes)
{
    InstallWrappers();
    PrepareLogReader();
    LogOptions options;
    options.promptOpenLog = false;
    for (const bool isLogged : {true, false}) {
        SCOPED_TRACE(isLogged ? "logged" : "not logged");
        int failures = 0;
        for (long successes = 0;; ++successes) {
            SCOPED_TRACE(successes);
            const std::wstring path = TemporaryPath();
            LogFile file;
            ASSERT_EQ(0, file.Open(path));
            auto* document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
            document->Hold();
            {
                Story story(isLogged ? document : nullptr);
                FailAllocationAfter(successes);
                story.Run();
                failures += FailAllocationAfter(-1);
            }
            document->LetGo();
            NoErrors log;
            const int descriptor = _wopen(path.c_str(), _O_RDONLY | _O_BINARY);
            EXPECT_EQ(LogReadResult::Complete, ReadLog(descriptor, log));
            _close(descriptor);
            DeleteFileW(path.c_str());
            if (testing::Test::HasFailure()) return;
            // The story was over before its memory was.
            if (failures == successes) break;
        }
        std::printf("%d allocations failed\n", failures);
        EXPECT_LT(10, failures);
    }
}

}  // namespace
}  // namespace zelt::test
