// Creates an object in a server that may just be ending.
#pragma once

#include "under_wine.h"

namespace zelt::test {

// Windows suspends the classes of a server at the moment when its last reference is released. Wine does not, so an activation
// may reach the ending server and fail. In that case, the function tries once more, which starts a new server.
inline HRESULT CreateServed(REFCLSID classId, REFIID iid, void** object)
{
    const auto create = [&] { return CoCreateInstance(classId, nullptr, CLSCTX_LOCAL_SERVER, iid, object); };
    const HRESULT result = create();
    return UnderWine() && result == HRESULT_FROM_WIN32(RPC_S_CALL_FAILED) ? create() : result;
}

}  // namespace zelt::test
