// Reads tests/data/proxied_methods.txt: what the log shows of each proxied method. The file explains its own form.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace zelt::test {

struct TableStep {
    enum Kind { Argument, Write, ErrorIfEmpty, ErrorIfNull, ErrorAlways, Version };
    Kind kind = Argument;

    std::string name;  // of the argument that the step logs or checks
    std::string text;  // the error, or the version
    bool isLoggedIn = false;
    std::string type;  // without a "?" or a proxy class after it
    bool mayBeEmpty = false;
    std::string secondName;       // how the log shows value 1 of an enumeration, in a row made from a type library
    std::string proxyClass;       // of the proxy that replaces a pointer
    std::string startingVersion;  // of a material object: "1.0", "1.1" or "owner"
    bool isShownAsReturned = false;

    bool IsArgument() const { return kind == Argument; }
};

struct TableRow {
    int line = 0;
    std::string interfaceName;
    std::string method;  // empty if the interface has no methods of its own
    std::string logged;
    bool answersUninitialized = false;
    bool isTestedElsewhere = false;
    std::vector<TableStep> steps;

    std::vector<const TableStep*> Arguments() const;
    std::string Key() const { return interfaceName + "::" + method; }
};

struct TableClass {
    std::string name;
    bool isIn = false;
    std::vector<TableRow> rows;
};

// Throws std::runtime_error if the file cannot be read, and, with the line's number, if a line has an error.
std::vector<TableClass> ReadMethodTable(const std::string& path);

}  // namespace zelt::test
