// A property package's proxy for a scripted package, logged or not, as the root of a new tree.
#pragma once

#include "fakes.h"
#include "log/log_text.h"
#include "log_fixture.h"
#include "thermo/material_object.h"
#include "thermo/property_package_11.h"
#include "thermo/wrapping_table.h"

namespace zelt::test {

class ProxyFixture : public LogFixture {
protected:
    ProxyFixture() { InstallWrappers(); }

    // A proxy of `wrapped`, with one reference. Null stands for an object that was never created.
    ComPtr<CPropertyPackage11> MakeProxy(IUnknown* wrapped, bool logged = true)
    {
        ComPtr<CPropertyPackage11> made(new CPropertyPackage11);
        made->AttachAsRoot(wrapped, logged ? document : nullptr, "Pack");
        return made;
    }

    template <class I, class T>
    static ComPtr<I> As(const ComPtr<T>& object)
    {
        ComPtr<I> found;
        EXPECT_EQ(S_OK, object->QueryInterface(__uuidof(I), reinterpret_cast<void**>(found.GetAddressOf())));
        return found;
    }

    // Finds an interface of a proxy even if the wrapped object refuses it, because a caller may have got the pointer
    // earlier.
    template <class I>
    static I* Part(const com::Object& object)
    {
        const com::InterfaceEntry* entry = object.FindInterface(__uuidof(I));
        return entry ? static_cast<I*>(entry->Pointer()) : nullptr;
    }
};

inline std::string Func(const std::string& name, const std::string& body, const char* direction = "in",
                        const std::string& object = "Pack")
{
    return "<func name=\"" + name + "\" direc=\"" + direction + "\" object=\"" + object + "\">\n" + body + "</func>\n";
}

}  // namespace zelt::test
