// Writes texts, pointers and VARIANTs as recordings keep them. The values are read in place, and the memory may belong to
// another component: call these functions under the fault guard.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include "recording/record_writer.h"

namespace zelt {

// These two write nothing for null.
void RecordText(recording::ValueWriter& value, BSTR text);
void RecordPointer(recording::ValueWriter& value, const void* pointer);
// Writes the type of the VARIANT and its contents.
void RecordVariant(recording::ValueWriter& value, const VARIANT& variant);

}  // namespace zelt
