#include "log/error_description.h"

#include <oleauto.h>

#include <cape-open.h>

#include <new>

#include "guard/foreign_text.h"
#include "log/hr_name.h"
#include "system/system_text.h"

namespace zelt {
namespace {

// In the order of the CAPE-OPEN codes, from 0x80040501; the first has no description of its own.
constexpr const char* kFixedDescriptions[] = {
    "Failed to get error name for ECapeUnknown",
    "invalid data",
    "license problem",
    "Bad Cape-Open parameter",
    "Bad argument",
    "Invalid argument",
    "index out of bounds",
    "current implementation related error",
    "not implemented",
    "implementation is limited",
    "computation error",
    "out of resources",
    "out of memory",
    "operation was timed out",
    "initialization error",
    "solution error",
    "invalid order of invocations",
    "invalid operation",
    "storage / persistence error",
    "illegal access",
    "persistence error: not found",
    "persistence system error",
    "persistence overflow error",
    "solver scope error",
    "Hessian information not available",
    "One or more of the requested thermodynamic properties are not set on the material",
};
constexpr auto kFirstCode = static_cast<unsigned>(ECapeUnknownHR);
static_assert(kFirstCode + std::size(kFixedDescriptions) - 1 == static_cast<unsigned>(ECapeThrmPropertyNotAvailableHR));

}  // namespace

std::string ErrorDescription(HRESULT code, IUnknown* source) noexcept
{
    try {
        const unsigned index = static_cast<unsigned>(code) - kFirstCode;
        if (!source || index >= std::size(kFixedDescriptions)) return SystemText(code);
        std::string text = TextOfInterface(source, &ECapeUser::get_description);
        if (text.empty()) text = TextOfInterface(source, &ECapeRoot::get_name);
        return text.empty() ? kFixedDescriptions[index] : text;
    } catch (...) {
        return "<out of memory>";
    }
}

FailureText DescribeFailure(HRESULT code, IUnknown* source) noexcept
{
    FailureText text = {"<out of memory>", ErrorDescription(code, source)};
    try {
        text.name = HRName(code);
    } catch (...) {
        // The name stays "<out of memory>".
    }
    return text;
}

std::string ErrorText(HRESULT code, IUnknown* source) noexcept
{
    try {
        const FailureText text = DescribeFailure(code, source);
        return text.name + ": " + text.description;
    } catch (...) {
        return "<out of memory>";
    }
}

ForeignPtr<IErrorInfo> CurrentErrorInfo() noexcept
{
    ForeignPtr<IErrorInfo> current;
    // The object belongs to a package, and SetErrorInfo calls it.
    if (GetErrorInfo(0, current.Receive()) == S_OK) {
        AttemptForeign([&current] { SetErrorInfo(0, current.Get()); });
    }
    return current;
}

ErrorInfoKeeper::ErrorInfoKeeper() { GetErrorInfo(0, &kept); }

void ErrorInfoKeeper::Forget() { ReleaseForeign(kept); }

ErrorInfoKeeper::~ErrorInfoKeeper()
{
    // The kept object belongs to a package, and SetErrorInfo calls it.
    AttemptForeign([this] { SetErrorInfo(0, kept); });
    ReleaseForeign(kept);
}

}  // namespace zelt
