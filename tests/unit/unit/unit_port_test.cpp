// The ports of a logged unit operation: the unit gets a proxy of a connected object, chosen by the type of the port; the
// simulator gets its own object back.
#include "log/error_description.h"
#include "expected_log.h"
#include "fake_unit.h"
#include "parameters/parameter_collection.h"
#include "unit/port_collection.h"
#include "unit/unit_port.h"

namespace zelt::test {
namespace {

constexpr auto kUnknown = static_cast<eCapePortType>(-1);

class FakePort final : public FakeObject {
public:
    eCapePortType type = CAPE_MATERIAL;
    eCapePortDirection direction = CAPE_OUTLET;
    HRESULT typeResult = S_OK, directionResult = S_OK, connectResult = S_OK, connectedResult = S_OK;
    int typeAsked = 0, directionAsked = 0;
    ComPtr<IDispatch> connected;
    IDispatch* arrived = nullptr;
    std::function<void()> duringConnect, duringType, duringDirection;
    ComPtr<IDispatch> item;

protected:
    IDispatch* ScriptInterface() override { return &port; }

private:
    struct Port final : com::DualPart<ICapeUnitPort> {
        explicit Port(FakePort& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(get_portType)(eCapePortType* type) override
        {
            ++fake.typeAsked;
            if (fake.duringType) fake.duringType();
            *type = fake.type;
            return fake.typeResult;
        }
        STDMETHOD(get_direction)(eCapePortDirection* direction) override
        {
            ++fake.directionAsked;
            if (fake.duringDirection) fake.duringDirection();
            *direction = fake.direction;
            return fake.directionResult;
        }
        STDMETHOD(get_connectedObject)(IDispatch** object) override
        {
            // A pointer returned with a failure must not be used.
            if (FAILED(fake.connectedResult)) {
                *object = reinterpret_cast<IDispatch*>(0x10);
                return fake.connectedResult;
            }
            return fake.connected.CopyTo(object);
        }
        STDMETHOD(Connect)(IDispatch* object) override
        {
            fake.arrived = object;
            if (FAILED(fake.connectResult)) return fake.connectResult;
            fake.connected = object;
            if (fake.duringConnect) fake.duringConnect();
            return fake.connectResult;
        }
        STDMETHOD(Disconnect)() override
        {
            fake.connected.Reset();
            return S_OK;
        }
        FakePort& fake;
    } port{*this};
    struct Collection final : com::DualPart<ICapeCollection> {
        explicit Collection(FakePort& fake) : DualPart(fake), fake(fake) {}
        STDMETHOD(Item)(VARIANT, IDispatch** item) override { return fake.item.CopyTo(item); }
        STDMETHOD(Count)(long* count) override
        {
            *count = 1;
            return S_OK;
        }
        FakePort& fake;
    } collection{*this};
};

// An energy or information stream of the simulator: a collection.
class FakeStream final : public FakeObject {
public:
    int energySet = 0;

protected:
    IDispatch* ScriptInterface() override { return &collection; }

private:
    struct Collection final : com::DualPart<ICapeCollection> {
        using DualPart::DualPart;
        STDMETHOD(Item)(VARIANT, IDispatch**) override { return E_NOTIMPL; }
        STDMETHOD(Count)(long* count) override
        {
            *count = 2;
            return S_OK;
        }
    } collection{*this};
};

class UnitPort : public UnitFixture {
protected:
    UnitPort()
    {
        inner->name = L"Port";
        feed->name = L"Feed";
        MakePort();
    }
    ~UnitPort() override
    {
        port.Reset();
        inner->connected.Reset();
    }

    // Makes a new unit operation, and the port's proxy as its collection of ports would return it.
    void MakePort(bool isLogged = true)
    {
        port.Reset();
        Begin(isLogged);
        const ComPtr<CUnitPort> made(new CUnitPort);
        ComPtr<IDispatch> raw;
        inner.As(&raw);
        made->AttachThrough(raw.Get(), Crossing::Outbound, *unit.Get());
        proxy = made.Get();
        port = As<ICapeUnitPort>(made);
        News();
    }
    template <class T>
    static ComPtr<IDispatch> Raw(const ComPtr<T>& object)
    {
        ComPtr<IDispatch> raw;
        object.As(&raw);
        return raw;
    }
    static std::string ConnectFunc(IUnknown* object, const std::string& body)
    {
        return Func("ICapeUnitPort::Connect", PointerArg("objectToConnect", "in", object) + body, "in", "Port");
    }
    // The proxy of `original` that the port got; null if the port got the object itself.
    CapeOpenBase* ConnectedProxy(IUnknown* original)
    {
        ComPtr<IOriginalObject> way;
        if (!inner->connected || FAILED(inner->connected.As(&way))) return nullptr;
        ComPtr<IUnknown> found, identity;
        EXPECT_EQ(S_OK, way->GetOriginalObject(&found));
        EXPECT_TRUE(IsSame(found.Get(), original));
        way.As(&identity);
        return static_cast<CapeOpenBase*>(static_cast<com::Object*>(identity.Get()));
    }
    static bool IsSame(IUnknown* a, IUnknown* b)
    {
        ComPtr<IUnknown> one, other;
        if (a) a->QueryInterface(IID_PPV_ARGS(&one));
        if (b) b->QueryInterface(IID_PPV_ARGS(&other));
        return one.Get() == other.Get();
    }

    ComPtr<FakePort> inner = MakeFake<FakePort>();
    ComPtr<FakeMaterial> feed = MakeFake<FakeMaterial>();
    ComPtr<ICapeUnitPort> port;
    CUnitPort* proxy = nullptr;
};

constexpr char kMaterialInfo[] = "Replacing object by logged material object for port type CAPE_MATERIAL";
constexpr char kEnergyInfo[] = "Replacing object by logged parameter collection for port type CAPE_ENERGY";
constexpr char kInformationInfo[] = "Replacing object by logged parameter collection for port type CAPE_INFORMATION";
constexpr char kAnyWarning[] =
    "Cannot log object to connect to: do not know which object to use for port type CAPE_ANY";
constexpr char kUndefinedWarning[] =
    "Cannot log object to connect to: do not know which object to use for undefined port type";
constexpr char kNullWarning[] = "Cannot log object to connect to: NULL pointer";

TEST_F(UnitPort, AMaterialIsReplaced)
{
    const auto raw = Raw(feed);
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(ConnectFunc(raw.Get(), Info(kMaterialInfo)), News());
    auto* material = dynamic_cast<CMaterialObject*>(ConnectedProxy(raw.Get()));
    ASSERT_NE(nullptr, material);
    EXPECT_EQ("Feed", material->Name());
    EXPECT_FALSE(material->IsIn());
    EXPECT_FALSE(material->IsReadOnly());
    EXPECT_EQ(ThermoVersion::Unset, material->Version());
    EXPECT_EQ(1, inner->typeAsked);
    EXPECT_EQ(1, inner->directionAsked);
    // The port holds the only reference.
    EXPECT_EQ(1u, material->ReferenceCount());
    EXPECT_EQ(S_OK, port->Disconnect());
    EXPECT_EQ(Func("ICapeUnitPort::Disconnect", "", "in", "Port"), News());
}

TEST_F(UnitPort, CollectionsAreReplaced)
{
    const auto stream = MakeFake<FakeStream>();
    stream->name = L"Heat";
    const auto raw = Raw(stream);
    struct Row {
        eCapePortType type;
        const char* info;
    };
    for (const Row& row : {Row{CAPE_ENERGY, kEnergyInfo}, Row{CAPE_INFORMATION, kInformationInfo}}) {
        MakePort();
        inner->type = row.type;
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        EXPECT_EQ(ConnectFunc(raw.Get(), Info(row.info)), News());
        auto* collection = dynamic_cast<CParameterCollection*>(ConnectedProxy(raw.Get()));
        ASSERT_NE(nullptr, collection);
        EXPECT_FALSE(collection->IsIn());
        EXPECT_FALSE(collection->IsReadOnly());
        inner->connected.Reset();
    }
}

TEST_F(UnitPort, WhatCannotBeReplacedIsConnectedAsItIs)
{
    const auto raw = Raw(feed);
    struct Row {
        int type;
        const char* warning;
    };
    for (const Row& row : {Row{CAPE_ANY, kAnyWarning}, Row{4, kUndefinedWarning}, Row{-1, kUndefinedWarning},
                           Row{0x7FFFFFFF, kUndefinedWarning}}) {
        MakePort();
        inner->type = static_cast<eCapePortType>(row.type);
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        EXPECT_EQ(ConnectFunc(raw.Get(), Warning(row.warning)), News());
        EXPECT_EQ(raw.Get(), inner->arrived);
    }
}

TEST_F(UnitPort, NullIsConnectedAsNull)
{
    for (const int type : {0, 1, 2, 3, 4}) {
        MakePort();
        inner->type = static_cast<eCapePortType>(type);
        inner->arrived = reinterpret_cast<IDispatch*>(1);
        EXPECT_EQ(S_OK, port->Connect(nullptr));
        EXPECT_EQ(ConnectFunc(nullptr, Warning(kNullWarning)), News());
        EXPECT_EQ(nullptr, inner->arrived);
    }
}

TEST_F(UnitPort, TheTypeIsAskedOnce)
{
    const auto raw = Raw(feed);
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(S_OK, port->Disconnect());
    inner->type = CAPE_ENERGY;
    News();
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(1, inner->typeAsked);
    EXPECT_EQ(ConnectFunc(raw.Get(), Info(kMaterialInfo)), News());
}

TEST_F(UnitPort, TheTypeThatTheSimulatorWasToldIsKept)
{
    eCapePortType type = kUnknown;
    EXPECT_EQ(S_OK, port->get_portType(&type));
    EXPECT_EQ(CAPE_MATERIAL, type);
    EXPECT_EQ(1, inner->typeAsked);
    EXPECT_EQ(S_OK, port->Connect(Raw(feed).Get()));
    EXPECT_EQ(1, inner->typeAsked);
}

TEST_F(UnitPort, ATypeThatCannotBeToldIsAskedAgain)
{
    const auto raw = Raw(feed);
    inner->typeResult = static_cast<HRESULT>(ECapeUnknownHR);
    inner->errorDescription = L"no idea";
    const std::string expected =
        ConnectFunc(raw.Get(), Error("Failed to get port type from port: no idea") + Warning(kUndefinedWarning));
    for (int attempt = 1; attempt <= 2; ++attempt) {
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        EXPECT_EQ(expected, News());
        EXPECT_EQ(raw.Get(), inner->arrived);
        EXPECT_EQ(attempt, inner->typeAsked);
    }
    inner->typeResult = E_NOTIMPL;
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(
        ConnectFunc(raw.Get(), Error("Failed to get port type from port: " + ErrorDescription(E_NOTIMPL, nullptr)) +
                                   Warning(kUndefinedWarning)),
        News());
    inner->typeResult = S_OK;
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(ConnectFunc(raw.Get(), Info(kMaterialInfo)), News());
}

// A port that returns -1 says no more than a port that fails; any other number is an answer.
TEST_F(UnitPort, MinusOneIsNoTypeAndIsAskedAgain)
{
    const auto raw = Raw(feed);
    const std::string undefined = ConnectFunc(raw.Get(), Warning(kUndefinedWarning));
    inner->type = kUnknown;
    for (int attempt = 1; attempt <= 2; ++attempt) {
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        EXPECT_EQ(undefined, News());
        EXPECT_EQ(attempt, inner->typeAsked);
    }
    inner->type = static_cast<eCapePortType>(-2);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        EXPECT_EQ(undefined, News());
        EXPECT_EQ(3, inner->typeAsked);
    }
}

TEST_F(UnitPort, WhatIsConnectedToAnInletIsReadOnly)
{
    inner->direction = CAPE_INLET;
    EXPECT_EQ(S_OK, port->Connect(Raw(feed).Get()));
    News();
    ComPtr<ICapeThermoMaterial> material;
    ASSERT_EQ(S_OK, inner->connected.As(&material));
    EXPECT_EQ(S_OK, material->ClearAllProps());
    EXPECT_EQ(
        Func("ICapeThermoMaterial::ClearAllProps", Error("This object should be considered read-only"), "out", "Feed"),
        News());
}

TEST_F(UnitPort, OnlyAnInletIsReadOnly)
{
    const auto raw = Raw(feed);
    for (const auto direction : {CAPE_OUTLET, CAPE_INLET_OUTLET}) {
        inner->direction = direction;
        EXPECT_EQ(S_OK, port->Connect(raw.Get()));
        ASSERT_NE(nullptr, ConnectedProxy(raw.Get()));
        EXPECT_FALSE(ConnectedProxy(raw.Get())->IsReadOnly());
    }
    // A direction returned with a failure does not count.
    inner->direction = CAPE_INLET;
    inner->directionResult = E_FAIL;
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_FALSE(ConnectedProxy(raw.Get())->IsReadOnly());
}

TEST_F(UnitPort, AReadOnlyPortSaysSoFirstAndHandsItOn)
{
    const auto raw = Raw(feed);
    const std::string readOnly = Error("This object should be considered read-only");
    proxy->SetReadOnly(true);
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(Func("ICapeUnitPort::Connect",
                   readOnly + PointerArg("objectToConnect", "in", raw.Get()) + Info(kMaterialInfo), "in", "Port"),
              News());
    EXPECT_EQ(0, inner->directionAsked);
    EXPECT_TRUE(ConnectedProxy(raw.Get())->IsReadOnly());
    EXPECT_EQ(S_OK, port->Disconnect());
    EXPECT_EQ(Func("ICapeUnitPort::Disconnect", readOnly, "in", "Port"), News());
}

TEST_F(UnitPort, TheSimulatorGetsItsOwnObjectBack)
{
    const auto raw = Raw(feed);
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    News();
    const ULONG before = feed->ReferenceCount();
    ComPtr<IDispatch> found;
    EXPECT_EQ(S_OK, port->get_connectedObject(&found));
    EXPECT_TRUE(IsSame(raw.Get(), found.Get()));
    // The log shows what the port returned: the proxy.
    EXPECT_EQ(Func("ICapeUnitPort::get_connectedObject", PointerArg("connectedObject", "out", inner->connected.Get()),
                   "in", "Port"),
              News());
    EXPECT_EQ(before + 1, feed->ReferenceCount());
    found.Reset();
    EXPECT_EQ(before, feed->ReferenceCount());
    EXPECT_EQ(1u, ConnectedProxy(raw.Get())->ReferenceCount());
}

TEST_F(UnitPort, NothingIsConnected)
{
    ComPtr<IDispatch> found;
    EXPECT_EQ(S_OK, port->get_connectedObject(&found));
    EXPECT_EQ(nullptr, found.Get());
    EXPECT_EQ(Func("ICapeUnitPort::get_connectedObject", PointerArg("connectedObject", "out", nullptr), "in", "Port"),
              News());
    inner->connectedResult = E_FAIL;
    auto* untouched = reinterpret_cast<IDispatch*>(0x20);
    EXPECT_EQ(E_FAIL, port->get_connectedObject(&untouched));
    EXPECT_EQ(nullptr, untouched);
    EXPECT_EQ(Func("ICapeUnitPort::get_connectedObject", Error(ErrorText(E_FAIL, nullptr)), "in", "Port"), News());
}

TEST_F(UnitPort, WithoutALogNothingIsReplaced)
{
    MakePort(false);
    inner->direction = CAPE_INLET;
    const auto raw = Raw(feed);
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(raw.Get(), inner->arrived);
    EXPECT_EQ(0, inner->typeAsked);
    EXPECT_EQ(0, inner->directionAsked);
    ComPtr<IDispatch> found;
    EXPECT_EQ(S_OK, port->get_connectedObject(&found));
    EXPECT_EQ(raw.Get(), found.Get());
    EXPECT_EQ("", News());
}

TEST_F(UnitPort, AProxyThatComesBackWithoutALogIsReplacedByWhatIsBehindIt)
{
    MakePort(false);
    const auto raw = Raw(feed);
    const ComPtr<CMaterialObject> wrapper(new CMaterialObject(ThermoVersion::Unset));
    wrapper->AttachAsRoot(raw.Get(), nullptr, "Feed");
    inner->connected = Raw(wrapper);
    ComPtr<IDispatch> found;
    EXPECT_EQ(S_OK, port->get_connectedObject(&found));
    EXPECT_TRUE(IsSame(raw.Get(), found.Get()));
    EXPECT_FALSE(IsSame(wrapper.Get(), found.Get()));
}

TEST_F(UnitPort, AConnectionThatFails)
{
    const auto raw = Raw(feed);
    inner->connectResult = static_cast<HRESULT>(ECapeInvalidOperationHR);
    const ULONG before = feed->ReferenceCount();
    EXPECT_EQ(static_cast<HRESULT>(ECapeInvalidOperationHR), port->Connect(raw.Get()));
    EXPECT_EQ(ConnectFunc(raw.Get(), Info(kMaterialInfo) + Error("ECapeInvalidOperationHR: invalid operation")),
              News());
    EXPECT_EQ(before, feed->ReferenceCount());
}

TEST_F(UnitPort, AFaultWhileConnecting)
{
    const auto raw = Raw(feed);
    inner->duringConnect = [] { RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr); };
    EXPECT_EQ(E_UNEXPECTED, port->Connect(raw.Get()));
    EXPECT_NE(std::string::npos, News().find("Uncaught SEH exception during function call"));
}

TEST_F(UnitPort, WithoutItsPortOrItsInterface)
{
    const auto raw = Raw(feed);
    const ComPtr<CUnitPort> empty(new CUnitPort);
    empty->AttachThrough(nullptr, Crossing::Outbound, *unit.Get());
    News();
    EXPECT_EQ(E_UNEXPECTED, Part<ICapeUnitPort>(*empty.Get())->Connect(raw.Get()));
    EXPECT_EQ(
        Func("ICapeUnitPort::Connect", PointerArg("objectToConnect", "in", raw.Get()) + Error("object not created"),
             "in", "&lt;unknown&gt;"),
        News());
    ComPtr<CUnitPort> strange(new CUnitPort);
    strange->AttachThrough(raw.Get(), Crossing::Outbound, *unit.Get());
    News();
    EXPECT_EQ(E_NOINTERFACE, Part<ICapeUnitPort>(*strange.Get())->Connect(raw.Get()));
    EXPECT_EQ(
        Func("ICapeUnitPort::Connect",
             PointerArg("objectToConnect", "in", raw.Get()) + Warning("Interface not exposed by object"), "in", "Feed"),
        News());
}

// What the unit does with its stream is logged inside the call that caused it.
TEST_F(UnitPort, TheStreamsCallsAreLogged)
{
    inner->duringConnect = [this] {
        ComPtr<ICapeThermoPhases> phases;
        ASSERT_EQ(S_OK, inner->connected.As(&phases));
        long count = 0;
        EXPECT_EQ(S_OK, phases->GetNumPhases(&count));
    };
    const auto raw = Raw(feed);
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(ConnectFunc(raw.Get(), Info(kMaterialInfo) +
                                         " <func name=\"ICapeThermoPhases::GetNumPhases\" direc=\"out\" "
                                         "object=\"Feed\">\n  <arg name=\"num\" direc=\"out\" type=\"long\">\n"
                                         "   <argval value=\"2\"/>\n  </arg>\n </func>\n"),
              News());
}

TEST_F(UnitPort, UnreleasedPortsAndStreamsAreReported)
{
    EXPECT_EQ(S_OK, port->Connect(Raw(feed).Get()));
    News();
    persistence.Reset();
    unit.Reset();
    EXPECT_EQ(
        "<warning value=\"Object &quot;Port&quot; (type: Port) is not released at final release of &quot;Unit "
        "Operation&quot; (reference count 1)\"/>\n"
        "<warning value=\"Object &quot;Feed&quot; (type: Material Object) is not released at final release of "
        "&quot;Unit Operation&quot; (reference count 1)\"/>\n</zeltlogdocument>\n",
        News());
    // The port's proxy continues to forward.
    EXPECT_EQ(S_OK, port->Disconnect());
    EXPECT_EQ(nullptr, inner->connected.Get());
}

void DividePortByZero() { RaiseException(EXCEPTION_INT_DIVIDE_BY_ZERO, 0, 0, nullptr); }

constexpr char kDivision[] =
    "Uncaught SEH exception during function call: EXCEPTION_INT_DIVIDE_BY_ZERO: The thread tried to divide an integer "
    "value by "
    "an integer divisor of zero.";

TEST_F(UnitPort, AFaultWhileItsTypeIsAskedIsLoggedLikeAnyOther)
{
    const auto raw = Raw(feed);
    inner->duringType = DividePortByZero;
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(ConnectFunc(raw.Get(), Error(kDivision) +
                                         Error("Failed to get port type from port: " +
                                               Escaped(ErrorDescription(E_UNEXPECTED, nullptr))) +
                                         Warning(kUndefinedWarning)),
              News());
    EXPECT_TRUE(IsSame(raw.Get(), inner->connected.Get()));
}

TEST_F(UnitPort, AFaultWhileItsDirectionIsAskedIsLoggedLikeAnyOther)
{
    const auto raw = Raw(feed);
    inner->duringDirection = DividePortByZero;
    EXPECT_EQ(S_OK, port->Connect(raw.Get()));
    EXPECT_EQ(ConnectFunc(raw.Get(), Error(kDivision) + Info(kMaterialInfo)), News());
    ASSERT_NE(nullptr, ConnectedProxy(raw.Get()));
    EXPECT_FALSE(ConnectedProxy(raw.Get())->IsReadOnly());
}

// An object that claims to be a proxy but fails to return its original.
class FaultyOriginal final : public FakeObject {
protected:
    IDispatch* ScriptInterface() override { return &original; }

private:
    struct Original final : com::DualPart<IOriginalObject> {
        using DualPart::DualPart;
        STDMETHOD(GetOriginalObject)(IUnknown**) override
        {
            DividePortByZero();
            return S_OK;
        }
    } original{*this};
};

TEST_F(UnitPort, AFaultWhileTheOriginalIsAskedIsLoggedLikeAnyOther)
{
    const auto other = MakeFake<FaultyOriginal>();
    const auto raw = Raw(other);
    inner->connected = raw;
    ComPtr<IDispatch> found;
    EXPECT_EQ(S_OK, port->get_connectedObject(&found));
    EXPECT_EQ(raw.Get(), found.Get());
    EXPECT_EQ(Func("ICapeUnitPort::get_connectedObject",
                   PointerArg("connectedObject", "out", raw.Get()) + Error(kDivision), "in", "Port"),
              News());
}

}  // namespace
}  // namespace zelt::test
