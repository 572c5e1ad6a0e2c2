#include "SqliteDatabase.h"

#include "DiskFull.h"

#include <VXMesh/StringConvert.h>

#include <fmt/format.h>

#include <sqlite3.h>

#include <chrono>
#include <thread>
#include <utility>

namespace VX
{

namespace
{

constexpr int busyTimeoutMs = 5000;

/// @param name  of the file
std::string errorText(sqlite3* database, const std::string& name)
{
    const int code = sqlite3_errcode(database);
    const std::error_code system(sqlite3_system_errno(database), std::generic_category());
    if (code == SQLITE_FULL || (code == SQLITE_IOERR && isDiskFull(system)))
        return diskFullText();
    if (code == SQLITE_BUSY)
        return "The database is busy: try again.";
    if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB)
        return fmt::format("The database \"{}\" is damaged: move it away and start the service again.", name);
    return fmt::format("The database \"{}\" cannot be used: {}.", name, sqlite3_errmsg(database));
}

std::string errorText(sqlite3* database)
{
    const char* file = sqlite3_db_filename(database, "main");
    return errorText(database, file ? utf8string(pathFromUtf8(file).filename()) : std::string());
}

} // namespace

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept
{
    sqlite3_finalize(statement);
}

SqliteStatement::SqliteStatement(sqlite3_stmt* statement, std::string error)
    : statement_(statement)
    , error_(std::move(error))
{
}

void SqliteStatement::bindAt_(int index, std::int64_t value)
{
    if (statement_)
        noteBinding_(sqlite3_bind_int64(statement_.get(), index, value));
}

void SqliteStatement::bindAt_(int index, std::string_view value)
{
    if (statement_)
        noteBinding_(
            sqlite3_bind_text64(statement_.get(), index, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void SqliteStatement::noteBinding_(int code)
{
    if (code != SQLITE_OK && error_.empty())
        error_ = errorText(sqlite3_db_handle(statement_.get()));
}

tl::expected<bool, std::string> SqliteStatement::step()
{
    if (!error_.empty())
        return tl::unexpected(error_);
    switch (sqlite3_step(statement_.get()))
    {
    case SQLITE_ROW:
        return true;
    case SQLITE_DONE:
        return false;
    default:
        return tl::unexpected(errorText(sqlite3_db_handle(statement_.get())));
    }
}

tl::expected<void, std::string> SqliteStatement::run()
{
    for (;;)
    {
        const auto row = step();
        if (!row)
            return tl::unexpected(row.error());
        if (!*row)
            return {};
    }
}

std::int64_t SqliteStatement::integer(int column) const
{
    return sqlite3_column_int64(statement_.get(), column);
}

std::string SqliteStatement::text(int column) const
{
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
    const int size = sqlite3_column_bytes(statement_.get(), column);
    return bytes ? std::string(bytes, static_cast<std::size_t>(size)) : std::string();
}

void SqliteDatabase::Close::operator()(sqlite3* database) const noexcept
{
    sqlite3_close(database);
}

SqliteDatabase::SqliteDatabase(sqlite3* database)
    : database_(database)
{
}

tl::expected<SqliteDatabase, std::string> SqliteDatabase::open(const std::filesystem::path& file,
                                                               SqliteDurability durability)
{
    sqlite3* handle = nullptr;
    // Callers take turns by themselves, so the library's own locking is left out.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX;
    const int code = sqlite3_open_v2(utf8string(file).c_str(), &handle, flags, nullptr);
    SqliteDatabase database(handle);
    if (code != SQLITE_OK)
        return tl::unexpected(handle ? errorText(handle, utf8string(file.filename()))
                                     : std::string("Not enough memory for the database."));

    // The log files beside the database take their mode from it. A file system without modes is not an error.
    std::error_code ignored;
    std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                 ignored);
    sqlite3_busy_timeout(handle, busyTimeoutMs);
    if (auto used = database.useWal_(durability); !used)
        return tl::unexpected(used.error());
    return database;
}

tl::expected<void, std::string> SqliteDatabase::useWal_(SqliteDurability durability)
{
    // Changing the journal mode answers "busy" at once, whatever the time-out, while another process does the same.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(busyTimeoutMs);
    while (sqlite3_exec(database_.get(), "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr) != SQLITE_OK)
    {
        if (sqlite3_errcode(database_.get()) != SQLITE_BUSY || std::chrono::steady_clock::now() > deadline)
            return tl::unexpected(errorText(database_.get()));
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return execute(durability == SqliteDurability::PowerFailure ? "PRAGMA synchronous=FULL"
                                                                : "PRAGMA synchronous=NORMAL");
}

SqliteStatement SqliteDatabase::prepare(std::string_view sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_.get(), sql.data(), static_cast<int>(sql.size()), &statement, nullptr) != SQLITE_OK)
        return {nullptr, errorText(database_.get())};
    return {statement, {}};
}

tl::expected<void, std::string> SqliteDatabase::execute(const char* sql)
{
    if (sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        return tl::unexpected(errorText(database_.get()));
    return {};
}

std::int64_t SqliteDatabase::changes() const
{
    return sqlite3_changes64(database_.get());
}

tl::expected<SqliteTransaction, std::string> SqliteTransaction::begin(SqliteDatabase& database)
{
    if (auto begun = database.execute("BEGIN IMMEDIATE"); !begun)
        return tl::unexpected(begun.error());
    return SqliteTransaction(database);
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database)
    : database_(&database)
{
}

SqliteTransaction::SqliteTransaction(SqliteTransaction&& other) noexcept
    : database_(std::exchange(other.database_, nullptr))
{
}

SqliteTransaction::~SqliteTransaction()
{
    // A failed statement may have ended the transaction already; then this one fails, which is fine.
    if (database_) [[maybe_unused]]
        const auto undone = database_->execute("ROLLBACK");
}

tl::expected<void, std::string> SqliteTransaction::commit()
{
    auto done = database_->execute("COMMIT");
    if (done)
        database_ = nullptr;
    return done;
}

} // namespace VX
