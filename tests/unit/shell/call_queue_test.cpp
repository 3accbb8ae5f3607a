#include "shell/call_queue.h"

#include <gtest/gtest.h>

#include <optional>

namespace zelt::test {
namespace {

using Microsoft::WRL::ComPtr;

// The thread's message filter, which stays registered.
ComPtr<IMessageFilter> CurrentFilter()
{
    ComPtr<IMessageFilter> filter;
    EXPECT_EQ(S_OK, CoRegisterMessageFilter(nullptr, &filter));
    EXPECT_EQ(S_OK, CoRegisterMessageFilter(filter.Get(), nullptr));
    return filter;
}

TEST(CallQueue, IsThereOnlyWhileItLives)
{
    EXPECT_FALSE(CurrentFilter());
    {
        const CallQueue queue;
        EXPECT_TRUE(CurrentFilter());
    }
    EXPECT_FALSE(CurrentFilter());
}

TEST(CallQueue, LetsOnlyOtherClientsCallsComeAgain)
{
    const CallQueue queue;
    const auto filter = CurrentFilter();
    ASSERT_TRUE(filter);
    INTERFACEINFO call = {};
    call.iid = IID_IDispatch;
    call.wMethod = 7;
    const auto answer = [&](DWORD type) { return filter->HandleInComingCall(type, nullptr, 0, &call); };
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_ISHANDLED), answer(CALLTYPE_TOPLEVEL)) << "nothing is in progress";
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_ISHANDLED), answer(CALLTYPE_NESTED))
        << "it belongs to the call in progress";
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_ISHANDLED), answer(CALLTYPE_ASYNC));
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_ISHANDLED), answer(CALLTYPE_ASYNC_CALLPENDING));
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_RETRYLATER), answer(CALLTYPE_TOPLEVEL_CALLPENDING));
    for (WORD method : {0, 1, 2}) {
        call.wMethod = method;
        EXPECT_EQ(static_cast<DWORD>(SERVERCALL_ISHANDLED), answer(CALLTYPE_TOPLEVEL_CALLPENDING)) << method;
    }
    call.wMethod = 3;
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_RETRYLATER), answer(CALLTYPE_TOPLEVEL_CALLPENDING));
    call.iid = IID_IUnknown;
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_ISHANDLED), answer(CALLTYPE_TOPLEVEL_CALLPENDING));
    EXPECT_EQ(static_cast<DWORD>(SERVERCALL_RETRYLATER),
              filter->HandleInComingCall(CALLTYPE_TOPLEVEL_CALLPENDING, nullptr, 0, nullptr));
}

TEST(CallQueue, DoesOtherwiseWhatCOMDoesWithoutAFilter)
{
    const CallQueue queue;
    const auto filter = CurrentFilter();
    ASSERT_TRUE(filter);
    EXPECT_EQ(static_cast<DWORD>(-1), filter->RetryRejectedCall(nullptr, 0, SERVERCALL_RETRYLATER));
    EXPECT_EQ(static_cast<DWORD>(PENDINGMSG_WAITDEFPROCESS), filter->MessagePending(nullptr, 0, PENDINGTYPE_TOPLEVEL));
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(S_OK, filter.As(&unknown));
    ComPtr<IStream> stream;
    EXPECT_EQ(E_NOINTERFACE, filter.As(&stream));
}

}  // namespace
}  // namespace zelt::test
