// Entry point of the in-process tests: initialises COM for a single-threaded apartment, as in the server, and checks the heap.
// When a log is closed, a box asks whether to open it, as in the server, but no viewer opens.
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

#include "checked_heap.h"
#include "shell/log_prompt.h"

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    zelt::test::CheckHeapAfterEachTest();
    zelt::SetLogClosed([](const zelt::ClosedLog& log) { zelt::ShowClosedLog(log, nullptr); });
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
