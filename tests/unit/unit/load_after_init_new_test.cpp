// Load after InitNew is refused, unless the user has set an option. With the option on, the unit operation is made again
// from the saved data.
#include <cstring>

#include "fake_unit.h"
#include "log/error_description.h"

namespace zelt::test {
namespace {

constexpr char kTwice[] = "Load is called after Load or InitNew";
constexpr char kReplacing[] =
    "Load is called after InitNew: replacing the unit operation by one that loads the saved data";

std::string Saved(REFCLSID classId, const std::string& data)
{
    std::string bytes(20, '\0');
    const auto length = static_cast<std::uint32_t>(data.size());
    std::memcpy(bytes.data(), &classId, 16);
    std::memcpy(bytes.data() + 16, &length, 4);
    return bytes + data;
}

class LoadAfterInitNew : public UnitFixture {
protected:
    LoadAfterInitNew()
    {
        options.loadAfterInitNew = true;
        unitScript.duringLoad = [this](IStream* stream) {
            found.assign(100, '?');
            ULONG read = 0;
            EXPECT_EQ(S_OK, stream->Read(found.data(), 5, &read));
            found.resize(read);
        };
    }
    ~LoadAfterInitNew() override { unitScript.duringLoad = nullptr; }

    HRESULT Load(const std::string& content)
    {
        EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.ReleaseAndGetAddressOf()));
        ULONG written = 0;
        EXPECT_EQ(S_OK, stream->Write(content.data(), static_cast<ULONG>(content.size()), &written));
        EXPECT_EQ(S_OK, stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
        return persistence->Load(stream.Get());
    }
    std::string LoadFunc(const std::string& body)
    {
        return UnitFunc("IPersistStreamInit::Load", PointerArg("pstm", "in", stream.Get()) + body);
    }
    static std::string Nested(const std::string& method, const std::string& body = {})
    {
        return " <func name=\"" + method + "\" direc=\"in\" object=\"Unit Operation\">\n" + body + " </func>\n";
    }
    static std::string Loading()
    {
        return Info(std::string("Created unit operation from CLSID ") + kFakeUnitText) +
               Info("Using IPersistStreamInit::Load of logged PMC");
    }
    static std::string Failed() { return Error(ErrorText(E_FAIL, nullptr)); }
    HRESULT Calculate() { return As<ICapeUnit>(unit)->Calculate(); }
    std::vector<std::string> Calls() { return std::exchange(unitScript.calls, {}); }
    using Strings = std::vector<std::string>;

    ComPtr<IStream> stream;
    std::string found;
};

TEST_F(LoadAfterInitNew, IsRefusedUnlessTheUserWantsIt)
{
    options.loadAfterInitNew = false;
    InitNew();
    EXPECT_EQ(E_FAIL, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ(LoadFunc(Error(kTwice) + Failed()), News());
    EXPECT_EQ(1, unitScript.created);
    EXPECT_EQ(Strings{}, Calls());
}

TEST_F(LoadAfterInitNew, MakesTheUnitAgainAndInitializesIt)
{
    for (const bool isLogged : {true, false}) {
        SCOPED_TRACE(isLogged ? "logged" : "not logged");
        Begin(isLogged);
        unitScript.created = 0;
        InitNew();
        EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
        EXPECT_EQ(S_OK, Calculate());
        EXPECT_EQ((Strings{"Initialize", "Calculate"}), Calls());
        News();
        FakeUnit* const first = unitScript.last;

        EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
        EXPECT_EQ("state", found);
        EXPECT_EQ((Strings{"Terminate", "init.Load", "Initialize"}), Calls());
        EXPECT_EQ(2, unitScript.created);
        EXPECT_EQ(1, FakeUnit::alive) << "the first is gone";
        EXPECT_EQ(isLogged ? LoadFunc(Info(kReplacing) + Nested("ICapeUtilities::Terminate") + Loading() +
                                      Nested("ICapeUtilities::Initialize"))
                           : "",
                  News());
        // All interfaces now lead to the new unit, even those that were in use before.
        static_cast<void>(first);
        ComPtr<IUnknown> behind;
        EXPECT_EQ(S_OK, As<IOriginalObject>(unit)->GetOriginalObject(&behind));
        ComPtr<IUnknown> identity;
        behind.As(&identity);
        EXPECT_EQ(static_cast<IUnknown*>(unitScript.last), identity.Get());
        EXPECT_EQ(S_OK, Calculate());
        EXPECT_EQ(S_FALSE, (unitScript.isDirty = S_FALSE, persistence->IsDirty()));
        EXPECT_EQ((Strings{"Calculate", "init.IsDirty"}), Calls());
        unitScript.isDirty = S_OK;
        News();

        // The unit is replaced only once.
        EXPECT_EQ(E_FAIL, Load(Saved(kFakeUnit, "other")));
        EXPECT_EQ(isLogged ? LoadFunc(Error(kTwice) + Failed()) : "", News());
        EXPECT_EQ("state", found);
    }
}

TEST_F(LoadAfterInitNew, AUnitThatIsNotInitializedIsNeitherTerminatedNorInitialized)
{
    InitNew();
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ(Strings{"init.Load"}, Calls());
    EXPECT_EQ(LoadFunc(Info(kReplacing) + Loading()), News());

    // The same is true of a unit that has been terminated.
    Begin();
    InitNew();
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Terminate());
    Calls();
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ(Strings{"init.Load"}, Calls());

    // It is also true of a unit that has refused to be initialized.
    Begin();
    InitNew();
    unitScript.call = E_FAIL;
    EXPECT_EQ(E_FAIL, As<ICapeUtilities>(unit)->Initialize());
    unitScript.call = S_OK;
    Calls();
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ(Strings{"init.Load"}, Calls());
}

TEST_F(LoadAfterInitNew, FollowsAnInitNewThatInitializeHasMadeUpFor)
{
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    Calls();
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ((Strings{"Terminate", "init.Load", "Initialize"}), Calls());
}

TEST_F(LoadAfterInitNew, DataThatCannotBeReadChangeNothing)
{
    InitNew();
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    Calls();
    News();
    EXPECT_EQ(E_FAIL, Load(Saved(kNoUnit, "state").substr(0, 23)));
    EXPECT_EQ(LoadFunc(Info(kReplacing) + Error("Read error during Load") + Failed()), News());
    EXPECT_EQ(Strings{}, Calls());
    EXPECT_EQ(1, unitScript.created);
    EXPECT_EQ(S_OK, Calculate());
    // The unit is still saved under its own class.
    ComPtr<IStream> target;
    EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &target));
    EXPECT_EQ(S_OK, persistence->Save(target.Get(), TRUE));
    EXPECT_EQ(S_OK, target->Seek(LARGE_INTEGER{}, STREAM_SEEK_SET, nullptr));
    CLSID saved{};
    ULONG read = 0;
    EXPECT_EQ(S_OK, target->Read(&saved, sizeof saved, &read));
    EXPECT_EQ(kFakeUnit, saved);
    // A later Load with good data works.
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ("state", found);
}

TEST_F(LoadAfterInitNew, AClassThatIsGoneLeavesNoUnit)
{
    RecordedMessages messages;
    InitNew();
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    Calls();
    News();
    const ComPtr<ICapeUnit> calculating = As<ICapeUnit>(unit);
    EXPECT_EQ(E_FAIL, Load(Saved(kNoUnit, "state")));
    EXPECT_EQ(Strings{"Terminate"}, Calls());
    EXPECT_EQ(0, FakeUnit::alive);
    EXPECT_EQ(1u, messages.All().size());
    News();
    EXPECT_EQ(E_UNEXPECTED, calculating->Calculate());
    EXPECT_EQ(UnitFunc("ICapeUnit::Calculate", Error("object not created")), News());
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ(LoadFunc(Loading()), News());
    EXPECT_EQ(S_OK, calculating->Calculate());
}

TEST_F(LoadAfterInitNew, AUnitThatFailsToLoadIsNotInitialized)
{
    InitNew();
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    Calls();
    unitScript.load = static_cast<HRESULT>(ECapePersistenceHR);
    EXPECT_EQ(static_cast<HRESULT>(ECapePersistenceHR), Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ((Strings{"Terminate", "init.Load"}), Calls());
    unitScript.load = S_OK;
    EXPECT_EQ(S_OK, Calculate());
}

TEST_F(LoadAfterInitNew, IsRefusedWhileTheUnitIsInUse)
{
    InitNew();
    HRESULT loaded = S_OK;
    unitScript.duringCall = [&] {
        unitScript.duringCall = {};
        loaded = Load(Saved(kFakeUnit, "state"));
    };
    EXPECT_EQ(S_OK, Calculate());
    EXPECT_EQ(E_FAIL, loaded);
    EXPECT_NE(std::string::npos, News().find(kTwice));
    EXPECT_EQ(1, unitScript.created);
    EXPECT_EQ(Strings{"Calculate"}, Calls());
}

TEST_F(LoadAfterInitNew, AFaultInTerminateDoesNotStopIt)
{
    InitNew();
    EXPECT_EQ(S_OK, As<ICapeUtilities>(unit)->Initialize());
    Calls();
    News();
    unitScript.duringCall = [] {
        unitScript.duringCall = {};
        RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    };
    EXPECT_EQ(S_OK, Load(Saved(kFakeUnit, "state")));
    EXPECT_EQ("state", found);
    EXPECT_EQ((Strings{"Terminate", "init.Load", "Initialize"}), Calls());
    EXPECT_NE(std::string::npos,
              News().find("Uncaught SEH exception during function call: EXCEPTION_ACCESS_VIOLATION"));
}

}  // namespace
}  // namespace zelt::test
