#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/SqliteDatabase.h>

#include <filesystem>

namespace VX::Test
{

namespace
{

class SqliteDatabaseTest : public ::testing::Test
{
public:
    TempDir folder;
    const std::filesystem::path file = folder.path() / "test.sqlite";

    SqliteDatabase open()
    {
        auto database = SqliteDatabase::open(file);
        EXPECT_TRUE(database) << database.error();
        return std::move(*database);
    }
};

TEST_F(SqliteDatabaseTest, givesBackWhatWasBound)
{
    auto database = open();
    ASSERT_TRUE(database.execute("CREATE TABLE t(a, b)"));
    const std::string text("a\0b \xC3\xA4", 6);
    ASSERT_TRUE(database.prepare("INSERT INTO t VALUES (?1, ?2)").bind(std::int64_t{1} << 60, text).run());

    auto statement = database.prepare("SELECT a, b, NULL FROM t");
    ASSERT_EQ(statement.step(), true);
    EXPECT_EQ(statement.integer(0), std::int64_t{1} << 60);
    EXPECT_EQ(statement.text(1), text);
    EXPECT_EQ(statement.text(2), "");
    EXPECT_EQ(statement.step(), false);
}

TEST_F(SqliteDatabaseTest, reportsAnErrorOfTheStatementAtItsFirstStep)
{
    auto database = open();
    const auto done = database.prepare("SELECT * FROM absent").bind(1).run();
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error(), "The database \"test.sqlite\" cannot be used: no such table: absent.");
}

TEST_F(SqliteDatabaseTest, reportsAValueWithoutAParameter)
{
    auto database = open();
    EXPECT_FALSE(database.prepare("SELECT ?1").bind(1, 2).step());
}

TEST_F(SqliteDatabaseTest, saysWhatToDoWithADamagedFile)
{
    folder.write("test.sqlite", std::string(8192, 'x'));
    const auto database = SqliteDatabase::open(file);
    ASSERT_FALSE(database);
    EXPECT_EQ(database.error(), "The database \"test.sqlite\" is damaged: move it away and start the service again.");
}

TEST_F(SqliteDatabaseTest, saysWhyAFileCannotBeOpened)
{
    const auto database = SqliteDatabase::open(folder.path() / "missing" / "test.sqlite");
    ASSERT_FALSE(database);
    EXPECT_EQ(database.error(), "The database \"test.sqlite\" cannot be used: unable to open database file.");
}

TEST_F(SqliteDatabaseTest, keepsItsFilesPrivate)
{
    auto database = open();
    ASSERT_TRUE(database.execute("CREATE TABLE t(a)"));
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_EQ(entry.status().permissions(),
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
            << entry.path();
}

TEST_F(SqliteDatabaseTest, undoesATransactionThatIsNotCommitted)
{
    auto database = open();
    ASSERT_TRUE(database.execute("CREATE TABLE t(a)"));
    {
        auto transaction = SqliteTransaction::begin(database);
        ASSERT_TRUE(transaction);
        ASSERT_TRUE(database.execute("INSERT INTO t VALUES (1)"));
    }
    EXPECT_EQ(database.prepare("SELECT * FROM t").step(), false);
}

TEST_F(SqliteDatabaseTest, keepsATransactionThatIsCommitted)
{
    auto database = open();
    ASSERT_TRUE(database.execute("CREATE TABLE t(a)"));
    auto transaction = SqliteTransaction::begin(database);
    ASSERT_TRUE(transaction);
    ASSERT_TRUE(database.execute("INSERT INTO t VALUES (1)"));
    ASSERT_TRUE(transaction->commit());
    auto other = open();
    EXPECT_EQ(other.prepare("SELECT * FROM t").step(), true);
}

TEST_F(SqliteDatabaseTest, countsTheRowsThatAChangeTouched)
{
    auto database = open();
    ASSERT_TRUE(database.execute("CREATE TABLE t(a); INSERT INTO t VALUES (1), (2)"));
    ASSERT_TRUE(database.prepare("UPDATE t SET a = 3").run());
    EXPECT_EQ(database.changes(), 2);
}

} // namespace

} // namespace VX::Test
