#include <windows.h>

#include "com/failure.h"
#include "system/library_search.h"
#include "shell/module.h"

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* commandLineTail, int)
{
    zelt::KeepCurrentFolderOutOfSearch();
    return com::NoThrow([&]() -> HRESULT {
        zelt::CZELTModule module;
        return module.Run(commandLineTail);
    });
}
