// The log's text of one call, put together from the table of proxied methods and the values of the arguments: written
// apart from the product's own writers, so that the two can disagree.
#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

#include "method_table.h"

namespace zelt::test {

// As text stands in the values of a log's attributes.
std::string Escaped(const std::string& plain);

class ExpectedCall {
public:
    ExpectedCall(const std::string& logged, bool isIn, const std::string& object);

    void Argument(const TableStep& argument, const VARIANT& value);
    // An object that is shown as the proxy that took its place.
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
