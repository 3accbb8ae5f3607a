// The order of events at a root's final release: all proxies of its tree release their interfaces, and only then does the
// log report which proxies are still held.
#include "proxy_fixture.h"

namespace zelt::test {
namespace {

// A material that runs `duringRelease` once, at its next release.
class LettingMaterial final : public FakeObject {
public:
    std::function<void()> duringRelease;

    STDMETHOD_(ULONG, Release)() override
    {
        if (const auto once = std::exchange(duringRelease, nullptr)) once();
        return FakeObject::Release();
    }

protected:
    IDispatch* ScriptInterface() override { return &phases; }

private:
    struct Phases final : com::DualPart<ICapeThermoPhases> {
        using DualPart::DualPart;
        STDMETHOD(GetNumPhases)(long* num) override
        {
            *num = 1;
            return S_OK;
        }
        STDMETHOD(GetPhaseInfo)(BSTR, BSTR, VARIANT*) override { return E_NOTIMPL; }
        STDMETHOD(GetPhaseList)(VARIANT*, VARIANT*, VARIANT*) override { return E_NOTIMPL; }
    } phases{*this};
};

class FinalReport : public ProxyFixture {
protected:
    // Passes a material to the package and uses it, so that its proxy holds an interface. Returns the proxy.
    ComPtr<IDispatch> Give(const ComPtr<LettingMaterial>& material, const wchar_t* name)
    {
        material->name = name;
        ComPtr<IDispatch> raw;
        material.As(&raw);
        package->keepsMaterial = true;
        EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(raw.Get()));
        ComPtr<IDispatch> given = std::move(package->kept);
        long phases = 0;
        EXPECT_EQ(S_OK, As<ICapeThermoPhases>(given)->GetNumPhases(&phases));
        EXPECT_EQ(1, phases);
        return given;
    }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
    ComPtr<LettingMaterial> first = MakeFake<LettingMaterial>();
    ComPtr<LettingMaterial> second = MakeFake<LettingMaterial>();
};

std::string Unreleased(const char* name, int count)
{
    return std::string("<warning value=\"Object &quot;") + name +
           "&quot; (type: Material Object) is not released at final release of &quot;Pack&quot; (reference count " +
           std::to_string(count) + ")\"/>\n";
}

TEST_F(FinalReport, AReferenceThatALaterProxyTakesAlongIsNotReported)
{
    ComPtr<IDispatch> one = Give(first, L"One");
    const ComPtr<IDispatch> two = Give(second, L"Two");
    ComPtr<IDispatch> extra = one;
    second->duringRelease = [&] { extra.Reset(); };
    const std::size_t before = Written().size();
    proxy.Reset();
    EXPECT_EQ(nullptr, extra.Get());
    EXPECT_EQ(Unreleased("One", 1) + Unreleased("Two", 1) + "</zeltlogdocument>\n", Written().substr(before));
}

TEST_F(FinalReport, AProxyThatALaterOneTakesAlongIsNotReportedAtAll)
{
    ComPtr<IDispatch> one = Give(first, L"One");
    const ComPtr<IDispatch> two = Give(second, L"Two");
    second->duringRelease = [&] { one.Reset(); };
    const std::size_t before = Written().size();
    proxy.Reset();
    EXPECT_EQ(Unreleased("Two", 1) + "</zeltlogdocument>\n", Written().substr(before));
    EXPECT_EQ(1u, first->ReferenceCount());
}

}  // namespace
}  // namespace zelt::test
