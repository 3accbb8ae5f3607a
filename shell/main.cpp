#include <windows.h>

#include "com/failure.h"
#include "shell/module.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* commandLineTail, int)
{
    return com::NoThrow([&]() -> HRESULT {
        zelt::CZELTModule module;
        return module.Run(commandLineTail);
    });
}
