// JSON, written as it is produced: objects and arrays, nested to any depth. Keeps nothing of what it has written.
#pragma once

#include <string_view>
#include <vector>

#include "ctl/output.h"

namespace zelt::ctl {

// Appends `text` in quotes, escaped.
void AppendJsonString(Output& out, std::string_view text);

class JsonWriter {
public:
    explicit JsonWriter(Output& out) : out(out) {}

    // Each object, array or value is an element of an array, or follows a Key.
    JsonWriter& BeginObject() { return Begin('{'); }
    JsonWriter& EndObject() { return End('}'); }
    JsonWriter& BeginArray() { return Begin('['); }
    JsonWriter& EndArray() { return End(']'); }
    JsonWriter& Key(std::string_view name);
    JsonWriter& String(std::string_view text);
    JsonWriter& Number(long long number);
    // A number that is already text.
    JsonWriter& Number(std::string_view digits);
    JsonWriter& Bool(bool value);

    JsonWriter& Member(std::string_view name, std::string_view text) { return Key(name).String(text); }
    JsonWriter& Member(std::string_view name, long long number) { return Key(name).Number(number); }

    // Call it before each element of an array to put each element on a separate line.
    JsonWriter& NewLine();

private:
    JsonWriter& Begin(char bracket);
    JsonWriter& End(char bracket);
    void Separate();

    Output& out;
    bool first = true;  // the next element needs no comma before it
    bool afterKey = false;
};

}  // namespace zelt::ctl
