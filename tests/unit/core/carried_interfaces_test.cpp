// Interfaces that objects in the field offer in addition to those of their kind: their proxies offer them, too.
#include "dynamic_fake.h"
#include "interface_shape.h"
#include "proxy_classes.h"
#include "proxy_fixture.h"
#include "parameters/parameter.h"
#include "thermo/property_package_11.h"
#include "thermo/simulation_context.h"

namespace zelt::test {
namespace {

struct Scene {
    const char* name;
    const char* proxyClass;
    std::vector<const char*> interfaces;
};

void PrintTo(const Scene& scene, std::ostream* out) { *out << scene.name; }

// clang-format off
const Scene kScenes[] = {
    // Some simulators ask the parameter itself for the typed interface; without it, they make no connectors for the unit.
    {"a parameter that is its own specification", "CParameter",
     {"ICapeParameterSpec", "ICapeRealParameterSpec", "ICapeIntegerParameterSpec", "ICapeOptionParameterSpec",
      "ICapeBooleanParameterSpec", "ICapeArrayParameterSpec"}},
    {"a package of the older generation that calculates by itself", "CPropertyPackage10",
     {"ICapeThermoCalculationRoutine", "ICapeThermoEquilibriumServer", "ICapeThermoReliability",
      "ICapeThermoPetroFractions"}},
    // Some components ignore a context without this interface, and their messages never arrive.
    {"a context that says what it is", "CSimulationContext", {"ICapeSimulationContext"}},
    {"a stream that is a material of both generations and a server of equilibria", "CMaterialObject",
     {"ICapeThermoMaterial", "ICapeThermoMaterialObject", "ICapeThermoEquilibriumServer", "ICapeThermoPetroFractions",
      "ICapeUtilities"}},
    {"a unit operation that names its type", "CUnitOperation", {"ICapeUnitTypeInfo"}},
    {"a package of both generations", "CPropertyPackage11", {"ICapeThermoPropertyPackage", "ICapeThermoReliability"}},
    {"a port whose variables are named", "CUnitPort", {"ICapeUnitPortVariables"}},
};
// clang-format on

class CarriedInterfaces : public ProxyFixture {};

class Scenes : public ProxyFixture, public testing::WithParamInterface<Scene> {
protected:
    // A proxy of the scene's class for `object`.
    ComPtr<CapeOpenBase> MakeFor(DynamicFake& object, bool logged)
    {
        const ProxyClass& proxyClass = FindProxyClass(GetParam().proxyClass);
        const bool isRoot = proxyClass.origin == Origin::Root;
        if (!isRoot) owners.push_back(MakeProxy(DynamicFake::Make(L"Owner").Get(), logged));
        ComPtr<CapeOpenBase> proxy = proxyClass.make(ThermoVersion::Unset);
        Attach(proxyClass, *proxy.Get(), &object, logged ? document : nullptr, isRoot ? nullptr : owners.back().Get());
        return proxy;
    }

    std::vector<ComPtr<CPropertyPackage11>> owners;
};

INSTANTIATE_TEST_SUITE_P(InTheField, Scenes, testing::ValuesIn(kScenes),
                         [](const auto& scene) { return std::string(scene.param.proxyClass); });

TEST_P(Scenes, FindTheirInterfaces)
{
    const auto object = DynamicFake::Make(L"Thing");
    const ComPtr<CapeOpenBase> proxy = MakeFor(*object.Get(), true);
    const std::size_t before = Written().size();
    for (const char* name : GetParam().interfaces) {
        SCOPED_TRACE(name);
        const InterfaceShape* shape = ShapeNamed(name);
        ASSERT_NE(nullptr, shape);
        ComPtr<IUnknown> found;
        EXPECT_EQ(S_OK, proxy->QueryInterface(shape->iid, reinterpret_cast<void**>(found.GetAddressOf())));
        EXPECT_EQ("", Written().substr(before)) << "a granted query writes nothing";
        // A proxy offers the interface only if its object does.
        const auto without = DynamicFake::Make(L"Thing");
        without->Refuse(shape->iid);
        const ComPtr<CapeOpenBase> poorer = MakeFor(*without.Get(), false);
        EXPECT_EQ(E_NOINTERFACE, poorer->QueryInterface(shape->iid, reinterpret_cast<void**>(found.GetAddressOf())));
    }
    // A refused query does write something, so the log was open.
    ComPtr<IUnknown> none;
    EXPECT_EQ(E_NOINTERFACE, proxy->QueryInterface(IID_IMarshal, reinterpret_cast<void**>(none.GetAddressOf())));
    EXPECT_NE("", Written().substr(before));
}

// A parameter that is its own specification is logged like a separate specification, with the same names of methods and
// arguments.
TEST_F(CarriedInterfaces, OfAParameterAreLoggedLikeThoseOfItsSpecification)
{
    const auto object = DynamicFake::Make(L"Pressure");
    const ComPtr<CPropertyPackage11> owner = MakeProxy(DynamicFake::Make(L"Owner").Get());
    const ComPtr<CParameter> parameter(new CParameter);
    parameter->AttachThrough(object.Get(), Crossing::Outbound, *owner.Get());
    const auto specification = As<ICapeRealParameterSpec>(parameter);
    object->handler = [](const IncomingCall& call) {
        **static_cast<double**>(call.arguments[0]) = 2.5;
        return S_OK;
    };
    const std::size_t before = Written().size();
    double bound = 0;
    EXPECT_EQ(S_OK, specification->get_LowerBound(&bound));
    EXPECT_EQ(2.5, bound);
    EXPECT_EQ(Func("ICapeRealParameterSpec::get_LowerBound",
                   " <arg name=\"lBound\" direc=\"out\" type=\"double\">\n  <argval value=\"2.5\"/>\n </arg>\n", "in",
                   "Pressure"),
              Written().substr(before));
}

// A component may ask a context for ICapeSimulationContext first and query that interface for ICapeDiagnostic. Its message
// then reaches the simulator and the log.
TEST_F(CarriedInterfaces, OfAContextLeadToItsMessages)
{
    const auto object = DynamicFake::Make(L"Simulator");
    const ComPtr<CPropertyPackage11> owner = MakeProxy(DynamicFake::Make(L"Owner").Get());
    const ComPtr<CSimulationContext> context(new CSimulationContext);
    context->AttachThrough(object.Get(), Crossing::Inbound, *owner.Get());
    const auto marked = As<ICapeSimulationContext>(context);
    const auto diagnostic = As<ICapeDiagnostic>(marked);
    object->handler = [](const IncomingCall&) { return S_OK; };
    object->calls.clear();
    const _bstr_t message(L"converged");
    EXPECT_EQ(S_OK, diagnostic->LogMessage(message));
    ASSERT_EQ(1u, object->calls.size());
    EXPECT_EQ("LogMessage", object->calls[0].method->name);
    EXPECT_NE(std::string::npos, Written().find("<func name=\"ICapeDiagnostic::LogMessage\" direc=\"out\""));
}

}  // namespace
}  // namespace zelt::test
