// What distinguishes the three families of packages: the manager that hands them out, the foreign managers they come from,
// their proxy, and their texts, which reach the caller and the user unchanged.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include "core/cape_open_base.h"

namespace zelt {

struct PackageFamily {
    const wchar_t* type;         // "PP 1.1", where packages are listed
    const char* logDescription;  // the object type in the log of a package

    // Our own manager: its class; the name and description that it returns, as registered; where its errors come from.
    const CLSID& managerClass;
    const wchar_t* name;
    const wchar_t* description;
    const wchar_t* scope;          // the method that gets a package
    const wchar_t* interfaceName;  // and its interface

    // The errors that a simulator gets when a package cannot be created, and what the user is then asked.
    const wchar_t* createManagerFailure;
    const wchar_t* initializeFailure;
    const wchar_t* standAloneFailure;
    const wchar_t* nullResult;
    const wchar_t* removalPrompt;

    // The messages that the user reads when the packages of a foreign manager cannot be listed.
    const wchar_t* listedManagerFailure;
    const wchar_t* listedInitializeFailure;
    const wchar_t* listFailure;
    const wchar_t* badList;

    // The interface of the foreign managers, its list of names, and its method that gets a package by name.
    const IID& foreignInterface;
    HRESULT (*listForeignPackages)(IUnknown* manager, VARIANT* names);
    HRESULT (*getForeignPackage)(IUnknown* manager, BSTR name, IDispatch** package);

    // A new proxy for a package.
    ProxyPtr (*newProxy)();
};

}  // namespace zelt
