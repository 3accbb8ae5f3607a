// Parts of logs, as text, for tests that put logs together.
#pragma once

#include <string>
#include <vector>

namespace zelt::test {

inline std::string Call(const std::string& name, const std::string& direction, const std::string& object,
                        const std::string& inside = {})
{
    return "<func name=\"" + name + "\" direc=\"" + direction + "\" object=\"" + object + "\">\n" + inside +
           "</func>\n";
}

inline std::string Argument(const std::string& name, const std::string& direction, const std::string& type,
                            const std::vector<std::string>& values)
{
    std::string text = "<arg name=\"" + name + "\" direc=\"" + direction + "\" type=\"" + type + "\">\n";
    for (const std::string& value : values) text += "<argval value=\"" + value + "\"/>\n";
    return text + "</arg>\n";
}

inline std::string Text(const std::string& name, const std::string& value)
{
    return Argument(name, "in", "string", {"&quot;" + value + "&quot;"});
}

inline std::string Numbers(const std::string& name, const std::vector<std::string>& values)
{
    return Argument(name, name == "results" ? "out" : "in", "VT_ARRAY|VT_R8", values);
}

// An argument with one value that the call returns.
inline std::string Result(const std::string& name, const std::string& type, const std::string& value)
{
    return Argument(name, "out", type, {value});
}

}  // namespace zelt::test
