// The exception for a CAPE-OPEN error inside the samples: thrown where a call fails; in a component, CapeErrors turns
// it into a status code, an error state and an IErrorInfo.
#pragma once

#include <windows.h>
#include <cape-open.h>

#include <optional>
#include <string>
#include <utility>

namespace zelt::sample {

struct CapeBounds {
    double lower;
    double upper;
    double value;
    std::wstring type;  // the quantity's name
};

class CapeFailure {
public:
    CapeFailure(eCapeErrorInterfaceHR_tag code, std::wstring description)
        : code(static_cast<HRESULT>(code)), description(std::move(description))
    {}
    CapeFailure(HRESULT code, std::wstring description) : code(code), description(std::move(description)) {}

    // A value outside its bounds.
    static CapeFailure OutOfBounds(const std::wstring& type, double value, double lower, double upper);

    HRESULT code;
    std::wstring description;
    std::optional<CapeBounds> bounds;
    std::wstring requestedOperation;  // what must be called first, when calls came in the wrong order
};

// The description of a failed call on `source`: its description from ECapeUser, else its error's name from ECapeRoot,
// else the system's text for the code. `source` may be null. Throws only bad_alloc.
std::wstring DescribeFailure(IUnknown* source, HRESULT code);

// If `code`, the result of a call on `source`, is a failure, throws CapeFailure with that code and "who: description".
void CheckCall(HRESULT code, IUnknown* source, const wchar_t* who);

// Runs `body`, and puts "who: " before the description of a CapeFailure that it throws.
template <class Body>
auto Named(const std::wstring& who, Body&& body)
{
    try {
        return body();
    } catch (CapeFailure& failure) {
        failure.description = who + L": " + failure.description;
        throw;
    }
}

}  // namespace zelt::sample
