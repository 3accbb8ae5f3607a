// An SQLite database that is being filled.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace zelt::ctl {

class Database {
public:
    // Creates the file if there is none; the path is UTF-8. Throws std::runtime_error on failure, as everything here does.
    explicit Database(const std::string& path);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    void Execute(const char* statements);
    sqlite3* Handle() const { return handle; }

private:
    sqlite3* handle = nullptr;
};

// A statement that inserts a row, with a placeholder for each of its values.
class RowInserter {
public:
    RowInserter(Database& database, const char* statement);
    ~RowInserter();
    RowInserter(const RowInserter&) = delete;
    RowInserter& operator=(const RowInserter&) = delete;

    // Each of these sets the next value of the row; Insert adds the row.
    RowInserter& Text(std::string_view text);
    RowInserter& Integer(std::int64_t number);
    RowInserter& Real(double number);
    RowInserter& Null();
    RowInserter& IntegerOrNull(std::int64_t number, bool isKnown) { return isKnown ? Integer(number) : Null(); }
    RowInserter& TextOrNull(std::string_view text) { return text.empty() ? Null() : Text(text); }
    void Insert();

private:
    void Check(int result) const;

    Database& database;
    sqlite3_stmt* statement = nullptr;
    int filled = 0;
};

}  // namespace zelt::ctl
