#include "ctl/database/database.h"

#include <stdexcept>

#include <sqlite3.h>

namespace zelt::ctl {
namespace {

[[noreturn]] void Fail(sqlite3* handle)
{
    throw std::runtime_error(std::string("the database: ") + sqlite3_errmsg(handle));
}

}  // namespace

Database::Database(const std::string& path)
{
    if (sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) == SQLITE_OK)
        return;
    const std::string why = sqlite3_errmsg(handle);
    sqlite3_close(handle);
    throw std::runtime_error(path + ": " + why);
}

Database::~Database() { sqlite3_close(handle); }

void Database::Execute(const char* statements)
{
    if (sqlite3_exec(handle, statements, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(handle);
}

RowInserter::RowInserter(Database& database, const char* text) : database(database)
{
    Check(sqlite3_prepare_v2(database.Handle(), text, -1, &statement, nullptr));
}

RowInserter::~RowInserter() { sqlite3_finalize(statement); }

void RowInserter::Check(int result) const
{
    if (result != SQLITE_OK && result != SQLITE_DONE) Fail(database.Handle());
}

RowInserter& RowInserter::Text(std::string_view text)
{
    // A null pointer would insert NULL.
    Check(sqlite3_bind_text64(statement, ++filled, text.empty() ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8));
    return *this;
}

RowInserter& RowInserter::Integer(std::int64_t number)
{
    Check(sqlite3_bind_int64(statement, ++filled, number));
    return *this;
}

RowInserter& RowInserter::Real(double number)
{
    Check(sqlite3_bind_double(statement, ++filled, number));
    return *this;
}

RowInserter& RowInserter::Null()
{
    Check(sqlite3_bind_null(statement, ++filled));
    return *this;
}

void RowInserter::Insert()
{
    Check(sqlite3_step(statement));
    Check(sqlite3_reset(statement));
    filled = 0;
}

}  // namespace zelt::ctl
