// What the runs of the client share: creation through ZELT or in process, the simulator's context, and lines of output that do
// not depend on where a component runs.
#pragma once

#include <comutil.h>
#include <wrl/client.h>

#include <memory>
#include <string>

#include "samples/component/cape_failure.h"
#include "samples/component/variant.h"
#include "samples/simulator/flowsheet.h"

namespace zelt::test {

using Microsoft::WRL::ComPtr;

enum class Where { ThroughZelt, InProcess };

// Names of the exported packages.
inline constexpr const wchar_t* kFieldName = L"Field";
inline constexpr const wchar_t* kLicensedName = L"Licensed";

// Prints "what: value". Numbers are printed with all their digits.
void Print(const std::string& what, const std::wstring& value);
void Print(const std::string& what, const VARIANT& value);
// Prints the result of a call, and for a failure its description if `source` is given.
void Print(const std::string& what, HRESULT result, IUnknown* source);

// Throws CapeFailure, with the name of the call, if the call failed.
void Step(const wchar_t* what, HRESULT result, IUnknown* source = nullptr);

// An interface that the object has to have.
template <class I>
ComPtr<I> Required(IUnknown* object, const wchar_t* interfaceName)
{
    ComPtr<I> result;
    Step(interfaceName, object ? object->QueryInterface(IID_PPV_ARGS(&result)) : E_POINTER);
    return result;
}

ComPtr<IUnknown> CreateServed(const wchar_t* progId);
ComPtr<IDispatch> CreateInProcess(REFCLSID classId);

bool IsSame(IUnknown* a, IUnknown* b);

// A flowsheet that prints its components' messages.
std::shared_ptr<sample::Flowsheet> MakeFlowsheet();
// The simulator's context, and one without ICapeSimulationContext.
ComPtr<IDispatch> MakeContext(const std::shared_ptr<sample::Flowsheet>& flowsheet);
ComPtr<IDispatch> MakeSilentContext(const std::shared_ptr<sample::Flowsheet>& flowsheet);

ComPtr<IDispatch> CreateFieldPackage(Where where);
// Has the package calculate the flowsheet's streams, until the link is cleared.
void UsePackageFor(sample::Flowsheet& flowsheet, IDispatch* package);
void SetParameter(IDispatch* unit, const wchar_t* name, const _variant_t& value);
_variant_t ParameterValue(IDispatch* unit, const wchar_t* name);
// Has a field unit copy its feed to its product, and prints whether it could.
void CopyStreams(Where where, const char* what, const std::shared_ptr<sample::Flowsheet>& flowsheet);

// The runs. The first two also work in process. Through ZELT, all but the first change an option midway.
void UseEverything(Where where);
void CopyFeed(Where where);
void ReopenUnit();
void UseLicensedPackages();
void EditManagers();

}  // namespace zelt::test
