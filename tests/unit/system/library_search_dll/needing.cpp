// Is loaded only if the library that it needs is found.
extern "C" __declspec(dllimport) int Needed();
extern "C" __declspec(dllexport) int Needing() { return Needed(); }
