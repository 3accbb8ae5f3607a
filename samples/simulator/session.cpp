#include "samples/simulator/session.h"

#include "samples/component/cape_failure.h"
#include "samples/component/text.h"
#include "samples/component/variant.h"

namespace zelt::sample {
namespace {

using Microsoft::WRL::ComPtr;

template <class I>
ComPtr<I> CreateClass(const Options& options, const wchar_t* what)
{
    CLSID clsid;
    if (FAILED(CLSIDFromString(options.className.c_str(), &clsid))) {
        const HRESULT found = CLSIDFromProgID(options.className.c_str(), &clsid);
        if (FAILED(found)) throw CapeFailure(found, L"There is no class " + Quoted(options.className));
    }
    ComPtr<I> object;
    const DWORD context = options.inProcess ? CLSCTX_INPROC_SERVER : CLSCTX_LOCAL_SERVER | CLSCTX_INPROC_SERVER;
    CheckCall(CoCreateInstance(clsid, nullptr, context, __uuidof(I), &object), nullptr, what);
    return object;
}

template <class I>
ComPtr<I> Optional(IUnknown* object)
{
    ComPtr<I> result;
    if (FAILED(object->QueryInterface(IID_PPV_ARGS(&result)))) result.Reset();
    return result;
}

}  // namespace

ManagerSession::ManagerSession(const Options& options)
    : manager(CreateClass<ICapeThermoPropertyPackageManager>(options, L"Creating the property package manager")),
      utilities(Optional<ICapeUtilities>(manager.Get()))
{
    if (utilities) CheckCall(utilities->Initialize(), utilities.Get(), L"Initialising the property package manager");
}

ManagerSession::~ManagerSession()
{
    if (utilities) utilities->Terminate();
}

std::wstring ManagerSession::Name() const
{
    const ComPtr<ICapeIdentification> identification = Optional<ICapeIdentification>(manager.Get());
    if (!identification) return {};
    _bstr_t name;
    CheckCall(identification->get_ComponentName(name.GetAddress()), identification.Get(), L"get_ComponentName");
    return std::wstring(TextOf(name.GetBSTR()));
}

std::vector<std::wstring> ManagerSession::Packages() const
{
    _variant_t names;
    CheckCall(manager->GetPropertyPackageList(&names), manager.Get(), L"GetPropertyPackageList");
    return ReadStrings(names, L"PackageNames");
}

ComPtr<IDispatch> ManagerSession::GetPackage(const std::wstring& name) const
{
    ComPtr<IDispatch> package;
    CheckCall(manager->GetPropertyPackage(MakeBstr(name).GetBSTR(), &package), manager.Get(), L"GetPropertyPackage");
    if (!package) throw CapeFailure(ECapeUnknownHR, L"GetPropertyPackage: no package is returned");
    return package;
}

ComPtr<IDispatch> CreateStandAlone(const Options& options)
{
    return CreateClass<IDispatch>(options, L"Creating the property package");
}

PackageSession::PackageSession(ComPtr<IDispatch> object)
    : package(std::move(object)),
      identification(Optional<ICapeIdentification>(package.Get())),
      utilities(Optional<ICapeUtilities>(package.Get()))
{
    if (utilities) CheckCall(utilities->Initialize(), utilities.Get(), L"Initialising the property package");
    properties = Optional<ICapeThermoPropertyRoutine>(package.Get());
    equilibrium = Optional<ICapeThermoEquilibriumRoutine>(package.Get());
    universalConstants = Optional<ICapeThermoUniversalConstant>(package.Get());
    materialContext = Optional<ICapeThermoMaterialContext>(package.Get());
    CheckCall(package.As(&compounds), nullptr, L"The property package has no ICapeThermoCompounds");
    CheckCall(package.As(&phases), nullptr, L"The property package has no ICapeThermoPhases");
    slate = std::make_shared<const Slate>(ReadSlate(compounds.Get(), phases.Get()));
}

PackageSession::~PackageSession()
{
    // After a failure as after success: what is still held is given back.
    if (package) Close(false);
}

void PackageSession::SetMaterial(ReadHook hook)
{
    CheckCall(com::Create<Material>(IID_PPV_ARGS(&material), slate, std::wstring(L"Feed"), std::move(hook)), nullptr,
              L"Material object");
    ComPtr<IDispatch> dispatch;
    CheckCall(material.As(&dispatch), nullptr, L"Material object");
    CheckCall(materialContext->SetMaterial(dispatch.Get()), materialContext.Get(), L"SetMaterial");
}

void PackageSession::Close(bool hold)
{
    if (materialContext && material && !hold) materialContext->UnsetMaterial();
    if (!hold) material.Reset();
    if (utilities) utilities->Terminate();
    phases.Reset();
    compounds.Reset();
    materialContext.Reset();
    universalConstants.Reset();
    equilibrium.Reset();
    properties.Reset();
    utilities.Reset();
    identification.Reset();
    package.Reset();
    material.Reset();
}

}  // namespace zelt::sample
