// A stream whose methods all fail. A test derives its own stream from it and overrides the methods that it needs.
#pragma once

#include <objidl.h>

#include "com/object.h"

namespace zelt::test {

class RefusingStream : public com::Part<IStream> {
public:
    using Part::Part;
    STDMETHOD(Read)(void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    STDMETHOD(Write)(const void*, ULONG, ULONG*) override { return E_NOTIMPL; }
    STDMETHOD(Seek)(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHOD(SetSize)(ULARGE_INTEGER) override { return E_NOTIMPL; }
    STDMETHOD(CopyTo)(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override { return E_NOTIMPL; }
    STDMETHOD(Commit)(DWORD) override { return E_NOTIMPL; }
    STDMETHOD(Revert)() override { return E_NOTIMPL; }
    STDMETHOD(LockRegion)(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHOD(UnlockRegion)(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_NOTIMPL; }
    STDMETHOD(Stat)(STATSTG*, DWORD) override { return E_NOTIMPL; }
    STDMETHOD(Clone)(IStream**) override { return E_NOTIMPL; }

protected:
    ~RefusingStream() = default;
};

}  // namespace zelt::test
