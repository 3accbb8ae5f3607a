// A VARIANT as it was recorded. It owns its memory, but not the objects that it points to; nothing may clear it. Interface pointers
// are those of the process that was recorded, unless the user puts others in their place.
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
    // False where an array says that it has elements, and has no memory for them that the system could copy.
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

// The text that a value has; null for none.
BSTR NewRecordedText(const recording::Value& value);

}  // namespace zelt
