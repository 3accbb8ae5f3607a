// The proxy classes by name, as the table of proxied methods calls them.
#pragma once

#include <wrl/client.h>

#include <string_view>

#include "core/cape_open_base.h"

namespace zelt::test {

// How an object gets its proxy: as a root, or when it is passed to, or returned by, the object of another proxy.
enum class Origin { Root, Given, Returned };

struct ProxyClass {
    const char* name;
    Origin origin;
    Microsoft::WRL::ComPtr<CapeOpenBase> (*make)(ThermoVersion);  // only a material object uses the version
    bool (*isInstance)(const CapeOpenBase&);
};

// Gives a proxy its object. A root also gets the document; any other proxy gets the proxy through which the object
// crosses.
inline void Attach(const ProxyClass& proxyClass, CapeOpenBase& proxy, IUnknown* object, LogDocument* document,
                   CapeOpenBase* through)
{
    if (proxyClass.origin == Origin::Root) return proxy.AttachAsRoot(object, document, "Pack");
    const bool isGiven = proxyClass.origin == Origin::Given;
    proxy.AttachThrough(object, isGiven ? Crossing::Inbound : Crossing::Outbound, *through);
}

// Throws std::runtime_error for an unknown name.
const ProxyClass& FindProxyClass(std::string_view name);

}  // namespace zelt::test
