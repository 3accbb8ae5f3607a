// A COM object that does nothing but hold one server-process reference while it exists: the main window and each log viewer own
// one and so keep the process alive while they are open. May be made on one thread and released on another.
#pragma once

#include <wrl/client.h>

#include "com/object.h"

namespace zelt {

class CLockObject final : public com::Object {
public:
    CLockObject() : Object(com::Home::Anywhere) {}
};

using Lock = Microsoft::WRL::ComPtr<IUnknown>;

// Null when memory is exhausted.
inline Lock MakeLock()
{
    Lock lock;
    static_cast<void>(com::Create<CLockObject>(IID_IUnknown, &lock));
    return lock;
}

}  // namespace zelt
