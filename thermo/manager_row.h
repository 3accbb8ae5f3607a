// What tells the package managers apart, one row each; everything else they share (package_manager.h). The wide texts reach
// the caller and the user as they stand.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include "core/cape_open_base.h"
#include "shell/exported_package.h"

namespace zelt {

struct ManagerRow {
    PackageKind fromManager;
    PackageKind standAlone;

    const wchar_t* name;  // what the manager's identification answers, as registered
    const wchar_t* description;

    const wchar_t* scope;          // the method that gets a package
    const wchar_t* interfaceName;  // and its interface

    const wchar_t* createManagerFailure;
    const wchar_t* initializeFailure;
    const wchar_t* standAloneFailure;
    const wchar_t* nullResult;
    const wchar_t* removalPrompt;
    const char* logDescription;

    // The interface of the foreign managers that packages come from, and its method that gets one by name.
    const IID& foreignInterface;
    HRESULT (*getForeignPackage)(IUnknown* manager, BSTR name, IDispatch** package);

    // A new proxy for a package, without a reference.
    CapeOpenBase* (*newProxy)();
};

}  // namespace zelt
