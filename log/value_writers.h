// One writer for each logged argument type but VARIANT (variant_writer.h) and CAPE-OPEN's enumerations (enumeration_writers.h).
// Each writes one arg element: the argument's log name, its direction ("in" for true), its type and its value. It also gives
// the argument to the recording, if there is one.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cape-open.h>

#include "log/log_document.h"

namespace zelt {

void WriteArg(LogDocument& document, std::string_view name, bool isIn, short value);
void WriteArg(LogDocument& document, std::string_view name, bool isIn, long value);
void WriteArg(LogDocument& document, std::string_view name, bool isIn, double value);
void WriteArg(LogDocument& document, std::string_view name, bool isIn, BSTR value);
void WriteArg(LogDocument& document, std::string_view name, bool isIn, const CLSID& value);
void WriteArg(LogDocument& document, std::string_view name, bool isIn, const ULARGE_INTEGER& value);

// An interface pointer, only as an address.
void WriteArg(LogDocument& document, std::string_view name, bool isIn, IUnknown* value);
// An interface pointer of one of our proxies, with the proxy's name.
void WriteNamedInterfaceArg(LogDocument& document, std::string_view name, bool isIn, IUnknown* value,
                            std::string_view objectName);

// A value of an enumeration that only a type library describes. `type` is the enumeration's name; `shown` is the value's name, or
// its number as text.
void WriteNamedValueArg(LogDocument& document, std::string_view name, bool isIn, std::string_view type, long value,
                        std::string_view shown);
// An address whose target is not read. `type` is the content of the type attribute.
void WriteAddressArg(LogDocument& document, std::string_view name, bool isIn, std::string_view type,
                     const void* address);

// Types that C++ does not distinguish from others.
void WriteBoolArg(LogDocument& document, std::string_view name, bool isIn, BOOL value);
void WriteVariantBoolArg(LogDocument& document, std::string_view name, bool isIn, VARIANT_BOOL value);
// CAPE-OPEN calculation flags (eCapeCalculationCode).
void WriteFlagsArg(LogDocument& document, std::string_view name, bool isIn, int value);

}  // namespace zelt
