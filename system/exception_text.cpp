#include "system/exception_text.h"

#include <exception>
#include <new>

#include "system/narrow.h"

namespace zelt {

std::wstring TextOfException() noexcept
{
    try {
        try {
            throw;
        } catch (const std::bad_alloc&) {
            return L"out of memory";
        } catch (const std::exception& failure) {
            return Widen(failure.what(), CP_UTF8);
        } catch (...) {
            return L"an unexpected error";
        }
    } catch (...) {
        return {};
    }
}

}  // namespace zelt
