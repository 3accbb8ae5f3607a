// The log text of one call, made from the call's row of the method table and the values of its arguments. The product's
// own writers are not used, so that a test can find their mistakes.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

#include "method_table.h"

namespace zelt::test {

// Text as it appears in the values of a log's attributes.
std::string Escaped(const std::string& plain);

class ExpectedCall {
public:
    ExpectedCall(const std::string& logged, bool isIn, const std::string& object);

    void Argument(const TableStep& argument, const VARIANT& value);
    // An object that the log shows as the proxy that replaced it.
    void NamedObject(const TableStep& argument, IUnknown* proxy, const std::string& name);
    void Error(const std::string& text) { Message("error", text); }
    void Warning(const std::string& text) { Message("warning", text); }
    std::string Text() const { return text + "</func>\n"; }

private:
    void Message(const char* element, const std::string& message);
    void Enclose(const TableStep& argument, const std::string& type, const std::string& body);
    std::string text;
};

}  // namespace zelt::test
