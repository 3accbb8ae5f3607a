// Replaces what differs from run to run in a log, so that a log can be compared byte for byte: addresses of objects, the
// date of the start, and given paths. Only text of exactly the right form is replaced; anything else stays and shows up
// in the comparison. Status codes look like addresses and are left alone.
#pragma once

#include <string>
#include <vector>

namespace zelt::test {

struct PathName {
    std::string path;
    std::string name;
};

// Numbered tells the objects of a log apart. Where many short-lived objects cross processes, the memory of one becomes that
// of the next or does not, as it happens: such logs compare with their addresses Alike.
enum class Addresses { Numbered, Alike };

// Addresses (8 or 16 upper-case digits after "pointer 0x" or "address 0x") become 0xADDRESS1, 0xADDRESS2, ... in order of
// first appearance, or all of them 0xADDRESS; the start line's date and time become DATE; each path becomes its name, in
// the given order.
std::string NormaliseLog(std::string log, const std::vector<PathName>& paths = {},
                         Addresses addresses = Addresses::Numbered);

// COM asks every object that it marshals for interfaces of its own (IMarshal, IExternalConnection and others, not the
// same ones on every system), and the log says so, as it should. This leaves those lines out: the warnings about
// interfaces that are unsupported, or asked for before there is an object, but for the standard's, which are named
// ICape... or ECape...
std::string WithoutSystemQueries(const std::string& log);

}  // namespace zelt::test
