// Many objects and many calls in one process release everything that they use. ZELT_TEST_EFFORT multiplies their
// number.
#include <iostream>

#include "checked_heap.h"
#include "guard/calls_in_progress.h"
#include "fault_kinds.h"
#include "long_run.h"
#include "proxy_fixture.h"
#include "tests/system/harness/process_figures.h"

namespace zelt::test {
namespace {

// The private bytes may grow by this much, because the system's heap grows in steps. The heap of operator new must not grow.
constexpr SIZE_T kMostGrowth = 4 << 20;

// A package with its proxy, with or without a log. Its calls call back into a material.
class Life {
public:
    explicit Life(bool isLogged) : path(TemporaryPath())
    {
        options.promptOpenLog = false;
        if (isLogged) {
            LogFile file;
            EXPECT_EQ(0, file.Open(path));
            document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
            document->Hold();
        }
        material.As(&face);
        package->keepsMaterial = true;
        proxy = ComPtr<CPropertyPackage11>(new CPropertyPackage11);
        proxy->AttachAsRoot(package.Get(), document, "Pack");
        proxy.As(&context);
        proxy.As(&routine);
        properties.vt = VT_ARRAY | VT_BSTR;
        properties.parray = SafeArrayCreateVector(VT_BSTR, 0, 2);
        static_cast<BSTR*>(properties.parray->pvData)[0] = SysAllocString(L"fugacity");
    }
    ~Life()
    {
        routine.Reset();
        context.Reset();
        proxy.Reset();
        if (document) document->LetGo();
        DeleteFileW(path.c_str());
        package->kept.Reset();
        EXPECT_EQ(1u, package->ReferenceCount());
        face.Reset();
        EXPECT_EQ(1u, material->ReferenceCount());
    }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;

    // A calculation that reads the material, and then succeeds, fails, or ends in a fault.
    void Call(int number)
    {
        const auto& kinds = Kinds();
        if (number % 50 == 0) {
            package->result = S_OK;
            EXPECT_EQ(S_OK, context->SetMaterial(face.Get()));
        }
        const FaultKind* kind =
            number % 20 == 19 ? kinds[static_cast<std::size_t>(number / 20) % kinds.size()] : nullptr;
        package->result = number % 7 == 6 ? static_cast<HRESULT>(ECapeComputationHR) : S_OK;
        package->duringCall = [&] {
            ComPtr<ICapeThermoMaterial> state;
            EXPECT_EQ(S_OK, package->kept.As(&state));
            double temperature = 0, pressure = 0;
            VARIANT composition;
            VariantInit(&composition);
            EXPECT_EQ(S_OK, state->GetOverallTPFraction(&temperature, &pressure, &composition));
            state.Reset();
            if (kind) kind->act.act(kind->act.what);
        };
        const HRESULT expected = kind ? E_UNEXPECTED : package->result;
        EXPECT_EQ(expected, routine->CalcSinglePhaseProp(properties, nullptr));
        package->duringCall = {};
        package->calls.clear();
        package->asked.clear();
        material->asked.clear();
    }

private:
    // Faults with a known code, except those with "overflow" in their names. Exceptions and aborts are left out, because
    // they would leave memory of the package allocated.
    static const std::vector<const FaultKind*>& Kinds()
    {
        static const std::vector<const FaultKind*> kinds = [] {
            std::vector<const FaultKind*> chosen;
            for (const FaultKind& kind : AllFaultKinds()) {
                const bool isFault = kind.logged.find("EXCEPTION_") != std::string::npos;
                if (isFault && kind.name.find("overflow") == std::string::npos) chosen.push_back(&kind);
            }
            return chosen;
        }();
        return kinds;
    }

    std::wstring path;
    LogOptions options;
    LogDocument* document = nullptr;
    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();
    ComPtr<IDispatch> face;
    ComPtr<CPropertyPackage11> proxy;
    ComPtr<ICapeThermoMaterialContext> context;
    ComPtr<ICapeThermoPropertyRoutine> routine;
    _variant_t properties;
};

class Soak : public testing::Test {
protected:
    Soak() { InstallWrappers(); }

    template <class Round>
    static void ExpectFlat(int warmUp, int rounds, Round round)
    {
        for (int i = 0; i < warmUp; ++i) round(i);
        const ProcessFigures before = FiguresOf(GetCurrentProcessId());
        const HeapInUse heapBefore = HeapOfOperatorNew();
        for (int i = 0; i < rounds && !HasFailure(); ++i) round(i);
        const HeapInUse heapAfter = HeapOfOperatorNew();
        const ProcessFigures after = FiguresOf(GetCurrentProcessId());
        std::cout << rounds << " rounds; before: " << before << ", " << heapBefore.blocks << " blocks; after: " << after
                  << ", " << heapAfter.blocks << " blocks" << std::endl;
        ASSERT_LT(0u, before.handles);
        ASSERT_LT(0u, before.privateBytes);
        EXPECT_EQ(heapBefore.blocks, heapAfter.blocks);
        EXPECT_EQ(heapBefore.bytes, heapAfter.bytes);
        EXPECT_EQ(before.handles, after.handles);
        EXPECT_EQ(before.gdiObjects, after.gdiObjects);
        EXPECT_EQ(before.userObjects, after.userObjects);
        EXPECT_LT(after.privateBytes, before.privateBytes + kMostGrowth);
        EXPECT_EQ(0u, CountCallsInProgress());
    }
};

TEST_F(Soak, LivesLeaveNothingBehind)
{
    // The warm-up lets the checked heap reach the limit up to which it keeps freed blocks.
    ExpectFlat(400, 200 * Effort(), [](int i) {
        Life life(i % 2 == 0);
        for (int call = 0; call < 21; ++call) life.Call(call);
    });
}

TEST_F(Soak, CallsLeaveNothingBehind)
{
    Life life(true);
    ExpectFlat(5'000, 5'000 * Effort(), [&](int i) { life.Call(i); });
}

}  // namespace
}  // namespace zelt::test
