// Replaces what differs from run to run in a log, so that logs can be compared byte for byte: object addresses, the
// date of the start, and given paths. Replaces only text of exactly the right form; anything else stays and appears
// in the comparison. Status codes look like addresses but stay.
#pragma once

#include <string>
#include <vector>

namespace zelt::test {

struct PathName {
    std::string path;
    std::string name;
};

// Numbered distinguishes the objects of a log. Where many short-lived objects cross processes, an object may or may not
// reuse the memory of an earlier one: such logs need Alike.
enum class Addresses { Numbered, Alike };

// Addresses (8 or 16 upper-case digits after "pointer 0x" or "address 0x") become 0xADDRESS1, 0xADDRESS2, ... in order of
// first appearance, or all of them 0xADDRESS; the start line's date and time become DATE; each path becomes its name, in
// the given order.
std::string NormaliseLog(std::string log, const std::vector<PathName>& paths = {},
                         Addresses addresses = Addresses::Numbered);

// When COM marshals an object, it asks the object for system interfaces (IMarshal, IExternalConnection and others, which differ
// between systems), and the log records this. This function removes these lines: the warnings about interfaces that are
// unsupported, or requested before there is an object. Warnings about interfaces of the standard stay.
std::string WithoutSystemQueries(const std::string& log);

}  // namespace zelt::test
