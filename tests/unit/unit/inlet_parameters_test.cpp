// What a unit changes through an energy or information inlet: the parameters of the connected collection and their
// specifications are read-only, and the log reports each change.
#include "dynamic_fake.h"
#include "fake_unit.h"
#include "unit/unit_port.h"

namespace zelt::test {
namespace {

constexpr char kReadOnly[] = "This object should be considered read-only";

// An object that returns its name, and answers every other method as the test wants.
ComPtr<DynamicFake> Scripted(const wchar_t* name, std::function<HRESULT(const IncomingCall&)> answer)
{
    ComPtr<DynamicFake> fake = DynamicFake::Make(name);
    DynamicFake* known = fake.Get();
    fake->handler = [known, answer = std::move(answer)](const IncomingCall& call) {
        if (call.method.name != "get_ComponentName") return answer(call);
        **static_cast<BSTR**>(call.arguments[0]) = SysAllocString(known->name.c_str());
        return S_OK;
    };
    return fake;
}

template <class T>
T& Out(const IncomingCall& call, std::size_t index)
{
    return **static_cast<T**>(call.arguments[index]);
}

class InletParameters : public UnitFixture, public testing::WithParamInterface<int> {
protected:
    InletParameters()
    {
        specification = Scripted(L"Bounds", [](const IncomingCall&) { return S_OK; });
        parameter = Scripted(L"Work", [this](const IncomingCall& call) {
            if (call.method.name == "get_Specification") {
                Out<IDispatch*>(call, 0) = specification->Face(__uuidof(ICapeParameterSpec)).Detach();
            }
            return S_OK;
        });
        stream = Scripted(L"Stream", [this](const IncomingCall& call) {
            if (call.method.name == "Item") Out<IDispatch*>(call, 1) = ParameterPointer();
            return S_OK;
        });
        innerPort = Scripted(L"Inlet", [this](const IncomingCall& call) {
            if (call.method.name == "get_portType") Out<long>(call, 0) = GetParam();
            if (call.method.name == "get_direction") Out<long>(call, 0) = direction;
            if (call.method.name == "Connect") connected = *static_cast<IDispatch**>(call.arguments[0]);
            return S_OK;
        });
        const ComPtr<CUnitPort> made(new CUnitPort);
        made->AttachThrough(innerPort.Get(), Crossing::Outbound, *unit.Get());
        port = As<ICapeUnitPort>(made);
        News();
    }
    ~InletParameters() override
    {
        connected.Reset();
        port.Reset();
        for (const auto& fake : {innerPort, stream, parameter, specification}) fake->handler = nullptr;
    }

    IDispatch* ParameterPointer() { return parameter->Face(__uuidof(ICapeParameter)).Detach(); }
    static std::string Value(const char* name, const char* type, const std::string& value)
    {
        return std::string(" <arg name=\"") + name + "\" direc=\"in\" type=\"" + type + "\">\n  <argval value=\"" +
               value + "\"/>\n </arg>\n";
    }
    std::string ReadOnlyHere() const { return direction == CAPE_INLET ? Error(kReadOnly) : ""; }

    // Lets the unit get a parameter from the connected object and change it and its specification. Compares the whole log.
    void ChangeEverything()
    {
        const ComPtr<IDispatch> raw = stream->Face(__uuidof(ICapeCollection));
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        const char* typeName = GetParam() == CAPE_ENERGY ? "CAPE_ENERGY" : "CAPE_INFORMATION";
        EXPECT_EQ(
            Func("ICapeUnitPort::Connect",
                 PointerArg("objectToConnect", "in", raw.Get()) +
                     Info(std::string("Replacing object by logged parameter collection for port type ") + typeName),
                 "in", "Inlet"),
            News());

        ComPtr<IDispatch> item;
        EXPECT_EQ(S_OK, As<ICapeCollection>(connected)->Item(_variant_t(1L), &item));
        const ComPtr<IDispatch> inner = parameter->Face(__uuidof(ICapeParameter));
        EXPECT_NE(inner.Get(), item.Get());
        EXPECT_EQ(Func("ICapeCollection::Item", Value("id", "VT_I4", "1") + PointerArg("Item", "out", inner.Get()),
                       "out", "Stream"),
                  News());

        const auto logged = As<ICapeParameter>(item);
        EXPECT_EQ(S_OK, logged->put_value(_variant_t(2.5)));
        EXPECT_EQ(Func("ICapeParameter::put_value", ReadOnlyHere() + Value("value", "VT_R8", "2.5"), "out", "Work"),
                  News());
        EXPECT_EQ(S_OK, logged->put_Mode(CAPE_OUTPUT));
        EXPECT_EQ(Func("ICapeParameter::put_Mode", ReadOnlyHere() + Value("Mode", "CapeParamMode", "CAPE_OUTPUT"),
                       "out", "Work"),
                  News());
        EXPECT_EQ(S_OK, logged->Reset());
        EXPECT_EQ(Func("ICapeParameter::Reset", ReadOnlyHere(), "out", "Work"), News());

        ComPtr<IDispatch> spec;
        EXPECT_EQ(S_OK, logged->get_Specification(&spec));
        const ComPtr<IDispatch> innerSpec = specification->Face(__uuidof(ICapeParameterSpec));
        EXPECT_NE(innerSpec.Get(), spec.Get());
        EXPECT_EQ(Func("ICapeParameter::get_Specification", PointerArg("spec", "out", innerSpec.Get()), "out", "Work"),
                  News());
        EXPECT_EQ(S_OK, As<ICapeIdentification>(spec)->put_ComponentDescription(_bstr_t(L"new")));
        EXPECT_EQ(Func("ICapeIdentification::put_ComponentDescription",
                       Value("desc", "string", "&quot;new&quot;") + ReadOnlyHere(), "out", "Bounds"),
                  News());
        // All these calls to the parameter arrived.
        std::vector<std::string> arrived;
        for (const RecordedCall& call : parameter->calls) {
            if (call.method->name != "get_ComponentName") arrived.push_back(call.method->name);
        }
        EXPECT_EQ((std::vector<std::string>{"put_value", "put_Mode", "Reset", "get_Specification"}), arrived);
    }

    eCapePortDirection direction = CAPE_INLET;
    ComPtr<DynamicFake> innerPort, stream, parameter, specification;
    ComPtr<IDispatch> connected;
    ComPtr<ICapeUnitPort> port;
};

INSTANTIATE_TEST_SUITE_P(Each, InletParameters, testing::Values(CAPE_ENERGY, CAPE_INFORMATION),
                         [](const auto& info) { return info.param == CAPE_ENERGY ? "Energy" : "Information"; });

TEST_P(InletParameters, AreReadOnlyDownToTheirValues) { ChangeEverything(); }

TEST_P(InletParameters, AreTheUnitsOwnAtAnOutlet)
{
    direction = CAPE_OUTLET;
    ChangeEverything();
}

// Messages about a returned parameter come after the argument that shows it, because the parameter is logged before it is
// wrapped.
TEST_P(InletParameters, AreLoggedBeforeTheyAreWrapped)
{
    const ComPtr<IDispatch> raw = stream->Face(__uuidof(ICapeCollection));
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    News();
    parameter->name.clear();
    ComPtr<IDispatch> item;
    EXPECT_EQ(S_OK, As<ICapeCollection>(connected)->Item(_variant_t(1L), &item));
    EXPECT_EQ(
        Func("ICapeCollection::Item",
             Value("id", "VT_I4", "1") + PointerArg("Item", "out", parameter->Face(__uuidof(ICapeParameter)).Get()) +
                 Warning("Object&apos;s name is empty"),
             "out", "Stream"),
        News());
}

}  // namespace
}  // namespace zelt::test
