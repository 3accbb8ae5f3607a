// Entry of the in-process tests: COM is initialised for a single-threaded apartment, as in the server, and
// the heap is checked.
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

#include "checked_heap.h"

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    zelt::test::CheckHeapAfterEachTest();
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
