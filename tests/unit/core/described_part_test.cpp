// A proxy offers all dual interfaces of the module's type libraries that its object has, except the withheld ones. Each
// interface that the proxy's class lacks is carried by an additional part, which has the logged methods of another proxy
// class or is driven by type information. The wrapped object is made from the same type information and records what arrives.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <regex>

#include "core/interface_name.h"
#include "dynamic_fake.h"
#include "expected_log.h"
#include "fault_kinds.h"
#include "library_rows.h"
#include "method_call.h"
#include "parameters/parameter.h"
#include "proxy_fixture.h"
#include "scratch_classes.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

const std::vector<TableClass>& Table()
{
    static const std::vector<TableClass> table = ReadMethodTable(SourceFile("tests/data/proxied_methods.txt"));
    return table;
}

// The name under which the table logs a method, whichever class lists it.
std::string LoggedName(const TableRow& wanted)
{
    for (const TableClass& one : Table()) {
        for (const TableRow& row : one.rows) {
            if (row.Key() == wanted.Key()) return row.logged;
        }
    }
    return "<no row>";
}

enum class Binding { Early, Late };

class DescribedParts : public ProxyFixture {
protected:
    // Calls `visit` for each interface that a proxy offers although its class lacks it.
    template <class Visit>
    void WalkAll(bool logged, Visit&& visit)
    {
        std::size_t interfaces = 0, withRows = 0, left = 0;
        wrapped = DynamicFake::Make(L"Wrapped");
        const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get(), logged);
        for (const InterfaceShape* shape : AllInterfaces()) {
            SCOPED_TRACE(shape->name);
            if (IsWithheld(*shape) || (proxy->FindInterface(shape->iid) && ++left)) continue;
            const std::string before = Written();
            ComPtr<IDispatch> part;
            ASSERT_EQ(S_OK, proxy->QueryInterface(shape->iid, reinterpret_cast<void**>(part.GetAddressOf())));
            EXPECT_EQ(before, Written()) << "a granted query writes nothing";
            ++interfaces;
            withRows += HasRows(*shape, Table());
            visit(*shape, part.Get());
            // The part has the proxy's identity, and a second query returns the same part.
            ComPtr<IUnknown> identity, again;
            ASSERT_EQ(S_OK, part.As(&identity));
            EXPECT_EQ(static_cast<IUnknown*>(static_cast<com::Object*>(proxy.Get())), identity.Get());
            ASSERT_EQ(S_OK, identity->QueryInterface(shape->iid, reinterpret_cast<void**>(again.GetAddressOf())));
            EXPECT_EQ(static_cast<IUnknown*>(part.Get()), again.Get());
        }
        std::printf("%zu interfaces: %zu of the class, %zu by rows, %zu by type information\n", AllInterfaces().size(),
                    left, withRows, interfaces - withRows);
        EXPECT_EQ(AllInterfaces().size(), left + interfaces + 2) << "two are withheld";
        EXPECT_LT(133u, AllInterfaces().size());
    }

    void CallAll(Binding binding, bool logged, HRESULT result)
    {
        int methods = 0;
        WalkAll(logged, [&](const InterfaceShape& shape, IDispatch* part) {
            for (const MethodShape& method : shape.methods) {
                const TableRow row = LibraryRow(shape, method);
                SCOPED_TRACE(row.logged);
                ++methods;
                CallOne(binding, logged, result, shape, method, row, part);
            }
        });
        std::printf("called %d methods\n", methods);
        EXPECT_LT(200, methods);
    }

    void CallOne(Binding binding, bool logged, HRESULT result, const InterfaceShape& shape, const MethodShape& method,
                 const TableRow& row, IDispatch* part)
    {
        const ComPtr<IDispatch> object = thing->Face(__uuidof(ICapeIdentification));
        const auto steps = row.Arguments();
        wrapped->handler = [&](const IncomingCall& call) {
            if (&call.method != &method) return E_NOTIMPL;
            for (std::size_t i = 0; i < steps.size(); ++i) {
                const ParameterShape& parameter = method.parameters[i];
                if (!parameter.isOut || !parameter.isReference) continue;
                StoreValue(*static_cast<void**>(call.arguments[i]), parameter.type,
                           SampleValue(*steps[i], i, Filling::Samples, object.Get()));
            }
            return result;
        };
        wrapped->calls.clear();
        MethodCall call(method, row, Filling::Samples, object.Get());
        const std::size_t before = Written().size();
        EXPECT_EQ(result, binding == Binding::Early ? call.CallEarly(part) : call.CallLate(part));
        const std::string news = Written().substr(before);
        const auto own = std::find_if(wrapped->calls.begin(), wrapped->calls.end(),
                                      [&](const RecordedCall& one) { return one.method == &method; });
        ASSERT_NE(wrapped->calls.end(), own);
        if (!logged) {
            EXPECT_EQ("", news);
        }
        if (HasRows(shape, Table())) {
            EXPECT_EQ(logged, news.starts_with("<func name=\"" + LoggedName(row) + "\"")) << news;
            return;
        }
        ExpectedCall expected(row.logged, true, "Pack");
        for (std::size_t i = 0; i < steps.size(); ++i) {
            if (method.parameters[i].isOut) continue;
            expected.Argument(*steps[i], SampleValue(*steps[i], i, Filling::Samples, object.Get()));
        }
        for (std::size_t i = 0; i < steps.size(); ++i) {
            const ParameterShape& parameter = method.parameters[i];
            if (binding == Binding::Early) {
                EXPECT_EQ(call.Bytes(i), own->arguments[i]) << steps[i]->name;
            }
            if (!parameter.isOut || FAILED(result)) continue;
            const _variant_t sample = SampleValue(*steps[i], i, Filling::Samples, object.Get());
            if (parameter.isReference) {
                EXPECT_TRUE(IsSameValue(sample, call.Value(i))) << steps[i]->name;
            }
            expected.Argument(*steps[i], parameter.isReference ? sample : call.Value(i));
        }
        if (FAILED(result)) expected.Error("ECapeComputationHR: computation error");
        if (logged) {
            EXPECT_EQ(ForBinding(binding, expected.Text()), ForBinding(binding, news));
        }
    }

    // Removes the addresses of interface pointers from the text of a late-bound call. They may differ, because Invoke
    // queries a passed object for the interface of the parameter.
    static std::string ForBinding(Binding binding, const std::string& text)
    {
        static const std::regex address("interface pointer 0x[0-9A-F]+");
        return binding == Binding::Early ? text : std::regex_replace(text, address, "interface pointer");
    }

    ComPtr<DynamicFake> wrapped, thing = DynamicFake::Make(L"Thing");
};

TEST_F(DescribedParts, ForwardAndLogEveryMemberOfTheStandard) { CallAll(Binding::Early, true, S_OK); }

TEST_F(DescribedParts, AnswerLateBoundCallsAlike) { CallAll(Binding::Late, true, S_OK); }

TEST_F(DescribedParts, OnlyForwardWithoutALog)
{
    CallAll(Binding::Early, false, S_OK);
    CallAll(Binding::Late, false, S_OK);
}

TEST_F(DescribedParts, LogNoOutputOfAFailure)
{
    CallAll(Binding::Early, true, static_cast<HRESULT>(ECapeComputationHR));
}

TEST_F(DescribedParts, AreNotMadeForWhatTheObjectLacks)
{
    wrapped = DynamicFake::Make(L"Wrapped");
    wrapped->Refuse(__uuidof(ICapeUnitTypeInfo));
    wrapped->Refuse(__uuidof(ICapeParameterSpec));
    const ScratchClasses classes;
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    for (const IID& iid : {__uuidof(ICapeUnitTypeInfo), __uuidof(ICapeParameterSpec), __uuidof(ECapeOutsideSolverScope),
                           __uuidof(ECapeHessianInfoNotAvailable), IID_IMarshal, IID_IStdMarshalInfo}) {
        ComPtr<IUnknown> found;
        EXPECT_EQ(E_NOINTERFACE, proxy->QueryInterface(iid, reinterpret_cast<void**>(found.GetAddressOf())));
    }
    const std::string log = Written();
    EXPECT_EQ(6, std::count(log.begin(), log.end(), '\n'));
    EXPECT_NE(std::string::npos,
              log.find("Pack: QueryInterface for unsupported interface " + InterfaceName(__uuidof(ICapeUnitTypeInfo))));
}

// A fault or an exception in a member ends only that call; the next one works.
TEST_F(DescribedParts, CatchWhatEscapes)
{
    wrapped = DynamicFake::Make(L"Wrapped");
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto typeInfo = As<ICapeUnitTypeInfo>(proxy);
    for (const FaultKind* kind : OneFaultOfEachSort()) {
        SCOPED_TRACE(kind->name);
        wrapped->handler = [&](const IncomingCall&) {
            wrapped->lastAct = kind->act;
            return S_OK;
        };
        eCapeUnitType type = {};
        const std::size_t before = Written().size();
        EXPECT_EQ(E_UNEXPECTED, typeInfo->get_GetUnitType(&type));
        const std::string news = Written().substr(before);
        EXPECT_TRUE(
            news.starts_with("<func name=\"ICapeUnitTypeInfo::get_GetUnitType\" direc=\"in\" object=\"Pack\">\n"
                             " <error value=\"" +
                             Escaped(kind->logged) + "\"/>\n"))
            << news;
        EXPECT_TRUE(news.ends_with("</func>\n")) << news;
    }
    wrapped->handler = [](const IncomingCall&) { return S_OK; };
    eCapeUnitType type = {};
    EXPECT_EQ(S_OK, typeInfo->get_GetUnitType(&type));
}

// With handBackOriginals, an object that goes back to the side that it came from arrives there without its proxy.
TEST_F(DescribedParts, HandBackOriginals)
{
    for (const bool handsBack : {false, true}) {
        wrapped = DynamicFake::Make(L"Wrapped");
        const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
        if (handsBack) proxy->HandBackOriginals();
        // An object of the package, for which the simulator has a proxy.
        const ComPtr<CParameter> returned(new CParameter);
        returned->AttachThrough(thing.Get(), Crossing::Outbound, *proxy.Get());
        const auto requirement = As<ICapePSPResourceRequirement>(proxy);
        const auto argument = As<ICapePSPResource>(returned);
        ComPtr<IUnknown> arrived;
        wrapped->handler = [&](const IncomingCall& call) {
            (*static_cast<IUnknown**>(call.arguments[0]))->QueryInterface(IID_PPV_ARGS(&arrived));
            return S_OK;
        };
        EXPECT_EQ(S_OK, requirement->SetResource(argument.Get()));
        EXPECT_EQ(handsBack, arrived.Get() == static_cast<IUnknown*>(thing.Get()));
    }
}

TEST_F(DescribedParts, WarnOfANullOutput)
{
    wrapped = DynamicFake::Make(L"Wrapped");
    const ComPtr<CPropertyPackage11> proxy = MakeProxy(wrapped.Get());
    const auto typeInfo = As<ICapeUnitTypeInfo>(proxy);
    const std::size_t before = Written().size();
    wrapped->handler = [](const IncomingCall&) { return S_OK; };
    EXPECT_EQ(S_OK, typeInfo->get_GetUnitType(nullptr));
    EXPECT_NE(std::string::npos, Written().find("Null pointer passed for output argument", before));
}

}  // namespace
}  // namespace zelt::test
