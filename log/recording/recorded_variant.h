// A VARIANT as it was recorded. It owns its memory, but not the objects that it points to; it must never be cleared. Interface
// pointers are those of the recorded process, unless `objectFor` puts others in their place.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "recording/record.h"

namespace zelt {

class RecordedVariant {
public:
    // The object to put in the place of a recorded pointer, which is not null.
    using ObjectFor = std::function<void*(std::uint64_t address)>;

    // Throws std::length_error when the value contradicts itself.
    explicit RecordedVariant(const recording::Value& value, ObjectFor objectFor = {});
    ~RecordedVariant();
    RecordedVariant(const RecordedVariant&) = delete;
    RecordedVariant& operator=(const RecordedVariant&) = delete;

    const VARIANT& Get() const { return variant; }
    // False if an array has elements, but no memory for them that the system could copy.
    bool IsCopyable() const { return isCopyable; }

private:
    VARIANT Make(const recording::Value& value);
    void SetScalar(VARIANT& made, const recording::Value& value);
    SAFEARRAY* MakeArray(const recording::ArrayValue& array, VARTYPE declared);
    void* Room(std::size_t bytes);

    void* PointerFor(std::uint64_t address) const;

    const ObjectFor objectFor;
    std::deque<std::vector<char>> rooms;
    std::vector<BSTR> texts;
    std::vector<SAFEARRAY*> arrays;
    bool isCopyable = true;
    VARIANT variant;
};

// The text of a value, which the caller frees; null for a value without a text.
BSTR NewRecordedText(const recording::Value& value);

}  // namespace zelt
