#include "method_table.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace zelt::test {
namespace {

// Words are separated by spaces outside double quotes.
std::vector<std::string> WordsOf(const std::string& line)
{
    std::vector<std::string> words;
    std::string word;
    bool isQuoted = false;
    for (const char c : line + ' ') {
        if (c == '"') isQuoted = !isQuoted;
        if (c != ' ' || isQuoted) {
            word += c;
        } else if (!word.empty()) {
            words.push_back(std::exchange(word, {}));
        }
    }
    if (isQuoted) throw std::runtime_error("a quotation mark is not closed");
    return words;
}

bool TakePrefix(std::string& text, const std::string& prefix)
{
    if (!text.starts_with(prefix)) return false;
    text.erase(0, prefix.size());
    return true;
}

bool TakeSuffix(std::string& text, const std::string& suffix)
{
    if (!text.ends_with(suffix)) return false;
    text.erase(text.size() - suffix.size());
    return true;
}

std::string Unquoted(std::string text)
{
    if (!TakePrefix(text, "\"") || !TakeSuffix(text, "\"")) throw std::runtime_error("not quoted: " + text);
    return text;
}

// Removes and returns the text before the first `mark`, and removes the mark; the whole text if there is none.
std::string TakeUpTo(std::string& text, char mark)
{
    const auto at = text.find(mark);
    std::string taken = text.substr(0, at);
    text.erase(0, at == std::string::npos ? at : at + 1);
    return taken;
}

TableStep ReadArgument(std::string word)
{
    TableStep step;
    step.isShownAsReturned = TakeSuffix(word, ":returned");
    step.name = TakeUpTo(word, ':');
    const std::string direction = TakeUpTo(word, ':');
    if (direction != "in" && direction != "out") throw std::runtime_error("no direction: " + step.name);
    step.isLoggedIn = direction == "in";
    step.type = TakeUpTo(word, '>');
    step.mayBeEmpty = TakeSuffix(step.type, "?");
    if (step.type.empty()) throw std::runtime_error("no type: " + step.name);
    step.proxyClass = TakeUpTo(word, '(');
    TakeSuffix(word, ")");
    step.startingVersion = word;
    return step;
}

TableStep ReadCheck(TableStep::Kind kind, std::string word)
{
    TableStep step;
    step.kind = kind;
    step.name = TakeUpTo(word, ')');
    TakePrefix(word, ":");
    step.text = Unquoted(word);
    return step;
}

TableRow ReadRow(const std::vector<std::string>& words)
{
    TableRow row;
    const auto colons = words[1].find("::");
    row.interfaceName = words[1].substr(0, colons);
    if (colons != std::string::npos) row.method = words[1].substr(colons + 2);
    row.logged = words[1];
    for (std::size_t i = 2; i < words.size(); ++i) {
        std::string word = words[i];
        TableStep step;
        if (TakePrefix(word, "logged:")) {
            row.logged = Unquoted(word);
        } else if (word == "uninitialized") {
            row.answersUninitialized = true;
        } else if (word == "elsewhere") {
            row.isTestedElsewhere = true;
        } else if (word == "write") {
            step.kind = TableStep::Write;
            row.steps.push_back(step);
        } else if (TakePrefix(word, "version:")) {
            step.kind = TableStep::Version;
            step.text = word;
            row.steps.push_back(step);
        } else if (TakePrefix(word, "empty(")) {
            row.steps.push_back(ReadCheck(TableStep::ErrorIfEmpty, word));
        } else if (TakePrefix(word, "null(")) {
            row.steps.push_back(ReadCheck(TableStep::ErrorIfNull, word));
        } else if (TakePrefix(word, "always:")) {
            step.kind = TableStep::ErrorAlways;
            step.text = Unquoted(word);
            row.steps.push_back(step);
        } else {
            row.steps.push_back(ReadArgument(word));
        }
    }
    return row;
}

}  // namespace

std::vector<const TableStep*> TableRow::Arguments() const
{
    std::vector<const TableStep*> arguments;
    for (const TableStep& step : steps) {
        if (step.IsArgument()) arguments.push_back(&step);
    }
    return arguments;
}

std::vector<TableClass> ReadMethodTable(const std::string& path)
{
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    std::vector<TableClass> classes;
    std::map<std::string, std::vector<std::size_t>> members;  // the classes that get the rows of a class or group
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        try {
            std::erase(line, '\r');
            const std::vector<std::string> words = WordsOf(line);
            if (words.empty() || words[0].starts_with("#")) continue;
            if (words.size() < 2) throw std::runtime_error("too short");
            if (words[0] == "class") {
                if (words.size() < 3 || (words[2] != "in" && words[2] != "out"))
                    throw std::runtime_error("no direction");
                members[words[1]].push_back(classes.size());
                for (std::size_t i = 3; i < words.size(); ++i) members[words[i]].push_back(classes.size());
                classes.push_back({words[1], words[2] == "in", {}});
                continue;
            }
            if (!members.contains(words[0])) throw std::runtime_error("unknown class or group " + words[0]);
            TableRow row = ReadRow(words);
            row.line = number;
            for (const std::size_t member : members[words[0]]) {
                auto& rows = classes[member].rows;
                const auto isSame = [&](const TableRow& other) { return other.Key() == row.Key(); };
                if (std::any_of(rows.begin(), rows.end(), isSame)) throw std::runtime_error("twice: " + row.Key());
                rows.push_back(row);
            }
        } catch (const std::runtime_error& problem) {
            throw std::runtime_error(path + ", line " + std::to_string(number) + ": " + problem.what());
        }
    }
    return classes;
}

}  // namespace zelt::test
