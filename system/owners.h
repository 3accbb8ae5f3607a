// One owner for each kind of thing that the system hands out and wants back. Null means that nothing is owned.
#pragma once

#include <windows.h>
#include <oleauto.h>

#include <memory>
#include <type_traits>

namespace zelt {

// A deleter that calls `Function` to give the thing back.
template <auto Function>
struct GiveBack {
    template <class T>
    void operator()(T* owned) const
    {
        Function(owned);
    }
};

// An owner of a handle type, which is a pointer, with the function that gives the handle back.
template <class Handle, auto Function>
using Owner = std::unique_ptr<std::remove_pointer_t<Handle>, GiveBack<Function>>;

// Not for handles from functions that return INVALID_HANDLE_VALUE on failure.
using UniqueHandle = Owner<HANDLE, CloseHandle>;
using UniqueWindow = Owner<HWND, DestroyWindow>;
using UniqueArray = Owner<SAFEARRAY*, SafeArrayDestroy>;
// Memory that the system has allocated for the caller.
template <class T>
using UniqueLocal = Owner<T*, LocalFree>;

}  // namespace zelt
