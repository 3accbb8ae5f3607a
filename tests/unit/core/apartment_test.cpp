// Calls to objects on foreign threads: methods return RPC_E_WRONG_THREAD, AddRef and Release still count, and the log reports
// the first such call to each object. The report is written on the apartment's own thread.
#include <atomic>
#include <thread>
#include <vector>

#include "fake_unit.h"
#include "unit/memory_stream.h"

namespace zelt::test {
namespace {

// Runs `body` to its end on a new thread, and returns the thread's number.
template <class Body>
DWORD OnOtherThread(Body&& body)
{
    DWORD number = 0;
    std::thread([&] {
        number = GetCurrentThreadId();
        body();
    }).join();
    return number;
}

std::string Foreign(const std::string& object, const char* member, DWORD thread)
{
    return "<warning value=\"Object entered outside of its apartment: &quot;" + object + "&quot;, " + member +
           ", thread " + std::to_string(thread) + "\"/>\n";
}

class Apartment : public ProxyFixture {
protected:
    // Visits by other threads that are not yet received would keep a test's proxy alive longer than its log.
    void TearDown() override { com::Object::ReceiveVisits(); }

    ComPtr<FakePackage> package = MakeFake<FakePackage>();
    ComPtr<CPropertyPackage11> proxy = MakeProxy(package.Get());
    ComPtr<ICapeUtilities> utilities = As<ICapeUtilities>(proxy);
    const std::string initialize = Func("ICapeUtilities::Initialize", "");
};

TEST_F(Apartment, ACallFromAnotherThreadIsRefusedAndNeitherForwardedNorLogged)
{
    const DWORD thread = OnOtherThread([&] {
        EXPECT_EQ(RPC_E_WRONG_THREAD, utilities->Initialize());
        EXPECT_EQ(RPC_E_WRONG_THREAD, utilities->Terminate());
    });
    EXPECT_TRUE(package->calls.empty());
    EXPECT_EQ("", Written());
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(Foreign("Pack", "ICapeUtilities::Initialize", thread) + initialize + initialize, Written());
    EXPECT_EQ(2u, proxy->ReferenceCount());
}

TEST_F(Apartment, AQueryFromAnotherThreadIsRefused)
{
    void* found = &found;
    const DWORD thread = OnOtherThread(
        [&] { EXPECT_EQ(RPC_E_WRONG_THREAD, utilities->QueryInterface(__uuidof(ICapeIdentification), &found)); });
    EXPECT_EQ(nullptr, found);
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(Foreign("Pack", "IUnknown::QueryInterface", thread) + initialize, Written());
    EXPECT_EQ(2u, proxy->ReferenceCount());
}

TEST_F(Apartment, AutomationFromAnotherThreadIsRefused)
{
    ComPtr<IDispatch> script = As<IDispatch>(proxy);
    const DWORD thread = OnOtherThread([&] {
        UINT count = 7;
        ITypeInfo* info = nullptr;
        DISPID id = 0;
        wchar_t name[] = L"ComponentName";
        LPOLESTR names = name;
        DISPPARAMS none = {};
        EXPECT_EQ(RPC_E_WRONG_THREAD, script->GetTypeInfoCount(&count));
        EXPECT_EQ(7u, count);
        EXPECT_EQ(RPC_E_WRONG_THREAD, script->GetTypeInfo(0, 0, &info));
        EXPECT_EQ(RPC_E_WRONG_THREAD, script->GetIDsOfNames(IID_NULL, &names, 1, 0, &id));
        EXPECT_EQ(RPC_E_WRONG_THREAD,
                  script->Invoke(1, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr, nullptr, nullptr));
    });
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(Foreign("Pack", "IDispatch::GetTypeInfoCount", thread) + initialize, Written());
}

// An object that counts how often it chooses its interface for scripts.
class LateScript final : public com::Object {
public:
    int chosen = 0;

    IDispatch* ScriptInterface() override { return &utilities; }
    IDispatch* ChooseScriptInterface() override
    {
        ++chosen;
        return &utilities;
    }

private:
    struct Utilities final : com::DualPart<ICapeUtilities> {
        using DualPart::DualPart;
        STDMETHOD(get_parameters)(IDispatch**) override { return E_NOTIMPL; }
        STDMETHOD(put_simulationContext)(IDispatch*) override { return E_NOTIMPL; }
        STDMETHOD(Initialize)() override { return S_OK; }
        STDMETHOD(Terminate)() override { return S_OK; }
        STDMETHOD(Edit)() override { return E_NOTIMPL; }
    } utilities{*this};
};

TEST_F(Apartment, NoQuestionOfAutomationFromAnotherThreadReachesTheObject)
{
    const ComPtr<LateScript> object(new LateScript);
    const ComPtr<IDispatch> script = As<IDispatch>(object);
    OnOtherThread([&] {
        UINT count = 7;
        ITypeInfo* info = nullptr;
        DISPID id = 0;
        wchar_t name[] = L"Initialize";
        LPOLESTR names = name;
        DISPPARAMS none = {};
        EXPECT_EQ(RPC_E_WRONG_THREAD, script->GetTypeInfoCount(&count));
        EXPECT_EQ(RPC_E_WRONG_THREAD, script->GetTypeInfo(0, 0, &info));
        EXPECT_EQ(RPC_E_WRONG_THREAD, script->GetIDsOfNames(IID_NULL, &names, 1, 0, &id));
        EXPECT_EQ(RPC_E_WRONG_THREAD,
                  script->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
    });
    EXPECT_EQ(0, object->chosen);
    UINT count = 7;
    EXPECT_EQ(S_OK, script->GetTypeInfoCount(&count));
    EXPECT_EQ(1u, count);
    EXPECT_EQ(1, object->chosen);
}

TEST_F(Apartment, AReleaseOnAnotherThreadCountsWhenTheApartmentIsEntered)
{
    utilities.Get()->AddRef();
    const DWORD thread = OnOtherThread([&] { utilities.Get()->Release(); });
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(2u, proxy->ReferenceCount());
    EXPECT_EQ(Foreign("Pack", "IUnknown::Release", thread) + initialize, Written());
}

TEST_F(Apartment, AReferenceAddedOnAnotherThreadKeepsTheObject)
{
    OnOtherThread([&] { utilities.Get()->AddRef(); });
    ICapeUtilities* kept = utilities.Get();
    utilities.Reset();
    proxy.Reset();
    EXPECT_EQ(S_OK, kept->Initialize());
    EXPECT_EQ(1u, FakePackage::alive);
    EXPECT_LT(1u, package->ReferenceCount());
    EXPECT_EQ(0u, kept->Release());
    EXPECT_EQ(1u, package->ReferenceCount());
}

TEST_F(Apartment, TheLastReleaseOnAnotherThreadEndsTheObjectOnItsOwn)
{
    ICapeUtilities* last = utilities.Get();
    last->AddRef();
    utilities.Reset();
    proxy.Reset();
    static std::atomic<int> signals;
    signals = 0;
    com::Object::SetVisitSignal([] { ++signals; });
    OnOtherThread([&] { last->Release(); });
    com::Object::SetVisitSignal(nullptr);
    EXPECT_EQ(1, signals);
    EXPECT_EQ(2u, package->ReferenceCount());
    com::Object::ReceiveVisits();
    EXPECT_EQ(1u, package->ReferenceCount());
    EXPECT_TRUE(Written().ends_with("</zeltlogdocument>\n"));
}

TEST_F(Apartment, AMaterialReleasedOnThePackagesThreadIsNotReported)
{
    ComPtr<FakeMaterial> material = MakeFake<FakeMaterial>();
    package->keepsMaterial = true;
    EXPECT_EQ(S_OK, As<ICapeThermoMaterialContext>(proxy)->SetMaterial(As<IDispatch>(material).Get()));
    IDispatch* kept = package->kept.Detach();
    const DWORD thread = OnOtherThread([&] { kept->Release(); });
    utilities.Reset();
    proxy.Reset();
    const std::string log = Written();
    EXPECT_EQ(std::string::npos, log.find("is not released")) << log;
    EXPECT_TRUE(log.ends_with(Foreign("Fake", "IUnknown::Release", thread) + "</zeltlogdocument>\n")) << log;
    EXPECT_EQ(1u, material->ReferenceCount());
}

TEST_F(Apartment, EveryPartOfAProxyRefuses)
{
    OnOtherThread([&] {
        ComPtr<IUnknown> original;
        BSTR name = nullptr;
        EXPECT_EQ(RPC_E_WRONG_THREAD, Part<IOriginalObject>(*proxy.Get())->GetOriginalObject(&original));
        EXPECT_EQ(RPC_E_WRONG_THREAD,
                  Part<ISupportErrorInfo>(*proxy.Get())->InterfaceSupportsErrorInfo(__uuidof(ICapeUtilities)));
        EXPECT_EQ(RPC_E_WRONG_THREAD, Part<ICapeIdentification>(*proxy.Get())->get_ComponentName(&name));
        EXPECT_EQ(nullptr, name);
    });
}

TEST_F(Apartment, ReleasesBeyondTheReferencesThatThereAreEndTheObjectOnce)
{
    ICapeUtilities* last = utilities.Get();
    last->AddRef();
    utilities.Reset();
    proxy.Reset();
    OnOtherThread([&] {
        last->Release();
        last->Release();
        last->Release();
    });
    com::Object::ReceiveVisits();
    EXPECT_EQ(1u, package->ReferenceCount());
}

// An object that lets another thread visit the next object while its own visit is received.
class Chained final : public com::Object {
public:
    Chained* next = nullptr;
    bool isReceived = false;

    void VisitOnOtherThread()
    {
        OnOtherThread([&] {
            AddRef();
            Release();
        });
    }

private:
    void OnForeignThread(const char*, DWORD) override
    {
        isReceived = true;
        if (next) next->VisitOnOtherThread();
    }
};

TEST(Visits, MadeWhileVisitsAreReceivedWaitForTheNextTurn)
{
    ComPtr<Chained> third(new Chained), second(new Chained), first(new Chained);
    first->next = second.Get();
    second->next = third.Get();
    first->VisitOnOtherThread();
    com::Object::ReceiveVisits();
    EXPECT_TRUE(first->isReceived);
    EXPECT_FALSE(second->isReceived);
    com::Object::ReceiveVisits();
    EXPECT_TRUE(second->isReceived);
    EXPECT_FALSE(third->isReceived);
    com::Object::ReceiveVisits();
    EXPECT_TRUE(third->isReceived);
}

TEST(Visits, AreReceivedOnNoOtherThreadThanTheObjectsOwn)
{
    ComPtr<Chained> newer(new Chained), older(new Chained);
    older->VisitOnOtherThread();
    newer->VisitOnOtherThread();
    OnOtherThread([] { com::Object::ReceiveVisits(); });
    EXPECT_FALSE(older->isReceived || newer->isReceived);
    com::Object::ReceiveVisits();
    com::Object::ReceiveVisits();
    EXPECT_TRUE(older->isReceived && newer->isReceived);
}

TEST(Visits, ThatAreLeftAreSignalledAgain)
{
    ComPtr<Chained> late(new Chained), newer(new Chained), older(new Chained);
    newer->next = late.Get();
    static std::atomic<int> signals;
    signals = 0;
    com::Object::SetVisitSignal([] { ++signals; });
    older->VisitOnOtherThread();
    newer->VisitOnOtherThread();
    com::Object::ReceiveVisits();
    EXPECT_EQ(1, older->isReceived + late->isReceived);
    EXPECT_EQ(4, signals) << "one for each visit, and one for what is left";
    com::Object::ReceiveVisits();
    com::Object::SetVisitSignal(nullptr);
    EXPECT_TRUE(older->isReceived && late->isReceived);
    EXPECT_EQ(4, signals);
}

// Eight threads call, query, add and release references, while the apartment works.
TEST_F(Apartment, SurvivesAStorm)
{
    constexpr int kThreads = 8;
    constexpr int kRounds = 20'000;
    std::atomic<int> started{0}, ended{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        utilities.Get()->AddRef();
        threads.emplace_back([&] {
            ICapeUtilities* own = utilities.Get();
            ++started;
            for (int round = 0; round < kRounds; ++round) {
                void* found = nullptr;
                own->AddRef();
                if (own->Initialize() != RPC_E_WRONG_THREAD) abort();
                if (own->QueryInterface(IID_IDispatch, &found) != RPC_E_WRONG_THREAD || found) abort();
                own->Release();
            }
            own->Release();
            ++ended;
        });
    }
    while (started < kThreads) Sleep(0);
    int calls = 0;
    do {
        ASSERT_EQ(S_OK, utilities->Initialize());
        ++calls;
        ComPtr<ICapeIdentification> found;
        ASSERT_EQ(S_OK, utilities.As(&found));
    } while (ended < kThreads && calls < 5'000);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(S_OK, utilities->Initialize());
    EXPECT_EQ(2u, proxy->ReferenceCount());
    EXPECT_EQ(static_cast<std::size_t>(calls) + 1, package->calls.size());
    const std::string log = Written();
    const auto warning = log.find("outside of its apartment");
    ASSERT_NE(std::string::npos, warning);
    EXPECT_EQ(std::string::npos, log.find("outside of its apartment", warning + 1)) << "one warning for an object";
    utilities.Reset();
    proxy.Reset();
    EXPECT_EQ(1u, package->ReferenceCount());
}

TEST_F(Apartment, AMemoryStreamRefusesToo)
{
    ComPtr<CStreamImpl> stream(new CStreamImpl(document));
    ASSERT_TRUE(stream->Allocate(4));
    stream->BeginWriting(true);
    const DWORD thread = OnOtherThread([&] {
        char byte = 1;
        EXPECT_EQ(RPC_E_WRONG_THREAD, stream->Stream()->Write(&byte, 1, nullptr));
        EXPECT_EQ(RPC_E_WRONG_THREAD, stream->Stream()->Read(&byte, 1, nullptr));
        EXPECT_EQ(RPC_E_WRONG_THREAD, stream->Stream()->Seek({}, STREAM_SEEK_SET, nullptr));
    });
    EXPECT_EQ(0u, stream->UsedLength());
    com::Object::ReceiveVisits();
    EXPECT_EQ(Foreign("Memory stream", "IStream::Write", thread), Written());
}

class PersistenceApartment : public UnitFixture {};

TEST_F(PersistenceApartment, PersistenceRefuses)
{
    InitNew();
    const DWORD thread = OnOtherThread([&] {
        CLSID classId;
        ULARGE_INTEGER size;
        EXPECT_EQ(RPC_E_WRONG_THREAD, persistence->IsDirty());
        EXPECT_EQ(RPC_E_WRONG_THREAD, persistence->InitNew());
        EXPECT_EQ(RPC_E_WRONG_THREAD, persistence->Load(nullptr));
        EXPECT_EQ(RPC_E_WRONG_THREAD, persistence->Save(nullptr, TRUE));
        EXPECT_EQ(RPC_E_WRONG_THREAD, persistence->GetSizeMax(&size));
        EXPECT_EQ(RPC_E_WRONG_THREAD, persistence->GetClassID(&classId));
    });
    EXPECT_TRUE(unitScript.calls.empty());
    com::Object::ReceiveVisits();
    EXPECT_EQ(Foreign("Unit Operation", "IPersistStreamInit::IsDirty", thread), News());
}

TEST(Home, AnObjectThatIsAtHomeAnywhereMayBeReleasedOnAnotherThread)
{
    struct Traveller final : com::Object {
        explicit Traveller(bool& gone) : Object(com::Home::Anywhere), gone(gone) {}
        ~Traveller() override { gone = true; }
        bool& gone;
    };
    bool gone = false;
    auto* object = new Traveller(gone);
    object->AddRef();
    OnOtherThread([&] { EXPECT_EQ(0u, object->Release()); });
    EXPECT_TRUE(gone);
}

}  // namespace
}  // namespace zelt::test
