// Saving and loading of packages through their proxies: the package gets the simulator's own stream, and the log shows each
// call.
#include "expected_log.h"
#include "fake_saved_package.h"
#include "fake_unit.h"
#include "fault_kinds.h"
#include "log/error_description.h"
#include "proxy_classes.h"
#include "refusing_stream.h"

namespace zelt::test {
namespace {

constexpr char kStateText[] = "state";

std::string Argument(const char* name, const char* direction, const char* type, const std::string& value)
{
    return std::string(" <arg name=\"") + name + "\" direc=\"" + direction + "\" type=\"" + type +
           "\">\n  <argval value=\"" + value + "\"/>\n </arg>\n";
}

// A stream that does not tell its position.
class Unseekable final : public com::Object {
public:
    IStream* Get() { return &stream; }
    std::string content;

private:
    struct Stream final : RefusingStream {
        explicit Stream(Unseekable& owner) : RefusingStream(owner), owner(owner) {}
        STDMETHOD(Write)(const void* bytes, ULONG count, ULONG*) override
        {
            owner.content.append(static_cast<const char*>(bytes), count);
            return S_OK;
        }
        Unseekable& owner;
    } stream{*this};
};

class PackagePersistenceTest : public ProxyFixture, public testing::WithParamInterface<const char*> {
protected:
    void Begin(bool isLogged = true)
    {
        proxy = FindProxyClass(GetParam()).make(ThermoVersion::Unset);
        proxy->AttachAsRoot(package.Get(), isLogged ? document : nullptr, "Pack");
    }
    void TearDown() override
    {
        proxy.Reset();
        EXPECT_EQ(1u, package->ReferenceCount());
    }
    bool Offers(REFIID iid)
    {
        ComPtr<IUnknown> found;
        return SUCCEEDED(proxy->QueryInterface(iid, &found));
    }
    std::string News()
    {
        const std::string all = Written();
        std::string news = all.substr(seen);
        seen = all.size();
        return news;
    }
    static ComPtr<IStream> StreamOf(const std::string& content)
    {
        ComPtr<IStream> stream;
        EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
        ULONG written = 0;
        EXPECT_EQ(S_OK, stream->Write(content.data(), static_cast<ULONG>(content.size()), &written));
        Rewind(stream);
        return stream;
    }
    static void Rewind(const ComPtr<IStream>& stream)
    {
        EXPECT_EQ(S_OK, stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    }
    static std::string Content(const ComPtr<IStream>& stream)
    {
        Rewind(stream);
        std::string content(100, '?');
        ULONG read = 0;
        EXPECT_TRUE(SUCCEEDED(stream->Read(content.data(), 100, &read)));
        content.resize(read);
        return content;
    }

    ComPtr<FakeSavedPackage> package = MakeFake<FakeSavedPackage>();
    ComPtr<CapeOpenBase> proxy;
    std::size_t seen = 0;
};

INSTANTIATE_TEST_SUITE_P(OfEachKind, PackagePersistenceTest,
                         testing::Values("CPropertyPackage11", "CPropertyPackage10", "CReactionPackage10"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(PackagePersistenceTest, IsOfferedExactlyWhenThePackageHasIt)
{
    const IID all[] = {IID_IPersist, IID_IPersistStream, IID_IPersistStreamInit};
    for (unsigned refused = 0; refused < 8; ++refused) {
        package->refused.clear();
        for (unsigned i = 0; i < 3; ++i) {
            if (refused >> i & 1) package->Refuse(all[i]);
        }
        for (const bool isLogged : {true, false}) {
            Begin(isLogged);
            News();
            for (unsigned i = 0; i < 3; ++i) {
                EXPECT_EQ(!(refused >> i & 1), Offers(all[i]));
            }
            const std::string news = News();
            std::size_t found = 0;
            for (std::size_t at = 0; (at = news.find("not returning supported", at)) != news.npos; ++at) ++found;
            EXPECT_EQ(isLogged ? static_cast<std::size_t>(__builtin_popcount(refused)) : 0u, found) << news;
            if (isLogged) {
                // A released root closes its log.
                proxy.Reset();
                document->LetGo();
                document = NewDocument();
                document->Hold();
                seen = 0;
            }
        }
    }
}

TEST_P(PackagePersistenceTest, EachInterfaceReachesItsOwn)
{
    Begin();
    CLSID classId{};
    EXPECT_EQ(S_OK, As<IPersist>(proxy)->GetClassID(&classId));
    EXPECT_TRUE(IsEqualGUID(kSavedPackage, classId));
    EXPECT_EQ(Func("IPersist::GetClassID", Argument("pClassID", "out", "CLSID", kSavedPackageText)), News());
    classId = {};
    EXPECT_EQ(S_OK, As<IPersistStream>(proxy)->GetClassID(&classId));
    EXPECT_EQ(&classId, package->lastPointer);
    EXPECT_TRUE(IsEqualGUID(kSavedPackage, classId));
    EXPECT_EQ(Func("IPersistStream::GetClassID", Argument("pClassID", "out", "CLSID", kSavedPackageText)), News());
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(proxy)->GetClassID(&classId));
    EXPECT_EQ(Func("IPersistStreamInit::GetClassID", Argument("pClassID", "out", "CLSID", kSavedPackageText)), News());
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(proxy)->InitNew());
    EXPECT_EQ(Func("IPersistStreamInit::InitNew", ""), News());
    EXPECT_EQ((std::vector<std::string>{"base.GetClassID", "plain.GetClassID", "init.GetClassID", "init.InitNew"}),
              package->calls);
}

// Tests the methods that IPersistStream and IPersistStreamInit share, except GetClassID.
template <class I>
void SaveAndLoad(const ComPtr<I>& persistence, FakeSavedPackage& package, const std::string& name,
                 const std::string& prefix, const std::function<std::string()>& news)
{
    ComPtr<IStream> stream;
    EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
    // In the stream, the package's data follow data of the simulator.
    ULONG count = 0;
    EXPECT_EQ(S_OK, stream->Write("front", 5, &count));
    package.state = kStateText;
    const std::string pointer = PointerArg("pstm", "in", stream.Get());

    EXPECT_EQ(S_OK, persistence->Save(stream.Get(), TRUE));
    EXPECT_EQ(stream.Get(), package.stream) << "the package got another stream";
    EXPECT_EQ(TRUE, package.clearedDirty);
    EXPECT_EQ(Func(name + "Save", pointer + Argument("fClearDirty", "in", "BOOL", "TRUE") + Info("Bytes written: 5")),
              news());
    EXPECT_EQ(S_OK, persistence->Save(stream.Get(), FALSE));
    EXPECT_EQ(FALSE, package.clearedDirty);
    EXPECT_EQ(Func(name + "Save", pointer + Argument("fClearDirty", "in", "BOOL", "FALSE") + Info("Bytes written: 5")),
              news());

    LARGE_INTEGER behindFront;
    behindFront.QuadPart = 5;
    EXPECT_EQ(S_OK, stream->Seek(behindFront, STREAM_SEEK_SET, nullptr));
    package.state = "?????";
    EXPECT_EQ(S_OK, persistence->Load(stream.Get()));
    EXPECT_EQ(kStateText, package.state);
    EXPECT_EQ(stream.Get(), package.stream);
    EXPECT_EQ(Func(name + "Load", pointer + Info("Bytes read: 5")), news());

    package.sizeMax = 0x123456789;
    ULARGE_INTEGER size = {};
    EXPECT_EQ(S_OK, persistence->GetSizeMax(&size));
    EXPECT_EQ(0x123456789u, size.QuadPart);
    EXPECT_EQ(&size, package.lastPointer);
    EXPECT_EQ(Func(name + "GetSizeMax", Argument("pcbSize", "out", "ULARGE_INTEGER", "4886718345")), news());

    const std::pair<HRESULT, std::string> answers[] = {
        {S_OK, Info("Returning S_OK")},
        {S_FALSE, Info("Returning S_FALSE")},
        {2, Warning("Returning other value than S_FALSE or S_OK")},
        {E_FAIL, Error(ErrorText(E_FAIL, nullptr))},
    };
    for (const auto& [answer, line] : answers) {
        package.result = answer;
        EXPECT_EQ(answer, persistence->IsDirty());
        EXPECT_EQ(Func(name + "IsDirty", line), news());
    }
    package.result = S_OK;
    EXPECT_EQ(
        (std::vector<std::string>{prefix + "Save", prefix + "Save", prefix + "Load", prefix + "GetSizeMax",
                                  prefix + "IsDirty", prefix + "IsDirty", prefix + "IsDirty", prefix + "IsDirty"}),
        package.calls);
    package.calls.clear();
}

TEST_P(PackagePersistenceTest, ThroughIPersistStream)
{
    Begin();
    SaveAndLoad(As<IPersistStream>(proxy), *package.Get(), "IPersistStream::", "plain.", [this] { return News(); });
}

TEST_P(PackagePersistenceTest, ThroughIPersistStreamInit)
{
    Begin();
    SaveAndLoad(As<IPersistStreamInit>(proxy), *package.Get(), "IPersistStreamInit::", "init.",
                [this] { return News(); });
}

TEST_P(PackagePersistenceTest, IsTheSameWithoutALog)
{
    Begin(false);
    const auto persistence = As<IPersistStream>(proxy);
    const ComPtr<IStream> stream = StreamOf("");
    package->state = kStateText;
    package->result = S_FALSE;
    EXPECT_EQ(S_FALSE, persistence->Save(stream.Get(), TRUE));
    EXPECT_EQ(kStateText, Content(stream));
    Rewind(stream);
    EXPECT_EQ(S_FALSE, persistence->Load(stream.Get()));
    EXPECT_EQ(S_FALSE, persistence->IsDirty());
    package->result = E_ACCESSDENIED;
    ULARGE_INTEGER size = {};
    EXPECT_EQ(E_ACCESSDENIED, persistence->GetSizeMax(&size));
    EXPECT_EQ("", News());
}

TEST_P(PackagePersistenceTest, NullPointersAreForwardedAsTheyAre)
{
    Begin();
    const auto persistence = As<IPersistStreamInit>(proxy);
    package->result = E_POINTER;
    const std::string failed = Error(ErrorText(E_POINTER, nullptr));
    EXPECT_EQ(E_POINTER, persistence->Load(nullptr));
    EXPECT_EQ(Func("IPersistStreamInit::Load", PointerArg("pstm", "in", nullptr) + failed), News());
    EXPECT_EQ(E_POINTER, persistence->Save(nullptr, 7));
    EXPECT_EQ(7, package->clearedDirty);
    EXPECT_EQ(Func("IPersistStreamInit::Save",
                   PointerArg("pstm", "in", nullptr) + Argument("fClearDirty", "in", "BOOL", "TRUE") + failed),
              News());
    EXPECT_EQ(E_POINTER, persistence->GetSizeMax(nullptr));
    EXPECT_EQ(nullptr, package->lastPointer);
    EXPECT_EQ(Func("IPersistStreamInit::GetSizeMax", failed), News());
    EXPECT_EQ(E_POINTER, persistence->GetClassID(nullptr));
    EXPECT_EQ(Func("IPersistStreamInit::GetClassID", failed), News());
}

TEST_P(PackagePersistenceTest, AFailureHasItsLineItsSizeAndItsErrorInformation)
{
    Begin();
    const auto persistence = As<IPersistStream>(proxy);
    const ComPtr<IStream> stream = StreamOf(kStateText);
    package->state = "???";
    package->result = static_cast<HRESULT>(ECapePersistenceHR);
    package->errorDescription = L"The saved data end too early";
    package->duringCall = [] {
        ComPtr<ICreateErrorInfo> creation;
        ComPtr<IErrorInfo> information;
        EXPECT_EQ(S_OK, CreateErrorInfo(&creation));
        creation->SetDescription(const_cast<LPOLESTR>(L"of the package"));
        creation.As(&information);
        SetErrorInfo(0, information.Get());
    };
    EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR), persistence->Load(stream.Get()));
    ComPtr<IErrorInfo> information;
    ASSERT_EQ(S_OK, GetErrorInfo(0, &information));
    _bstr_t description;
    information->GetDescription(description.GetAddress());
    EXPECT_STREQ(L"of the package", description);
    EXPECT_EQ(Func("IPersistStream::Load", PointerArg("pstm", "in", stream.Get()) + Info("Bytes read: 3") +
                                               Info("Error information: &quot;of the package&quot;") +
                                               Error("ECapePersistenceHR: The saved data end too early")),
              News());
}

TEST_P(PackagePersistenceTest, NoCountIsLoggedForAStreamWithoutAPosition)
{
    Begin();
    const auto stream = ComPtr<Unseekable>(new Unseekable);
    package->state = kStateText;
    EXPECT_EQ(S_OK, As<IPersistStream>(proxy)->Save(stream->Get(), TRUE));
    EXPECT_EQ(kStateText, stream->content);
    EXPECT_EQ(Func("IPersistStream::Save",
                   PointerArg("pstm", "in", stream->Get()) + Argument("fClearDirty", "in", "BOOL", "TRUE")),
              News());
}

TEST_P(PackagePersistenceTest, NoCountIsLoggedForAPackageThatMovesBack)
{
    Begin();
    const ComPtr<IStream> stream = StreamOf("before");
    EXPECT_EQ(S_OK, stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_END, nullptr));
    package->duringCall = [&] { Rewind(stream); };
    EXPECT_EQ(S_OK, As<IPersistStream>(proxy)->Load(stream.Get()));
    EXPECT_EQ(Func("IPersistStream::Load", PointerArg("pstm", "in", stream.Get())), News());
}

TEST_P(PackagePersistenceTest, LoadingAReadOnlyPackageIsAnErrorInTheLog)
{
    Begin();
    proxy->SetReadOnly(true);
    const std::string readOnly = Error("This object should be considered read-only");
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(proxy)->Load(nullptr));
    EXPECT_EQ(Func("IPersistStreamInit::Load", readOnly + PointerArg("pstm", "in", nullptr)), News());
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(proxy)->InitNew());
    EXPECT_EQ(Func("IPersistStreamInit::InitNew", readOnly), News());
    EXPECT_EQ(S_OK, As<IPersistStream>(proxy)->Load(nullptr));
    EXPECT_EQ(Func("IPersistStream::Load", readOnly + PointerArg("pstm", "in", nullptr)), News());
}

TEST_P(PackagePersistenceTest, EveryFaultInEveryMethodEndsInAStatusCode)
{
    struct Case {
        const char* method;
        HRESULT (*call)(IPersistStreamInit& persistence, IStream* stream);
    };
    static const Case kCases[] = {
        {"GetClassID",
         [](IPersistStreamInit& p, IStream*) {
             CLSID classId;
             return p.GetClassID(&classId);
         }},
        {"IsDirty", [](IPersistStreamInit& p, IStream*) { return p.IsDirty(); }},
        {"Load", [](IPersistStreamInit& p, IStream* s) { return p.Load(s); }},
        {"Save", [](IPersistStreamInit& p, IStream* s) { return p.Save(s, TRUE); }},
        {"GetSizeMax",
         [](IPersistStreamInit& p, IStream*) {
             ULARGE_INTEGER size;
             return p.GetSizeMax(&size);
         }},
        {"InitNew", [](IPersistStreamInit& p, IStream*) { return p.InitNew(); }},
    };
    Begin();
    const auto persistence = As<IPersistStreamInit>(proxy);
    const ComPtr<IStream> stream = StreamOf("content");
    const std::string unexpected = Error(ErrorText(E_UNEXPECTED, nullptr));
    for (const Case& tested : kCases) {
        for (const FaultKind* kind : OneFaultOfEachSort()) {
            SCOPED_TRACE(std::string(tested.method) + ", " + kind->name);
            package->duringCall = [&] { kind->act.act(kind->act.what); };
            EXPECT_EQ(E_UNEXPECTED, tested.call(*persistence.Get(), stream.Get()));
            package->duringCall = {};
            const std::string news = News();
            EXPECT_TRUE(news.starts_with(std::string("<func name=\"IPersistStreamInit::") + tested.method + '"'))
                << news;
            EXPECT_NE(std::string::npos, news.find(" <error value=\"" + Escaped(kind->logged) + "\"/>\n")) << news;
            EXPECT_TRUE(news.ends_with(unexpected + "</func>\n")) << news;
            EXPECT_EQ(S_OK, persistence->IsDirty());
            News();
        }
    }
}

}  // namespace
}  // namespace zelt::test
