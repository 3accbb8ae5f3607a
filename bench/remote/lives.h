// What a server's memory grows by for each package that lives and dies in it: ZELT's beside that of the system's surrogate
// process. Both marshal the same interfaces of the same package; what the system keeps of them, it keeps in both.
#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <functional>

namespace zelt::bench {

using MakePackage = std::function<Microsoft::WRL::ComPtr<IDispatch>()>;

// Each makes a package anew. Something of either server must be held meanwhile, so that it stays.
void CompareMemoryOfLives(int lives, const MakePackage& inSurrogate, const MakePackage& inZelt);

}  // namespace zelt::bench
