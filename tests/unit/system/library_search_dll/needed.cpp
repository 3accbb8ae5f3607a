// What the other library needs.
extern "C" __declspec(dllexport) int Needed() { return 42; }
