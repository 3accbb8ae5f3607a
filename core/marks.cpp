#include "core/marks.h"

#include <zelt.h>

namespace zelt {

void ErrorIf::Describe(LoggedCall& call) const
{
    LogDocument* log = call.Document();
    if (log && condition) log->Write(sentence);
}

HRESULT HoldOriginal::Prepare(LoggedCall& call)
{
    const ForeignPtr<IOriginalObject> proxy = QueryForeign<IOriginalObject>(object);
    // An object that does not return its original is left alone.
    if (proxy) static_cast<void>(call.Forward([&] { return proxy->GetOriginalObject(original.Receive()); }));
    return S_OK;
}

}  // namespace zelt
