// Keeps a package to one client's call at a time, if the user wants that. While a package waits for an answer from the simulator,
// COM lets further calls in. Those that belong to the call in progress have to be served; a call from another client, or from
// another thread of the same client, is refused for now. A caller in a single-threaded apartment with a message filter then
// repeats the call; others get an error, which is why this is an option.
#pragma once

#include <windows.h>
#include <objidl.h>

#include <wrl/client.h>

namespace zelt {

class CallQueue {
public:
    // Acts on the calling thread, which must be in a single-threaded apartment.
    CallQueue();
    ~CallQueue();
    CallQueue(const CallQueue&) = delete;
    CallQueue& operator=(const CallQueue&) = delete;

private:
    Microsoft::WRL::ComPtr<IMessageFilter> before;
};

}  // namespace zelt
