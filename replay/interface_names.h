// Interfaces by the names that logs and recordings give them.
#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "com/dual_interface.h"
#include "recording/call_tree.h"

namespace zelt::replay {

// A method of an interface.
struct NamedMethod {
    std::shared_ptr<const com::DualInterface> interface_;
    std::size_t number = 0;

    explicit operator bool() const { return interface_ != nullptr; }
    const com::DualMethod& Method() const { return interface_->methods[number]; }
    // Calls the method of `object`, whose pointer is that of the interface. `words` are the arguments as they lie on the stack.
    HRESULT Call(IUnknown* object, const void* words) const;
};

class InterfaceNames {
public:
    InterfaceNames();

    // The method of a recorded call, such as "ICapeUtilities::Edit"; nothing when no type library describes it. An interface
    // that this program's libraries lack is looked for among those that the object granted. For a member that no interface has,
    // the method is one of IDispatch that stands for this call alone (late_calls.h).
    NamedMethod Find(const recording::KeptCall& call, const recording::KeptQueries& queries);
    // Whether the recorded call is one of the method.
    bool IsOf(const recording::KeptCall& call, const com::DualMethod& method, const recording::KeptQueries& queries);
    // What logs and recordings call a method.
    static std::string LoggedName(const com::DualMethod& method);

private:
    NamedMethod Find(std::string_view member) const;
    void Add(std::string_view interfaceId);
    void Add(REFIID iid);

    std::map<std::string, std::shared_ptr<const com::DualInterface>, std::less<>> interfaces;
};

}  // namespace zelt::replay
