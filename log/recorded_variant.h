// A VARIANT as it was recorded. It owns its memory; nothing may clear it, and what it points to was another process's.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <deque>
#include <string>
#include <vector>

#include "recording/record.h"

namespace zelt {

class RecordedVariant {
public:
    // Throws std::length_error when the value contradicts itself.
    explicit RecordedVariant(const recording::Value& value);
    ~RecordedVariant();
    RecordedVariant(const RecordedVariant&) = delete;
    RecordedVariant& operator=(const RecordedVariant&) = delete;

    const VARIANT& Get() const { return variant; }

private:
    VARIANT Make(const recording::Value& value);
    void SetScalar(VARIANT& made, const recording::Value& value);
    SAFEARRAY* MakeArray(const recording::ArrayValue& array, VARTYPE declared);
    void* Room(std::size_t bytes);

    std::deque<std::vector<char>> rooms;
    std::vector<BSTR> texts;
    std::vector<SAFEARRAY*> arrays;
    VARIANT variant;
};

// The text that a value has; null for none.
BSTR NewRecordedText(const recording::Value& value);

}  // namespace zelt
