// VARIANTs as a bad package might make them: of every type and flag, arrays of up to four dimensions, false headers,
// pointers to nowhere. Each value lasts until the next one is made. This class owns the memory that the value points to;
// the caller must not clear the value.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "long_run.h"

namespace zelt::test {

class HostileValues {
public:
    explicit HostileValues(std::uint32_t seed) : dice(seed) {}
    ~HostileValues() { Forget(); }
    HostileValues(const HostileValues&) = delete;
    HostileValues& operator=(const HostileValues&) = delete;

    const VARIANT& Next();
    // A string of the same sort: valid, null, or a pointer to nowhere.
    BSTR NextString();
    Dice& Choice() { return dice; }

private:
    void Forget();
    VARIANT Value(int nesting);
    VARIANT Scalar(VARTYPE type);
    SAFEARRAY* Array(VARTYPE type, int nesting);
    void Fill(SAFEARRAY* array, VARTYPE type, std::size_t count, int nesting);
    void Spoil(SAFEARRAY* array);
    BSTR String();
    void* Wild();

    Dice dice;
    VARIANT value{};
    std::deque<VARIANT> inner;        // what references point to
    std::deque<SAFEARRAY*> pointers;  // what references to arrays point to
    std::vector<std::function<void()>> owned;
};

}  // namespace zelt::test
