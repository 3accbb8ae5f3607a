// Values as recordings keep them: texts, VARIANTs and arrays to the last bit. They are read where they are, which may be another's
// memory: call under the fault guard.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include "recording/record_writer.h"

namespace zelt {

// A null text is no value.
void RecordText(recording::ValueWriter& value, BSTR text);
void RecordPointer(recording::ValueWriter& value, const void* pointer);
// The VARIANT itself as the value.
void RecordVariant(recording::ValueWriter& value, const VARIANT& variant);

}  // namespace zelt
