// Proxies of objects with a vendor's interfaces, whose library is registered for this process alone, because other tests run at
// the same time.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "com/dual_interface.h"
#include "proxy_fixture.h"
#include "scratch_classes.h"
#include "vendor/vendor_device.h"
#include "tests/trees.h"

namespace zelt::test {

class VendorFixture : public ProxyFixture {
protected:
    void SetUp() override
    {
        library.emplace(std::filesystem::path(BuiltFile("idl/vendor.tlb")).make_preferred().c_str());
        ASSERT_EQ(S_OK, library->Result());
    }
    void TearDown() override
    {
        com::ReleaseDualInterfaces();
        library.reset();
    }

    static std::string Argument(const char* name, const char* direction, const char* type, const std::string& body)
    {
        return std::string(" <arg name=\"") + name + "\" direc=\"" + direction + "\" type=\"" + type + "\">\n" + body +
               " </arg>\n";
    }
    static std::string Value(const std::string& text) { return "  <argval value=\"" + text + "\"/>\n"; }

    ScratchClasses classes;
    std::optional<VendorLibrary> library;
};

}  // namespace zelt::test
