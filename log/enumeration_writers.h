// Writers of arguments of the CAPE-OPEN enumerations. A value outside its enumeration is logged as an error and in
// hexadecimal.
#pragma once

#include <cape-open.h>

#include <span>
#include <type_traits>

#include "log/log_document.h"

namespace zelt {

struct Enumeration {
    const char* name;                     // the logged type
    std::span<const char* const> values;  // the names of the values, which count from 0
};

const Enumeration& EnumerationOf(eCapeValidationStatus);
const Enumeration& EnumerationOf(eCapePortType);
const Enumeration& EnumerationOf(eCapeReactionType);
const Enumeration& EnumerationOf(eCapeReactionRateBasis);
const Enumeration& EnumerationOf(eCapePortDirection);
const Enumeration& EnumerationOf(eCapeParamMode);
const Enumeration& EnumerationOf(eCapeParamType);

// The enumeration of this name; null when there is none.
const Enumeration* FindEnumeration(std::string_view name);

void WriteEnumerationArg(LogDocument& document, std::string_view name, bool isIn, const Enumeration& type, int value);

template <class E>
requires std::is_enum_v<E>
void WriteArg(LogDocument& document, std::string_view name, bool isIn, E value)
{
    WriteEnumerationArg(document, name, isIn, EnumerationOf(value), static_cast<int>(value));
}

}  // namespace zelt
