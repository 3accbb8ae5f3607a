#include "unit/unit_operation.h"

#include <objbase.h>
#include <wrl/client.h>

#include <cstring>

#include "guard/foreign_creation.h"
#include "log/hr_name.h"
#include "system/dialogs/message_box.h"
#include "system/narrow.h"
#include "log/recording/recorded_component.h"
#include "log/root_log.h"
#include "log/vocabulary/found_sentence.h"
#include "unit/select_co_object.h"
#include "system/guid_text.h"

namespace zelt {

namespace {

// The proxy's name until the simulator gives it another. As long as it has this name, it makes the unit operation that the user
// has configured, if any.
constexpr char kInitialName[] = "Unit Operation";

constexpr ProxyTraits kTraits = {
    .typeName = "Unit Operation", .servedVersion = ThermoVersion::CapeOpen10, .isNamedEarly = true};

}  // namespace

HRESULT CreateUnitOperation(REFIID iid, void** result)
{
    *result = nullptr;
    return com::NoThrow([&] {
        // Nobody else holds the unit yet, and a dialog that asks for the place of the log lets calls in.
        const Microsoft::WRL::ComPtr<CUnitOperation> made(new CUnitOperation);
        made->OpenOwnLog();
        return made->QueryInterface(iid, result);
    });
}

CUnitOperation::CUnitOperation(LogOptions& options)
    : PersistentObject(kTraits, kUnitOperationClass),
      options(options),
      unit(*this),
      report(*this),
      kineticContext(*this),
      electrolyteContext(*this)
{
    AttachAsRoot(nullptr, nullptr, kInitialName);
}

void CUnitOperation::OpenOwnLog()
{
    const DocumentHold log =
        OpenRootLog(options, L"unit operation", Widen(kInitialName), "PRAVIK Logged Unit Operation");
    AttachAsRoot(nullptr, log.Get(), kInitialName);
    if (options.handBackOriginals) HandBackOriginals();
}

// Called by Initialize. Makes up for an InitNew that the simulator has left out.
HRESULT CUnitOperation::RequireObject(LoggedCall& call)
{
    if (Wrapped()) return S_OK;
    call.Say(Sentence::InitializeTooEarly);
    call.Say(Sentence::RemedyByInitNew);
    if (SUCCEEDED(InitNew())) return S_OK;
    call.Say(Sentence::InitNewFailed);
    return E_FAIL;
}

HRESULT CUnitOperation::MakeNew(LoggedCall& call)
{
    if (!ChooseClass(call)) return E_FAIL;
    const HRESULT made = MakeObject(call);
    return FAILED(made) ? made : InitNewObject(call);
}

// Chooses the configured unit operation as long as the simulator has given no other name; otherwise asks the user. False when
// the user cancels.
bool CUnitOperation::ChooseClass(LoggedCall& call)
{
    if (options.pravikUnit != CLSID_NULL && _stricmp(Name().c_str(), kInitialName) == 0) {
        ObjectClass() = options.pravikUnit;
        call.Say(Sentence::CreatingConfiguredUnit, {Narrow(GuidText(ObjectClass()))});
        return true;
    }
    if (const auto selected = SelectUnitOperation(L"Select " + Widen(Name()) + L":", kUnitOperationClass)) {
        // Deliberate: without a log the choice is not adopted.
        if (call.Document()) {
            ObjectClass() = *selected;
            call.Say(Sentence::CreatingSelectedUnit, {Narrow(GuidText(ObjectClass()))});
        }
        return true;
    }
    const std::string_view names[] = {Name(), Name()};
    call.Say(Sentence::UnitSelectionCancelled, {Name(), Name()});
    TellUser(SentenceText(Sentence::UnitSelectionCancelled, names));
    return false;
}

HRESULT CUnitOperation::MakeObject(LoggedCall& call)
{
    std::string error;
    if (SUCCEEDED(CreateInnerUnitOperation(call, ObjectClass(), error))) return S_OK;
    call.Say(Sentence::UnitCreationFailed, {Name(), error});
    // Deliberately the bare error: the log says what it means for the unit.
    TellUser(error);
    return E_FAIL;
}

HRESULT CUnitOperation::CreateInnerUnitOperation(LoggedCall& call, REFCLSID classId, std::string& error)
{
    void* created = nullptr;
    // A unit that wraps its own class, as settings or a saved file may request, would make units without end.
    const HRESULT result =
        IsOwnClass(classId) ? CLASS_E_CLASSNOTAVAILABLE : CreateForeign(classId, CLSCTX_ALL, IID_IDispatch, &created);
    if (FAILED(result)) {
        error = HRName(result);
        call.Say(Sentence::UnitClassFailed, {error});
        return result;
    }
    const ForeignPtr<IDispatch> inner(static_cast<IDispatch*>(created));
    call.Say(Sentence::CreatedUnit, {Narrow(GuidText(classId))});
    RecordComponent(call.Document(), {classId, kRecordedUnit, {}, Widen(Name())}, inner.Get());
    Wrap(inner.Get());
    return S_OK;
}

void CUnitOperation::TellUser(const std::string& text) const
{
    ShowMessage(Widen(text), Widen(Name()).c_str(), MB_OK | MB_ICONERROR | MB_TOPMOST);
}

}  // namespace zelt
