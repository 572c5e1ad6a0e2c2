#pragma once

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace VX
{

/// One prepared statement. What goes wrong while it is prepared or bound is reported by its first step, so that a
/// statement is written in one expression. Columns are counted from 0. Its database must outlive it.
/// @threads one at a time, together with its database
class SqliteStatement
{
public:
    /// Binds integers and texts to the parameters ?1, ?2, … in their order.
    template <typename... Values>
    SqliteStatement& bind(const Values&... values)
    {
        int index = 0;
        (bindAt_(++index, values), ...);
        return *this;
    }

    /// @return whether there is a (further) row; or what `SqliteDatabase` says of errors
    [[nodiscard]] tl::expected<bool, std::string> step();

    /// Steps to the end, for a statement whose rows are of no interest.
    [[nodiscard]] tl::expected<void, std::string> run();

    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] std::string text(int column) const; ///< empty for NULL

private:
    friend class SqliteDatabase;

    struct Finalize
    {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };

    SqliteStatement(sqlite3_stmt* statement, std::string error);
    void bindAt_(int index, std::int64_t value);
    void bindAt_(int index, std::string_view value);
    void noteBinding_(int code);

    std::unique_ptr<sqlite3_stmt, Finalize> statement_;
    std::string error_; ///< of preparing or binding
};

/// What a committed transaction survives. The file stays whole in either case.
enum class SqliteDurability
{
    ProcessCrash, ///< a power failure may lose those of the last moments
    PowerFailure  ///< each waits for the disk
};

/// One connection to an SQLite file in WAL mode, shared with the connections of other processes.
/// Errors are `diskFullText()`; `The database is busy: try again.`; `The database NAME is damaged: move it away and
/// start the service again.`; and `The database NAME cannot be used: REASON.`
/// @threads one at a time
class SqliteDatabase
{
public:
    /// Opens `file` and creates it where it is missing (mode 0600).
    [[nodiscard]] static tl::expected<SqliteDatabase, std::string>
    open(const std::filesystem::path& file, SqliteDurability durability = SqliteDurability::ProcessCrash);

    [[nodiscard]] SqliteStatement prepare(std::string_view sql);

    /// Runs one or several statements that have no parameters.
    [[nodiscard]] tl::expected<void, std::string> execute(const char* sql);

    /// How many rows the last INSERT, UPDATE or DELETE touched.
    [[nodiscard]] std::int64_t changes() const;

private:
    struct Close
    {
        void operator()(sqlite3* database) const noexcept;
    };

    explicit SqliteDatabase(sqlite3* database);
    [[nodiscard]] tl::expected<void, std::string> useWal_(SqliteDurability durability);

    std::unique_ptr<sqlite3, Close> database_;
};

/// A transaction that holds the write lock from its start, so that what it reads stays true until its end.
/// Without `commit` it is rolled back. Statements in it must be destroyed before `commit`.
class SqliteTransaction
{
public:
    [[nodiscard]] static tl::expected<SqliteTransaction, std::string> begin(SqliteDatabase& database);

    SqliteTransaction(SqliteTransaction&& other) noexcept;
    SqliteTransaction& operator=(SqliteTransaction&&) = delete;
    ~SqliteTransaction();

    [[nodiscard]] tl::expected<void, std::string> commit();

private:
    explicit SqliteTransaction(SqliteDatabase& database);

    SqliteDatabase* database_; ///< null once over
};

} // namespace VX
