// A SAFEARRAY opened for reading as a one-dimensional array of one element type. Copies nothing, owns nothing, and does not
// lock: a lock that a fault leaves behind would keep the array's owner from freeing it.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace zelt {

class ArrayReader {
public:
    // On failure Message() says what is wrong with the array, and nothing may be read. `declaredType` is the element type of an
    // array that does not store its own.
    ArrayReader(SAFEARRAY* array, VARTYPE elementType, VARTYPE declaredType);

    bool IsOpen() const { return isOpen; }
    const std::string& Message() const { return message; }

    // At most 2^32 - 1, as many as a SAFEARRAY can have.
    ULONG Count() const { return static_cast<ULONG>(upperBound) - static_cast<ULONG>(lowerBound) + 1; }

    // The elements in order; T is the element type's C++ type.
    template <class T>
    const T* Elements() const
    {
        return static_cast<const T*>(data);
    }

private:
    bool isOpen = false;
    const void* data = nullptr;
    LONG lowerBound = 0;
    LONG upperBound = -1;
    std::string message;
};

}  // namespace zelt
