// Lets packages serve only one client's call at a time, if the user wants that. While a package waits for an answer from the
// simulator, COM lets further calls in. Calls that belong to the call in progress must be served. A call from another client,
// or from another thread of the same client, is refused for now. A caller in a single-threaded apartment with a message filter
// then repeats the call. Other callers get an error, so this is an option.
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
