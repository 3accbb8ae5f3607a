#include "core/wrapper_factory.h"

#include "core/cape_open_base.h"

namespace zelt {
namespace {

WrapTable installed{};

}  // namespace

void WrapperFactory::SetTable(const WrapTable& table) { installed = table; }

HRESULT WrapperFactory::Wrap(const WrapSite& site, Crossing crossing, IUnknown* incoming, CapeOpenBase& through,
                             ProxyPtr& proxy)
{
    proxy.Reset();
    const Wrapper wrap = installed[static_cast<std::size_t>(site.kind)];
    return wrap ? wrap(site, crossing, incoming, through, proxy) : S_FALSE;
}

}  // namespace zelt
