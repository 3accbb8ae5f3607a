// CUnitOperation, PRAVIK: a unit operation that a simulator creates like any other, but that calculates nothing itself. It
// makes the unit operation that the user has configured or selects, or that was saved, forwards calls to it and logs them. It
// is the root of its logged tree, and exists before the unit that it wraps: until InitNew, Load or Initialize has made that
// unit, it logs calls and answers them as a proxy without an object does.
#pragma once

#include "system/edition.h"
#include "log/log_options.h"
#include "unit/persistent_object.h"
#include "unit/unit_interfaces.h"

namespace zelt {

inline constexpr const CLSID& kUnitOperationClass = kThisEdition[OwnClass::UnitOperation].classId;

// Makes a unit operation, opens its log, and returns its interface `iid`.
[[nodiscard]] HRESULT CreateUnitOperation(REFIID iid, void** result);

class CUnitOperation : public PersistentObject {
public:
    // `options` is borrowed and outlives the unit. There is no log until OpenOwnLog.
    explicit CUnitOperation(LogOptions& options = TheLogOptions());

    // Reads the options, and opens the log where they or the user say. If that fails, or the user declines, the unit runs
    // without a log.
    void OpenOwnLog();

    HRESULT RequireObject(LoggedCall& call) override;

protected:
    ~CUnitOperation() override = default;
    IDispatch* ScriptInterface() override { return &unit; }

    HRESULT MakeNew(LoggedCall& call) override;
    HRESULT MakeObject(LoggedCall& call) override;
    bool LoadsAfterInitNew() const override { return options.loadAfterInitNew; }

    // Makes a unit of the class `classId` the wrapped object; when that fails, `error` says why.
    [[nodiscard]] virtual HRESULT CreateInnerUnitOperation(LoggedCall& call, REFCLSID classId, std::string& error);

private:
    bool ChooseClass(LoggedCall& call);
    void TellUser(const std::string& text) const;

    LogOptions& options;
    LoggedUnit unit;
    LoggedUnitReport report;
    LoggedUnitKineticContext kineticContext;
    LoggedUnitElectrolyteContext electrolyteContext;
};

}  // namespace zelt
