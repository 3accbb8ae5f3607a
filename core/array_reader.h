// A SAFEARRAY opened for reading as a one-dimensional array of one element type. Locks the array while it lives; copies
// nothing and owns nothing else.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace zelt {

class ArrayReader {
public:
    // On failure Message() says what is wrong with the array, and nothing may be read.
    ArrayReader(SAFEARRAY* array, VARTYPE elementType);
    ~ArrayReader();
    ArrayReader(const ArrayReader&) = delete;
    ArrayReader& operator=(const ArrayReader&) = delete;

    bool IsOpen() const { return data != nullptr; }
    const std::string& Message() const { return message; }

    LONG LowerBound() const { return lowerBound; }
    LONG UpperBound() const { return upperBound; }
    long Count() const { return upperBound - lowerBound + 1; }

    // The elements in order; T is the element type's C++ type.
    template <class T>
    const T* Elements() const
    {
        return static_cast<const T*>(data);
    }

private:
    SAFEARRAY* array;
    void* data = nullptr;
    LONG lowerBound = 0;
    LONG upperBound = -1;
    std::string message;
};

}  // namespace zelt
