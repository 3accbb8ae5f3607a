// A scripted unit operation that COM creates in this process, and the CUnitOperation that wraps it. The script
// says what the unit does next and which interfaces it lacks, and records the calls.
#pragma once

#include <ocidl.h>

#include <functional>
#include <string>
#include <vector>

#include "com/class_factory.h"
#include "log/log_options.h"
#include "proxy_fixture.h"
#include "scratch_classes.h"
#include "unit/select_co_object.h"
#include "unit/unit_operation.h"

namespace zelt::test {

inline constexpr CLSID kFakeUnit = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x11}};
inline constexpr char kFakeUnitText[] = "{7B1C9E60-53D7-4E0C-932F-11B6704C8D11}";
inline constexpr CLSID kNoUnit = {0x7B1C9E60, 0x53D7, 0x4E0C, {0x93, 0x2F, 0x11, 0xB6, 0x70, 0x4C, 0x8D, 0x12}};
inline constexpr char kNoUnitText[] = "{7B1C9E60-53D7-4E0C-932F-11B6704C8D12}";

class FakeUnit;

struct UnitScript {
    std::vector<IID> refused;
    HRESULT initNew = S_OK, save = S_OK, load = S_OK, isDirty = S_OK, sizeResult = S_OK, call = S_OK;
    ULONGLONG sizeMax = 0;
    BOOL clearedDirty = -1;
    std::function<void()> duringCreation;
    std::function<void(IStream*)> duringSave, duringLoad;
    std::function<void()> duringCall, duringSizing, duringDirty;
    std::vector<std::string> calls;
    IDispatch* ports = nullptr;  // what get_ports returns, with a reference
    FakeUnit* last = nullptr;    // the unit created last; valid while somebody holds it
    int created = 0;
};
inline UnitScript unitScript;

class FakeUnit final : public FakeObject {
public:
    static inline long alive = 0;
    FakeUnit()
    {
        ++alive;
        ++unitScript.created;
        unitScript.last = this;
        refused = unitScript.refused;
        name = L"Inner";
        if (unitScript.duringCreation) unitScript.duringCreation();
    }
    ~FakeUnit() override { --alive; }

protected:
    IDispatch* ScriptInterface() override { return &unit; }

private:
    static HRESULT Enter(const char* call, HRESULT result)
    {
        unitScript.calls.push_back(call);
        if (unitScript.duringCall) unitScript.duringCall();
        return result;
    }
    struct Unit final : com::DualPart<ICapeUnit> {
        using DualPart::DualPart;
        STDMETHOD(get_ports)(IDispatch** ports) override
        {
            *ports = unitScript.ports;
            if (*ports) (*ports)->AddRef();
            return Enter("get_ports", unitScript.call);
        }
        STDMETHOD(get_ValStatus)(eCapeValidationStatus* status) override
        {
            *status = CAPE_VALID;
            return Enter("get_ValStatus", unitScript.call);
        }
        STDMETHOD(Calculate)() override { return Enter("Calculate", unitScript.call); }
        STDMETHOD(Validate)(BSTR*, VARIANT_BOOL* isValid) override
        {
            *isValid = VARIANT_TRUE;
            return Enter("Validate", unitScript.call);
        }
    } unit{*this};
    struct Utilities final : com::DualPart<ICapeUtilities> {
        using DualPart::DualPart;
        STDMETHOD(get_parameters)(IDispatch** parameters) override
        {
            *parameters = nullptr;
            return Enter("get_parameters", unitScript.call);
        }
        STDMETHOD(put_simulationContext)(IDispatch*) override
        {
            return Enter("put_simulationContext", unitScript.call);
        }
        STDMETHOD(Initialize)() override { return Enter("Initialize", unitScript.call); }
        STDMETHOD(Terminate)() override { return Enter("Terminate", unitScript.call); }
        STDMETHOD(Edit)() override { return Enter("Edit", unitScript.call); }
    } utilities{*this};

    // Both persistence interfaces behave alike; `prefix` shows in the recorded calls which of them was called.
    template <class I, char const* prefix>
    struct Persistence : com::Part<I> {
        using com::Part<I>::Part;
        static HRESULT Enter(const char* call, HRESULT result)
        {
            return FakeUnit::Enter((std::string(prefix) + call).c_str(), result);
        }
        STDMETHOD(GetClassID)(CLSID* clsid) override
        {
            *clsid = kFakeUnit;
            return S_OK;
        }
        STDMETHOD(IsDirty)() override
        {
            if (unitScript.duringDirty) unitScript.duringDirty();
            return Enter("IsDirty", unitScript.isDirty);
        }
        STDMETHOD(Load)(IStream* stream) override
        {
            if (unitScript.duringLoad) unitScript.duringLoad(stream);
            return Enter("Load", unitScript.load);
        }
        STDMETHOD(Save)(IStream* stream, BOOL clearDirty) override
        {
            unitScript.clearedDirty = clearDirty;
            if (unitScript.duringSave) unitScript.duringSave(stream);
            return Enter("Save", unitScript.save);
        }
        STDMETHOD(GetSizeMax)(ULARGE_INTEGER* size) override
        {
            if (unitScript.duringSizing) unitScript.duringSizing();
            size->QuadPart = unitScript.sizeMax;
            return Enter("GetSizeMax", unitScript.sizeResult);
        }
    };
    static constexpr char kInit[] = "init.", kPlain[] = "plain.";
    struct WithInit final : Persistence<IPersistStreamInit, kInit> {
        using Persistence::Persistence;
        STDMETHOD(InitNew)() override { return Enter("InitNew", unitScript.initNew); }
    } persistStreamInit{*this};
    struct Plain final : Persistence<IPersistStream, kPlain> {
        using Persistence::Persistence;
    } persistStream{*this};
};

// How the user answers the selection dialog, and how the dialog was shown.
struct SelectionScript {
    std::optional<CLSID> answer;
    std::wstring title;
    CLSID leftOut{};
    int asked = 0;
    std::function<void()> meanwhile;
};
inline SelectionScript selectionScript;

class UnitFixture : public ProxyFixture {
protected:
    UnitFixture()
    {
        unitScript = {};
        selectionScript = {};
        options.pravikUnit = kFakeUnit;
        static const com::ClassEntry kClasses[] = {{kFakeUnit, com::CreateDefault<FakeUnit>}};
        EXPECT_EQ(S_OK, classes.Register(kClasses));
        before = SetUnitSelector([](const std::wstring& title, REFCLSID leftOut) {
            ++selectionScript.asked;
            selectionScript.title = title;
            selectionScript.leftOut = leftOut;
            if (selectionScript.meanwhile) selectionScript.meanwhile();
            return selectionScript.answer;
        });
        Begin();
    }
    ~UnitFixture() override
    {
        SetUnitSelector(before);
        persistence.Reset();
        unit.Reset();
        EXPECT_EQ(0, FakeUnit::alive);
    }

    // Makes a new unit operation, and a new log, because a root closes its log.
    void Begin(bool isLogged = true)
    {
        persistence.Reset();
        unit.Reset();
        document->LetGo();
        document = NewDocument();
        document->Hold();
        seen = 0;
        unit = ComPtr<CUnitOperation>(new CUnitOperation(options));
        unit->AttachAsRoot(nullptr, isLogged ? document : nullptr, "Unit Operation");
        persistence = As<IPersistStreamInit>(unit);
        News();
    }
    void InitNew()
    {
        EXPECT_EQ(S_OK, persistence->InitNew());
        News();
        unitScript.calls.clear();
    }
    // Everything written since the previous call of News.
    std::string News()
    {
        const std::string all = Written();
        std::string news = all.substr(std::min(seen, all.size()));
        seen = all.size();
        return news;
    }

    com::ClassObjects classes{CLSCTX_INPROC_SERVER};
    ComPtr<CUnitOperation> unit;
    ComPtr<IPersistStreamInit> persistence;

private:
    UnitSelector before;
    std::size_t seen = 0;
};

// Log texts.
inline std::string Info(const std::string& text, int depth = 1)
{
    return std::string(static_cast<std::size_t>(depth), ' ') + "<info value=\"" + text + "\"/>\n";
}
inline std::string Warning(const std::string& text, int depth = 1)
{
    return std::string(static_cast<std::size_t>(depth), ' ') + "<warning value=\"" + text + "\"/>\n";
}
inline std::string Error(const std::string& text, int depth = 1)
{
    return std::string(static_cast<std::size_t>(depth), ' ') + "<error value=\"" + text + "\"/>\n";
}
inline std::string PointerArg(const char* name, const char* direction, IUnknown* pointer)
{
    std::string value = "NULL";
    if (pointer) AppendPointer(value = "interface pointer ", pointer);
    return std::string(" <arg name=\"") + name + "\" direc=\"" + direction +
           "\" type=\"interface\">\n  <argval value=\"" + value + "\"/>\n </arg>\n";
}
inline std::string UnitFunc(const std::string& method, const std::string& body)
{
    return Func(method, body, "in", "Unit Operation");
}

}  // namespace zelt::test
