// What every sample component offers besides its own interfaces: identification, utilities and errors. Declare the
// parts as members of a com::Object.
#pragma once

#include <cape-open.h>
#include <wrl/client.h>

#include <functional>
#include <string>

#include "samples/component/cape_errors.h"
#include "samples/component/package_host.h"

namespace zelt::sample {

class IdentificationPart : public CapePart<ICapeIdentification> {
public:
    IdentificationPart(com::Object& object, CapeErrors& errors, std::wstring name, std::wstring description)
        : CapePart(object, errors, L"ICapeIdentification"), name(std::move(name)), description(std::move(description))
    {}
    const std::wstring& Name() const { return name; }

    STDMETHOD(get_ComponentName)(BSTR* text) override;
    STDMETHOD(put_ComponentName)(BSTR text) override;
    STDMETHOD(get_ComponentDescription)(BSTR* text) override;
    STDMETHOD(put_ComponentDescription)(BSTR text) override;

private:
    std::wstring name;
    std::wstring description;
};

// The host handles parameters and the simulation context. Without a host there are no parameters, and this part holds the
// context until Terminate. Edit fails, because there is no dialog.
class UtilitiesPart : public CapePart<ICapeUtilities> {
public:
    // `onInitialize` and `onTerminate` may be empty; an exception from them fails the call. `host` may be null.
    UtilitiesPart(com::Object& object, CapeErrors& errors, std::function<void()> onInitialize,
                  std::function<void()> onTerminate, PackageHost* host = nullptr)
        : CapePart(object, errors, L"ICapeUtilities"),
          onInitialize(std::move(onInitialize)),
          onTerminate(std::move(onTerminate)),
          host(host)
    {}

    STDMETHOD(get_parameters)(IDispatch** parameters) override;
    STDMETHOD(put_simulationContext)(IDispatch* context) override;
    STDMETHOD(Initialize)() override;
    STDMETHOD(Terminate)() override;
    STDMETHOD(Edit)() override;

private:
    std::function<void()> onInitialize;
    std::function<void()> onTerminate;
    PackageHost* host;
    Microsoft::WRL::ComPtr<IDispatch> simulationContext;
};

}  // namespace zelt::sample
