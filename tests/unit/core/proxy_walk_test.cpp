// Calls the methods of all proxy classes through their vtables, and compares what happens with the table of proxied
// methods. Some methods have tests of their own instead. The wrapped object is made from type information and records
// what arrives.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <set>

#include "log/log_text.h"
#include "dynamic_fake.h"
#include "expected_log.h"
#include "log_fixture.h"
#include "method_call.h"
#include "proxy_classes.h"
#include "thermo/wrapping_table.h"
#include "thermo/material_object.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

constexpr auto kFailure = static_cast<HRESULT>(ECapeComputationHR);
constexpr char kFailureText[] = "ECapeComputationHR: computation error";

// A method of a class, with its row.
struct Target {
    const ProxyClass& proxyClass;
    const TableClass& tableClass;
    const TableRow& row;
    const InterfaceShape& shape;
    const MethodShape& method;
};

struct Scenario {
    Filling filling = Filling::Samples;
    HRESULT result = S_OK;
    bool hasWrapped = true;
    bool refuses = false;
    bool isLogged = true;
    bool isReadOnly = false;
    bool hasNullSlots = false;
    ThermoVersion version = ThermoVersion::Unset;
};

// One call in one scenario: its own tree, the call, and all checks.
class WalkedCall {
public:
    WalkedCall(const Target& target, const Scenario& scenario)
        : target(target), scenario(scenario), path(TemporaryPath())
    {
        options.promptOpenLog = false;
        wrapped->handler = [this](const IncomingCall& call) { return Answer(call); };
        MakeProxy();
    }
    ~WalkedCall()
    {
        proxy.Reset();
        root.Reset();
        if (document) document->LetGo();
        DeleteFileW(path.c_str());
        EXPECT_EQ(1u, thing->References()) << "references on the object that crossed";
        EXPECT_EQ(1u, wrapped->References()) << "references on the wrapped object";
    }
    WalkedCall(const WalkedCall&) = delete;
    WalkedCall& operator=(const WalkedCall&) = delete;

    void Run()
    {
        const com::InterfaceEntry* entry = proxy->FindInterface(target.shape.iid);
        ASSERT_NE(nullptr, entry);
        const ComPtr<IDispatch> object = thing->Face(__uuidof(ICapeIdentification));
        call = std::make_unique<MethodCall>(target.method, target.row, scenario.filling, object.Get());
        if (scenario.hasNullSlots) call->PassNullSlots();
        const std::size_t before = Written().size();
        wrapped->calls.clear();
        EXPECT_EQ(ExpectedResult(), call->CallEarly(entry->Pointer()));
        const std::string news = Written().substr(before);

        CheckForwarding();
        std::vector<_variant_t> returned;
        for (std::size_t i = 0; i < call->Count(); ++i) returned.push_back(call->Value(i));
        CheckOutputs(object.Get());
        EXPECT_EQ(scenario.isLogged ? ExpectedText(object.Get(), returned) : "", news);
        if (target.row.Key() == "ICapeIdentification::put_ComponentName") CheckName();
        call.reset();
    }

private:
    bool IsForwarded() const { return scenario.hasWrapped && !scenario.refuses; }
    bool AnswersAlone() const { return !scenario.hasWrapped && target.row.answersUninitialized; }
    bool Succeeds() const { return AnswersAlone() || (IsForwarded() && SUCCEEDED(scenario.result)); }
    HRESULT ExpectedResult() const
    {
        if (AnswersAlone()) return S_OK;
        if (!scenario.hasWrapped) return E_UNEXPECTED;
        return scenario.refuses ? E_NOINTERFACE : scenario.result;
    }
    bool IsReplaced(const TableStep& argument, const ParameterShape& shape) const
    {
        return !argument.proxyClass.empty() && (shape.isOut || scenario.isLogged);
    }

    void MakeProxy()
    {
        if (scenario.isLogged) {
            LogFile file;
            ASSERT_EQ(0, file.Open(path));
            document = new LogDocument(std::move(file), "Root", "kind of object", path, options);
            document->Hold();
        }
        proxy = target.proxyClass.make(scenario.version);
        IUnknown* object = scenario.hasWrapped ? wrapped.Get() : nullptr;
        if (target.proxyClass.origin != Origin::Root) {
            // The owner serves version 1.1, so a template's materials start with that version.
            root = FindProxyClass("CPropertyPackage11").make(ThermoVersion::Unset);
            root->AttachAsRoot(nullptr, document, "Owner");
        }
        Attach(target.proxyClass, *proxy.Get(), object, document, root.Get());
        const bool isNamed = scenario.hasWrapped && scenario.isLogged;
        objectName = !root ? "Pack" : isNamed ? "the name 0" : "<unknown>";
        proxy->SetReadOnly(scenario.isReadOnly);
        if (scenario.refuses) wrapped->Refuse(target.shape.iid);
    }

    // What the wrapped object does during the call.
    HRESULT Answer(const IncomingCall& incoming)
    {
        // While the proxy is made, it asks for the name; that call is not part of the walk.
        const bool isTarget = call && &incoming.method == &target.method;
        if (isTarget) {
            for (std::size_t i = 0; i < incoming.arguments.size(); ++i) TakeArgument(incoming, i);
        } else if (incoming.method.name == "get_ComponentName") {
            **static_cast<BSTR**>(incoming.arguments[0]) = SysAllocString(L"the name 0");
            return S_OK;
        }
        return isTarget ? scenario.result : kFailure;
    }
    void TakeArgument(const IncomingCall& incoming, std::size_t i)
    {
        const ParameterShape& shape = target.method.parameters[i];
        const TableStep& step = *target.row.Arguments()[i];
        void* place = incoming.arguments[i];
        if (shape.isOut) {
            void* destination = *static_cast<void**>(place);
            const ComPtr<IDispatch> object = thing->Face(__uuidof(ICapeIdentification));
            if (FAILED(scenario.result) && shape.type == VT_DISPATCH) {
                // Returns an invalid pointer with the failure: the proxy must not use it. A pointer that the proxy does
                // not replace stays unset.
                if (!step.proxyClass.empty()) *static_cast<IDispatch**>(destination) = reinterpret_cast<IDispatch*>(1);
                return;
            }
            StoreValue(destination, shape.type, SampleValue(step, i, scenario.filling, object.Get()));
            return;
        }
        if (shape.type != VT_DISPATCH) return;
        auto** slot = shape.isReference ? *static_cast<IDispatch***>(place) : static_cast<IDispatch**>(place);
        if (!slot) return;
        if (*slot && IsReplaced(step, shape)) CheckProxy(*slot, step, shape);
        if (shape.isReference) *slot = nullptr;  // a callee that clears its argument
    }

    // Checks the proxy of an object that crossed.
    void CheckProxy(IDispatch* pointer, const TableStep& step, const ParameterShape& shape)
    {
        ComPtr<IUnknown> identity, original;
        ComPtr<IOriginalObject> way;
        ASSERT_EQ(S_OK, pointer->QueryInterface(IID_PPV_ARGS(&way))) << step.name << " is no proxy";
        ASSERT_EQ(S_OK, way->GetOriginalObject(&original));
        ComPtr<IUnknown> originalIdentity;
        original.As(&originalIdentity);
        EXPECT_EQ(static_cast<IUnknown*>(thing.Get()), originalIdentity.Get()) << step.name;
        way.As(&identity);
        auto* made = static_cast<CapeOpenBase*>(static_cast<com::Object*>(identity.Get()));
        EXPECT_TRUE(FindProxyClass(step.proxyClass).isInstance(*made)) << step.name << " is no " << step.proxyClass;
        EXPECT_EQ(proxy->Document(), made->Document());
        // Calls to a returned object have the proxy's own direction; calls to a passed object have the opposite one.
        EXPECT_EQ(proxy->IsIn() != shape.isIn, made->IsIn());
        if (auto* material = dynamic_cast<CMaterialObject*>(made)) {
            EXPECT_EQ(step.startingVersion == "1.0" ? ThermoVersion::CapeOpen10 : ThermoVersion::CapeOpen11,
                      material->Version());
        }
    }

    void CheckForwarding()
    {
        std::size_t own = 0;
        for (const RecordedCall& recorded : wrapped->calls) {
            if (recorded.method == &target.method) {
                ++own;
                continue;
            }
            // The only other calls ask the object to describe a failure.
            const std::string name = recorded.shape->name + "::" + recorded.method->name;
            EXPECT_TRUE(FAILED(scenario.result) &&
                        (name == "ECapeUser::get_description" || name == "ECapeRoot::get_name"))
                << "unexpected call of " << name;
        }
        if (!IsForwarded()) {
            EXPECT_EQ(0u, own);
            return;
        }
        const bool isOwnDescription =
            FAILED(scenario.result) && scenario.isLogged &&
            (target.row.Key() == "ECapeUser::get_description" || target.row.Key() == "ECapeRoot::get_name");
        ASSERT_EQ(isOwnDescription ? 2u : 1u, own) << "times forwarded";
        const RecordedCall& forwarded = wrapped->calls[0];
        ASSERT_EQ(&target.method, forwarded.method);
        for (std::size_t i = 0; i < call->Count(); ++i) {
            const ParameterShape& shape = target.method.parameters[i];
            const TableStep& step = *target.row.Arguments()[i];
            const bool isNull = scenario.filling == Filling::Nulls;
            if (shape.isReference && !shape.isOut) {
                // The caller's own slot is never passed on.
                EXPECT_EQ(call->Bytes(i) == std::string(sizeof(void*), '\0'),
                          forwarded.arguments[i] == std::string(sizeof(void*), '\0'));
                if (!scenario.hasNullSlots) {
                    EXPECT_NE(call->Bytes(i), forwarded.arguments[i]);
                }
            } else if (!shape.isOut && IsReplaced(step, shape) && !isNull) {
                EXPECT_NE(call->Bytes(i), forwarded.arguments[i]) << step.name;
            } else {
                EXPECT_EQ(call->Bytes(i), forwarded.arguments[i]) << step.name;
            }
        }
    }

    void CheckOutputs(IDispatch* object)
    {
        for (std::size_t i = 0; i < call->Count(); ++i) {
            const ParameterShape& shape = target.method.parameters[i];
            const TableStep& step = *target.row.Arguments()[i];
            if (!shape.isOut) {
                if (shape.isReference) {
                    const bool isNull = scenario.filling == Filling::Nulls;
                    EXPECT_EQ(isNull ? nullptr : object, call->SlotContent(i)) << "the caller's slot was changed";
                }
                continue;
            }
            const _variant_t value = call->Value(i);
            if (AnswersAlone()) {
                EXPECT_STREQ(L"Uninitialized object", value.bstrVal);
            } else if (!IsForwarded()) {
                EXPECT_TRUE(value.vt == VT_EMPTY || value.llVal == 0) << step.name << " was written";
            } else if (FAILED(scenario.result)) {
                if (shape.type == VT_DISPATCH) {
                    EXPECT_EQ(nullptr, value.pdispVal) << step.name;
                }
            } else if (step.proxyClass.empty() || scenario.filling == Filling::Nulls) {
                EXPECT_TRUE(IsSameValue(SampleValue(step, i, scenario.filling, object), value)) << step.name;
            } else if (shape.type == VT_DISPATCH) {
                ASSERT_NE(nullptr, value.pdispVal);
                EXPECT_NE(object, value.pdispVal);
                CheckProxy(value.pdispVal, step, shape);
            } else {
                ASSERT_EQ(VT_ARRAY | VT_DISPATCH, value.vt);
                LONG lower = 0;
                SafeArrayGetLBound(value.parray, 1, &lower);
                EXPECT_EQ(3 + static_cast<LONG>(i), lower);
                for (LONG at = lower; at < lower + 2; ++at) {
                    ComPtr<IDispatch> element;
                    ASSERT_EQ(S_OK, SafeArrayGetElement(value.parray, &at, element.GetAddressOf()));
                    EXPECT_NE(object, element.Get());
                    CheckProxy(element.Get(), step, shape);
                }
            }
        }
    }

    std::string ExpectedText(IDispatch* object, const std::vector<_variant_t>& returned) const
    {
        ExpectedCall expected(target.row.logged, target.tableClass.isIn, objectName);
        if (AnswersAlone()) {
            expected.Error("Object is not created or initialized");
            expected.Argument(*target.row.Arguments()[0], returned[0]);
            return expected.Text();
        }
        const auto steps = target.row.Arguments();
        std::size_t index = 0;
        for (const TableStep& step : target.row.steps) {
            if (step.IsArgument()) {
                if (!target.method.parameters[index].isOut) {
                    expected.Argument(step, SampleValue(step, index, InputFilling(index), object));
                }
                ++index;
            } else if (IsReported(step)) {
                expected.Error(ErrorOf(step));
            }
        }
        if (!scenario.hasWrapped) {
            expected.Error("object not created");
        } else if (scenario.refuses) {
            expected.Warning("Interface not exposed by object");
        } else if (FAILED(scenario.result)) {
            expected.Error(kFailureText);
        } else {
            for (index = 0; index < steps.size(); ++index) {
                const TableStep& step = *steps[index];
                if (!target.method.parameters[index].isOut) continue;
                const _variant_t inner = SampleValue(step, index, scenario.filling, object);
                const bool isNamed = step.type == "interface" && !step.proxyClass.empty() && !step.isShownAsReturned &&
                                     returned[index].pdispVal;
                if (isNamed) {
                    expected.NamedObject(step, returned[index].pdispVal, scenario.isLogged ? "Thing" : "<unknown>");
                } else {
                    expected.Argument(step, inner);
                }
            }
        }
        return expected.Text();
    }
    Filling InputFilling(std::size_t index) const
    {
        const ParameterShape& shape = target.method.parameters[index];
        return scenario.hasNullSlots && shape.isReference ? Filling::Nulls : scenario.filling;
    }
    bool IsReported(const TableStep& step) const
    {
        switch (step.kind) {
            case TableStep::Write: return scenario.isReadOnly;
            case TableStep::ErrorIfEmpty:
            case TableStep::ErrorIfNull: return scenario.filling == Filling::Nulls;
            case TableStep::ErrorAlways: return true;
            case TableStep::Version:
                return dynamic_cast<CMaterialObject*>(proxy.Get()) && scenario.version != ThermoVersion::Unset &&
                       (step.text == "1.0") != (scenario.version == ThermoVersion::CapeOpen10);
            default: return false;
        }
    }
    static std::string ErrorOf(const TableStep& step)
    {
        if (step.kind == TableStep::Write) return "This object should be considered read-only";
        if (step.kind != TableStep::Version) return step.text;
        return "Invalid usage of version " + step.text + " material object interfaces (wrong thermo version)";
    }

    void CheckName()
    {
        // A unit operation accepts a name before it has its unit.
        const bool isRenamed = Succeeds() || (!scenario.hasWrapped && proxy->IsNamedEarly());
        const bool isNull = scenario.filling == Filling::Nulls;
        EXPECT_EQ(isRenamed ? isNull ? "" : "the name 0" : objectName, proxy->Name());
    }

    std::string Written() const { return scenario.isLogged ? WithoutCarriageReturns(ReadWhole(path)) : std::string(); }

    const Target& target;
    const Scenario scenario;
    std::wstring path;
    LogOptions options;
    LogDocument* document = nullptr;
    ComPtr<DynamicFake> wrapped = DynamicFake::Make(L"Wrapped");
    ComPtr<DynamicFake> thing = DynamicFake::Make(L"Thing");
    ComPtr<CapeOpenBase> root;
    ComPtr<CapeOpenBase> proxy;
    std::string objectName;
    std::unique_ptr<MethodCall> call;
};

// True for interfaces that the walk omits: IOriginalObject and ISupportErrorInfo, which log nothing, and those for
// persistence, which are not automation interfaces and have their own tests.
bool IsUnlogged(REFIID iid)
{
    for (const IID& unlogged :
         {__uuidof(IOriginalObject), IID_ISupportErrorInfo, IID_IPersist, IID_IPersistStream, IID_IPersistStreamInit}) {
        if (IsEqualIID(iid, unlogged)) return true;
    }
    return false;
}

class ProxyWalk : public testing::Test {
protected:
    ProxyWalk() { InstallWrappers(); }

    // Calls `visit` for each method of each class, and prints how many there are. Omits the interfaces that IsUnlogged names
    // and, unless `visitsAll` is set, methods with their own tests.
    template <class Visit>
    void WalkAll(Visit&& visit, bool visitsAll = false)
    {
        int interfaces = 0, methods = 0, classes = 0;
        std::set<const InterfaceShape*> different;
        for (const TableClass& tableClass : Table()) {
            const ProxyClass& proxyClass = FindProxyClass(tableClass.name);
            const ComPtr<CapeOpenBase> proxy = proxyClass.make(ThermoVersion::Unset);
            ++classes;
            for (const com::InterfaceEntry* entry = proxy->Interfaces(); entry; entry = entry->Next()) {
                if (IsUnlogged(entry->Iid())) continue;
                const InterfaceShape* shape = ShapeOf(entry->Iid());
                ASSERT_NE(nullptr, shape);
                ++interfaces;
                different.insert(shape);
                for (const MethodShape& method : shape->methods) {
                    ++methods;
                    const TableRow* row = FindRow(tableClass, shape->name, method.name);
                    if (!row) {
                        ADD_FAILURE() << tableClass.name << ": no line for " << shape->name << "::" << method.name;
                        continue;
                    }
                    if (row->isTestedElsewhere && !visitsAll) continue;
                    SCOPED_TRACE(tableClass.name + ", " + row->Key() + ", line " + std::to_string(row->line));
                    visit(Target{proxyClass, tableClass, *row, *shape, method});
                }
            }
        }
        std::printf("walked %d interfaces (%d different), %d methods of %d classes\n", interfaces,
                    static_cast<int>(different.size()), methods, classes);
        EXPECT_EQ(13, classes);
    }
    void WalkAllIn(const Scenario& scenario)
    {
        WalkAll([&](const Target& target) {
            // Initialize of a unit operation without a unit makes the unit, and may ask the user.
            const bool makesObject = target.proxyClass.isInstance(*UnitOperation().Get()) &&
                                     target.row.Key() == "ICapeUtilities::Initialize";
            if (scenario.hasWrapped || !makesObject) WalkedCall(target, scenario).Run();
        });
    }
    static const ComPtr<CapeOpenBase>& UnitOperation()
    {
        static const ComPtr<CapeOpenBase> unit = FindProxyClass("CUnitOperation").make(ThermoVersion::Unset);
        return unit;
    }

    static const std::vector<TableClass>& Table()
    {
        static const std::vector<TableClass> table = ReadMethodTable(SourceFile("tests/data/proxied_methods.txt"));
        return table;
    }
    static const TableRow* FindRow(const TableClass& tableClass, const std::string& shape, const std::string& method)
    {
        for (const TableRow& row : tableClass.rows) {
            if (row.interfaceName == shape && row.method == method) return &row;
        }
        return nullptr;
    }
};

TEST_F(ProxyWalk, EveryLineStandsForAMethodOfItsClass)
{
    std::vector<std::string> walked;
    WalkAll([&](const Target& target) { walked.push_back(target.tableClass.name + ' ' + target.row.Key()); }, true);
    for (const TableClass& tableClass : Table()) {
        const ComPtr<CapeOpenBase> proxy = FindProxyClass(tableClass.name).make(ThermoVersion::Unset);
        for (const TableRow& row : tableClass.rows) {
            bool isExposed = std::count(walked.begin(), walked.end(), tableClass.name + ' ' + row.Key()) == 1;
            for (auto* entry = proxy->Interfaces(); row.method.empty() && entry; entry = entry->Next()) {
                if (IsUnlogged(entry->Iid())) continue;
                const InterfaceShape* shape = ShapeOf(entry->Iid());
                isExposed |= shape && shape->name == row.interfaceName && shape->methods.empty();
            }
            EXPECT_TRUE(isExposed) << tableClass.name << " lacks " << row.Key() << ", line " << row.line;
        }
        // An interface without methods also needs a line.
        for (auto* entry = proxy->Interfaces(); entry; entry = entry->Next()) {
            if (IsUnlogged(entry->Iid())) continue;
            const InterfaceShape* shape = ShapeOf(entry->Iid());
            if (!shape->methods.empty()) continue;
            EXPECT_TRUE(FindRow(tableClass, shape->name, "")) << tableClass.name << ": no line for " << shape->name;
        }
    }
}

TEST_F(ProxyWalk, ForwardsAndLogs) { WalkAllIn({}); }

TEST_F(ProxyWalk, NullAndEmptyArguments) { WalkAllIn({.filling = Filling::Nulls}); }

TEST_F(ProxyWalk, NullPointersToPointers)
{
    int slots = 0;
    WalkAll([&](const Target& target) {
        for (const ParameterShape& parameter : target.method.parameters) {
            if (!parameter.isReference || parameter.isOut) continue;
            ++slots;
            WalkedCall(target, {.filling = Filling::Nulls, .hasNullSlots = true}).Run();
        }
    });
    EXPECT_EQ(5, slots);
}

TEST_F(ProxyWalk, FailuresLogNoOutputs) { WalkAllIn({.result = kFailure}); }

TEST_F(ProxyWalk, SuccessCodesAreHandedOn) { WalkAllIn({.result = S_FALSE}); }

TEST_F(ProxyWalk, NoWrappedObject) { WalkAllIn({.hasWrapped = false}); }

TEST_F(ProxyWalk, RefusedInterface) { WalkAllIn({.refuses = true}); }

TEST_F(ProxyWalk, LoggingOff)
{
    WalkAllIn({.isLogged = false});
    WalkAllIn({.filling = Filling::Nulls, .isLogged = false});
    WalkAllIn({.result = kFailure, .isLogged = false});
    WalkAllIn({.hasWrapped = false, .isLogged = false});
    WalkAllIn({.refuses = true, .isLogged = false});
}

TEST_F(ProxyWalk, ReadOnly) { WalkAllIn({.isReadOnly = true}); }

TEST_F(ProxyWalk, VersionsOfMaterials)
{
    for (const ThermoVersion version : {ThermoVersion::CapeOpen10, ThermoVersion::CapeOpen11}) {
        int methods = 0;
        WalkAll([&](const Target& target) {
            if (target.tableClass.name != "CMaterialObject") return;
            ++methods;
            WalkedCall(target, {.version = version}).Run();
        });
        EXPECT_LT(50, methods);
    }
}

}  // namespace
}  // namespace zelt::test
