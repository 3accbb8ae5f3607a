// The library that needing.cpp's library needs.
extern "C" __declspec(dllexport) int Needed() { return 42; }
