// Conversion between exceptions, which the code uses internally, and status codes, which it uses at COM boundaries.
#pragma once

#include <windows.h>

#include <exception>
#include <new>

namespace com {

// A failure to report as `code`. Allocates nothing.
class Failure final : public std::exception {
public:
    explicit Failure(HRESULT code) noexcept : code(code) {}
    [[nodiscard]] HRESULT Code() const { return code; }
    // The system's text for the code, if it has one, and the code; in UTF-8. Call it on one thread at a time.
    const char* what() const noexcept override;

private:
    HRESULT code;
    mutable char text[512] = {};
};

// Throws when `code` is a failure.
inline void Check(HRESULT code)
{
    if (FAILED(code)) throw Failure(code);
}

// The status code of the exception that is being handled: E_OUTOFMEMORY for exhausted memory, a Failure's code, E_UNEXPECTED for
// anything else.
[[nodiscard]] inline HRESULT ResultOfException() noexcept
{
    try {
        throw;
    } catch (const Failure& failure) {
        return failure.Code();
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

// Runs `body`, which returns a status code, and lets no exception out.
template <class Body>
[[nodiscard]] HRESULT NoThrow(Body&& body) noexcept
{
    try {
        return body();
    } catch (...) {
        return ResultOfException();
    }
}

// Runs `body`, whose failure changes nothing for the caller, and lets no exception out.
template <class Body>
void Attempt(Body&& body) noexcept
{
    try {
        body();
    } catch (...) {
        // Nobody depends on its success.
    }
}

}  // namespace com
