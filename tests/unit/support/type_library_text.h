// A type library as text, one line for each fact, in the form of tests/data/cape_open_facts.txt: read from a built
// library through the system's loader, or from such a file, and compared line by line. In parameters, the text has the
// enumeration instead of an alias of it, because the two are the same on the wire. It shows neither the help texts of
// methods nor the order of types, which have no meaning.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace zelt::test {

struct TypeText {
    std::string headline;         // "interface <name> <iid> : ...", "enum <name>", "alias ...", "coclass ..."
    std::set<std::string> lines;  // methods or values
};

struct LibraryText {
    std::string headline;                   // "library <file> <name> ..."
    std::map<std::string, TypeText> types;  // by name
};

// The library at `folder`/`file`. Throws std::runtime_error if it cannot be loaded, or contains something that the text
// form cannot show.
LibraryText DescribeLibrary(const std::string& folder, const std::string& file);

// The libraries of a facts file, by the name of the library's file. Throws std::runtime_error for a file that it cannot
// read or that is not in this form.
std::map<std::string, LibraryText> ReadFacts(const std::string& path);

// One line for each difference: where it is, and what is missing, unexpected or different.
std::vector<std::string> Differences(const LibraryText& expected, const LibraryText& found);

}  // namespace zelt::test
