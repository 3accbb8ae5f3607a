#include "core/calls_in_progress.h"

#include <vector>

#include "core/cape_open_base.h"

namespace zelt {
namespace {

struct CallInProgress {
    CapeOpenBase* proxy;
    LogDocument* document;
    std::int32_t depth;  // of the document before the call's element was opened
};

// Outermost first. Calls that memory does not suffice to track are counted all the same.
std::vector<CallInProgress> calls;
std::size_t count = 0;

}  // namespace

std::size_t CountCallsInProgress() { return count; }

void EnterCallInProgress(CapeOpenBase& proxy, LogDocument* document)
{
    const CallInProgress call = {&proxy, document, document ? document->Depth() : 0};
    com::NoThrow([&] {
        if (calls.size() == count) calls.push_back(call);
        return S_OK;
    });
    if (count < calls.size()) calls[count] = call;
    ++count;
}

void LeaveCallInProgress(std::size_t countBefore) { count = countBefore; }

void EndCallsBeyond(std::size_t remaining) noexcept
{
    while (count > remaining) {
        --count;
        if (count >= calls.size()) continue;
        const CallInProgress call = calls[count];
        if (call.document) {
            call.document->EndOpenFuncs(call.depth);
            call.document->LetGo();
        }
        call.proxy->LeaveCall();
        call.proxy->Release();
    }
}

}  // namespace zelt
