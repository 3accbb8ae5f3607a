// Interfaces by the names that logs and recordings give them.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "com/dual_interface.h"

namespace zelt::replay {

// A method of an interface.
struct NamedMethod {
    std::shared_ptr<const com::DualInterface> interface_;
    std::size_t number = 0;

    explicit operator bool() const { return interface_ != nullptr; }
    const com::DualMethod& Method() const { return interface_->methods[number]; }
};

class InterfaceNames {
public:
    InterfaceNames();

    // Interfaces that no library of this program describes, by their identifiers of 16 bytes.
    void Add(std::string_view interfaceId);
    // "ICapeUtilities::Edit"; nothing when no library describes it.
    NamedMethod Find(std::string_view member) const;
    // What logs and recordings call a method.
    static std::string LoggedName(const com::DualMethod& method);

private:
    void Add(REFIID iid);

    std::map<std::string, std::shared_ptr<const com::DualInterface>, std::less<>> interfaces;
};

}  // namespace zelt::replay
