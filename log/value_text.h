// What the scalar writers and the VARIANT writer share: the two ways to recognise a missing double, and the text of a string with
// the check of its length.
#pragma once

#include <windows.h>
#include <wtypes.h>

#include "log/arg_writer.h"

namespace zelt {

// Whether this is the value that stood for "undefined" before NaN did: the most negative double.
bool IsOldUndefined(double value);

// The argval line of a double: "N/A" for NaN and for the old undefined value, which also adds `oldValueWarning`.
void AppendDoubleValue(ArgWriter& arg, double value, Sentence oldValueWarning, int level = 1);

// The argval line of a BSTR in quotes, or `nullText` for a null one. Adds, at `errorLevel`, an error when the length that the
// BSTR stores is not its length up to the first NUL.
void AppendStringValue(ArgWriter& arg, BSTR value, const char* nullText, int level, int errorLevel);

}  // namespace zelt
