// How much a server's memory grows for each package that lives and dies in it: ZELT compared with the system's surrogate
// process. Both marshal the same interfaces of the same package, so the memory that the system needs for that is the same.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <functional>

namespace zelt::bench {

using MakePackage = std::function<Microsoft::WRL::ComPtr<IDispatch>()>;

// Each function makes a new package. The caller must hold an object of each server, so that the server stays alive.
void CompareMemoryOfLives(int lives, const MakePackage& inSurrogate, const MakePackage& inZelt);

}  // namespace zelt::bench
