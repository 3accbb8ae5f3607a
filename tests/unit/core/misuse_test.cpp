// Packages and simulators do what they should not; the server is unharmed.
#include <thread>

#include "guard/calls_in_progress.h"
#include "proxy_fixture.h"

namespace zelt::test {
namespace {

class Misuse : public ProxyFixture {
protected:
    Misuse()
    {
        material.As(&face);
        proxy = MakeProxy(package.Get());
    }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();
    ComPtr<IDispatch> face;
    ComPtr<CPropertyPackage11> proxy;
};

TEST_F(Misuse, APackageThatReleasesAMaterialTooOftenInMidCall)
{
    const auto context = As<ICapeThermoMaterialContext>(proxy);
    for (const int releases : {1, 2, 5}) {
        SCOPED_TRACE(releases);
        package->duringCall = [&] {
            IDispatch* given = package->material;
            for (int i = 0; i < releases; ++i) given->Release();
            // The package continues to use the material.
            ICapeThermoMaterial* state = nullptr;
            if (SUCCEEDED(given->QueryInterface(IID_PPV_ARGS(&state)))) {
                EXPECT_EQ(S_OK, state->ClearAllProps());
                state->Release();
            }
        };
        EXPECT_EQ(S_OK, context->SetMaterial(face.Get()));
        // The simulator's own material is unharmed: its proxy is gone, and this test's two references are left.
        EXPECT_EQ(2u, material->ReferenceCount());
        EXPECT_EQ(0u, CountCallsInProgress());
    }
    package->duringCall = {};
    EXPECT_EQ(S_OK, context->SetMaterial(face.Get()));
    EXPECT_EQ(2u, material->ReferenceCount());
}

TEST_F(Misuse, EveryOrderOfReleases)
{
    enum Which { Package, Context, Routine, Material };
    std::vector<int> order = {Package, Context, Routine, Material};
    do {
        package->keepsMaterial = true;
        ComPtr<CPropertyPackage11> root = MakeProxy(package.Get(), false);
        ComPtr<IUnknown> held[4];
        root.As(&held[Package]);
        held[Context] = As<ICapeThermoMaterialContext>(root);
        held[Routine] = As<ICapeThermoPropertyRoutine>(root);
        EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(root)->SetMaterial(face.Get()));
        held[Material] = package->kept;
        root.Reset();
        package->kept.Reset();
        for (const int which : order) held[which].Reset();
        EXPECT_EQ(2u, package->ReferenceCount());
        EXPECT_EQ(2u, material->ReferenceCount());
    } while (std::next_permutation(order.begin(), order.end()));
}

// Calls that come in while the package shows a modal window are served, inside the call that shows it.
TEST_F(Misuse, APackageThatShowsAModalWindowInMidCall)
{
    struct Window {
        ICapeIdentification* identification;
        HRESULT result;
        BSTR name;
        static INT_PTR CALLBACK Answer(HWND window, UINT message, WPARAM, LPARAM parameter)
        {
            if (message == WM_INITDIALOG) {
                SetWindowLongPtrW(window, DWLP_USER, parameter);
                PostMessageW(window, WM_APP, 0, 0);
                return TRUE;
            }
            if (message != WM_APP) return FALSE;
            auto& self = *reinterpret_cast<Window*>(GetWindowLongPtrW(window, DWLP_USER));
            self.result = self.identification->get_ComponentName(&self.name);
            EndDialog(window, 1);
            return TRUE;
        }
    };
    const auto identification = As<ICapeIdentification>(proxy);
    const auto utilities = As<ICapeUtilities>(proxy);
    Window window = {identification.Get(), E_FAIL, nullptr};
    INT_PTR shown = 0;
    package->duringCall = [&] {
        struct alignas(4) {
            DLGTEMPLATE dialog;
            WORD menu, windowClass, title;
        } const empty = {{WS_POPUP | WS_CAPTION, 0, 0, 0, 0, 100, 50}, 0, 0, 0};
        shown = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &empty.dialog, nullptr, Window::Answer,
                                        reinterpret_cast<LPARAM>(&window));
    };
    const std::size_t before = Written().size();
    EXPECT_EQ(S_OK, utilities->Edit());
    if (shown <= 0) GTEST_SKIP() << "no windows here";
    EXPECT_EQ(S_OK, window.result);
    EXPECT_STREQ(L"Fake", window.name);
    SysFreeString(window.name);
    EXPECT_EQ(Func("ICapeUtilities::Edit",
                   " <func name=\"ICapeIdentification::get_ComponentName\" direc=\"in\" object=\"Pack\">\n"
                   "  <arg name=\"name\" direc=\"out\" type=\"string\">\n   <argval value=\"&quot;Fake&quot;\"/>\n"
                   "  </arg>\n </func>\n"),
              Written().substr(before));
}

TEST_F(Misuse, TheLastReferencesGoThreeLevelsDeep)
{
    const auto utilities = As<ICapeUtilities>(proxy);
    ICapeUtilities* raw = utilities.Get();
    int depth = 0;
    package->duringCall = [&] {
        if (++depth < 3) {
            EXPECT_EQ(S_OK, raw->Initialize());
        } else {
            proxy.Reset();
            const_cast<ComPtr<ICapeUtilities>&>(utilities).Reset();
        }
    };
    EXPECT_EQ(S_OK, raw->Initialize());
    EXPECT_EQ(3, depth);
    package->duringCall = {};
    EXPECT_EQ(1u, package->ReferenceCount());
    EXPECT_EQ(0u, CountCallsInProgress());
    EXPECT_TRUE(WithoutCarriageReturns(ReadWhole(path)).ends_with("</zeltlogdocument>\n"));
}

}  // namespace
}  // namespace zelt::test
