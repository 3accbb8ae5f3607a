// An object that goes back to the side that it came from: by default, it arrives as a proxy; with the option
// handBackOriginals, as the original object.
#include "fake_unit.h"
#include "proxy_classes.h"
#include "thermo/property_package_11.h"

namespace zelt::test {
namespace {

class HandBackOriginals : public ProxyFixture, public testing::WithParamInterface<bool> {
protected:
    HandBackOriginals() { MakeRoot(true); }

    void MakeRoot(bool isLogged)
    {
        root = MakeProxy(package.Get(), isLogged);
        if (GetParam()) root->HandBackOriginals();
    }
    // A proxy for an object that crosses `through`, in the tree of `through`.
    static ComPtr<CapeOpenBase> Proxy(const char* name, IUnknown* object, Crossing crossing, CapeOpenBase& through)
    {
        ComPtr<CapeOpenBase> made = FindProxyClass(name).make(ThermoVersion::Unset);
        made->AttachThrough(object, crossing, through);
        return made;
    }
    ComPtr<CapeOpenBase> FromSimulator(const char* name, IUnknown* object)
    {
        return Proxy(name, object, Crossing::Inbound, *root.Get());
    }
    ComPtr<CapeOpenBase> FromPackage(const char* name, IUnknown* object)
    {
        return Proxy(name, object, Crossing::Outbound, *root.Get());
    }
    // Expects a pointer to the object behind the proxy if `isOriginal`, otherwise to the proxy.
    template <class P, class T>
    static void ExpectGiven(bool isOriginal, const P& proxy, const T& original, IUnknown* given)
    {
        ASSERT_NE(nullptr, given);
        ComPtr<IUnknown> identity;
        given->QueryInterface(IID_PPV_ARGS(&identity));
        EXPECT_EQ(isOriginal ? static_cast<IUnknown*>(original.Get()) : static_cast<IUnknown*>(proxy.Get()),
                  identity.Get());
    }
    std::string News()
    {
        const std::string all = Written();
        std::string news = all.substr(seen);
        seen = all.size();
        return news;
    }
    static bool IsOn() { return GetParam(); }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<FakeMaterial> feed = MakeFake<FakeMaterial>(), product = MakeFake<FakeMaterial>();
    ComPtr<CPropertyPackage11> root;

private:
    std::size_t seen = 0;
};

INSTANTIATE_TEST_SUITE_P(Option, HandBackOriginals, testing::Bool(),
                         [](const auto& tested) { return tested.param ? "On" : "Off"; });

// The scene: the package has the simulator's materials as proxies, and copies one into another.
TEST_P(HandBackOriginals, AMaterialThatIsCopied)
{
    package->keepsMaterial = true;
    const auto context = As<ICapeThermoMaterialContext>(root);
    EXPECT_EQ(S_OK, context->SetMaterial(As<IDispatch>(feed).Get()));
    const ComPtr<IDispatch> feedProxy = package->kept;
    EXPECT_EQ(S_OK, context->SetMaterial(As<IDispatch>(product).Get()));
    const ComPtr<IDispatch> productProxy = package->kept;
    News();

    IDispatch* source = feedProxy.Get();
    ULONG during = 0;
    product->duringCopy = [&] { during = feed->ReferenceCount(); };
    const ULONG before = feed->ReferenceCount();
    EXPECT_EQ(S_OK, As<ICapeThermoMaterial>(productProxy)->CopyFromMaterial(&source));
    EXPECT_EQ(feedProxy.Get(), source) << "the caller's slot was changed";
    EXPECT_NE(&source, product->source);
    if (IsOn()) {
        EXPECT_EQ(As<IDispatch>(feed).Get(), product->sourceValue);
    } else {
        EXPECT_EQ(feedProxy.Get(), product->sourceValue);
    }
    // The original is held during the call and no longer.
    EXPECT_EQ(before + (IsOn() ? 2 : 1), during);
    EXPECT_EQ(before, feed->ReferenceCount());
    // The log shows what the package passed.
    EXPECT_EQ(Func("ICapeThermoMaterial::CopyFromMaterial", PointerArg("source", "in", feedProxy.Get()), "out", "Fake"),
              News());
    package->kept.Reset();
}

TEST_P(HandBackOriginals, AMaterialGivenToAReactionObject)
{
    const auto reactions = MakeFake<FakePackage>();
    const ComPtr<CapeOpenBase> reactionProxy = FromSimulator("CReactionObject", reactions.Get());
    const ComPtr<CapeOpenBase> material = FromSimulator("CMaterialObject", feed.Get());
    const auto given = As<IDispatch>(material);
    News();
    reactions->duringCall = [&] { ExpectGiven(IsOn(), material, feed, reactions->material); };
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(reactionProxy)->SetMaterial(given.Get()));
    EXPECT_EQ(std::vector<std::string>{"SetMaterial"}, reactions->calls);
    EXPECT_EQ(Func("ICapeThermoMaterialContext::SetMaterial", PointerArg("material", "in", given.Get()), "out", "Fake"),
              News());
}

// An object that the package has returned comes back to the package: with the option on, as the package's own object;
// otherwise as its proxy, which a second proxy wraps if there is a log.
TEST_P(HandBackOriginals, AnObjectOfThePackageLoggedOrNot)
{
    for (const bool isLogged : {true, false}) {
        SCOPED_TRACE(isLogged ? "logged" : "not logged");
        if (!isLogged) {
            root.Reset();
            MakeRoot(false);
        }
        const ComPtr<CapeOpenBase> material = FromPackage("CMaterialObject", feed.Get());
        const auto given = As<IDispatch>(material);
        News();
        package->duringCall = [&] {
            if (IsOn() || !isLogged) return ExpectGiven(IsOn(), material, feed, package->material);
            // Wrapped a second time.
            ComPtr<IOriginalObject> outer;
            ASSERT_EQ(S_OK, package->material->QueryInterface(IID_PPV_ARGS(&outer)));
            ComPtr<IUnknown> inner;
            EXPECT_EQ(S_OK, outer->GetOriginalObject(&inner));
            ExpectGiven(false, material, feed, inner.Get());
        };
        EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(root)->SetMaterial(given.Get()));
        // The second proxy asks the first for its name.
        const std::string asking =
            " <func name=\"ICapeIdentification::get_ComponentName\" direc=\"in\" object=\"Fake\">\n"
            "  <arg name=\"name\" direc=\"out\" type=\"string\">\n"
            "   <argval value=\"&quot;Fake&quot;\"/>\n  </arg>\n </func>\n";
        EXPECT_EQ(isLogged ? Func("ICapeThermoMaterialContext::SetMaterial",
                                  PointerArg("material", "in", given.Get()) + (IsOn() ? "" : asking))
                           : "",
                  News());
        package->duringCall = {};
        EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(root)->SetMaterial(nullptr));
        EXPECT_EQ(nullptr, package->material);
        package->calls.clear();
    }
}

// An argument that is a proxy is replaced by its original only if it is in the same tree as the called proxy and its
// original comes from the side that the call goes to.
TEST_P(HandBackOriginals, ObjectsOfTheOtherSideAndOfOtherTreesStayProxies)
{
    const auto reactions = MakeFake<FakePackage>();
    const ComPtr<CapeOpenBase> reactionProxy = FromSimulator("CReactionObject", reactions.Get());
    const auto target = As<ICapeThermoMaterialContext>(reactionProxy);
    const auto give = [&](const auto& proxy) {
        const auto given = As<IDispatch>(proxy);
        EXPECT_EQ(S_OK, target->SetMaterial(given.Get()));
        EXPECT_EQ(given.Get(), reactions->material);
    };
    // Objects of the package, given to an object of the simulator.
    give(FromPackage("CMaterialObject", feed.Get()));
    give(root);
    // A proxy of another tree.
    const auto otherPackage = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> otherRoot = MakeProxy(otherPackage.Get(), false);
    otherRoot->HandBackOriginals();
    give(Proxy("CMaterialObject", feed.Get(), Crossing::Inbound, *otherRoot.Get()));
    // An object that is no proxy.
    give(feed);
    // The package still gets the simulator's own material as a proxy.
    const ComPtr<CapeOpenBase> material = FromSimulator("CMaterialObject", feed.Get());
    package->duringCall = [&] {
        ComPtr<IOriginalObject> outer;
        EXPECT_EQ(S_OK, package->material->QueryInterface(IID_PPV_ARGS(&outer)));
    };
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(root)->SetMaterial(As<IDispatch>(material).Get()));
    package->duringCall = {};

    // Once the root is gone, nobody knows from which side the material came.
    const auto survivor = As<IDispatch>(material);
    root.Reset();
    EXPECT_EQ(S_OK, target->SetMaterial(survivor.Get()));
    EXPECT_EQ(survivor.Get(), reactions->material);
}

}  // namespace
}  // namespace zelt::test
