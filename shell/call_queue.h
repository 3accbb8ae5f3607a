// Keeps a package to one client's call at a time, if the user wants that. While a package waits for an answer of the simulator, COM
// lets further calls in. Those that belong to the call in progress have to be served; one of another client, or of another thread
// of the same, is asked to come again later. Callers in a single-threaded apartment with a message filter then repeat it; others
// get an error, which is why it is an option.
#pragma once

#include <windows.h>
#include <objidl.h>

#include <wrl/client.h>

namespace zelt {

class CallQueue {
public:
    // From now on, for the calling thread, which is a single-threaded apartment.
    CallQueue();
    ~CallQueue();
    CallQueue(const CallQueue&) = delete;
    CallQueue& operator=(const CallQueue&) = delete;

private:
    Microsoft::WRL::ComPtr<IMessageFilter> before;
};

}  // namespace zelt
