#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/BlobStore.h>

#include <fstream>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class BlobStoreTest : public ::testing::Test
{
public:
    void put(const std::string& key, std::string_view content)
    {
        const auto file = store.incomingFile();
        std::ofstream(file) << content;
        const auto done = store.put(file, key);
        ASSERT_TRUE(done) << done.error();
    }

    void age(const std::filesystem::path& file, std::chrono::hours hours)
    {
        std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now() - hours);
    }

    TempDir folder;
    BlobStore store = BlobStore::open(folder.path() / "blobs").value();
};

TEST_F(BlobStoreTest, keepsABlobUnderItsKey)
{
    put("uploads/a", "content");
    EXPECT_EQ(store.size("uploads/a"), 7U);
    EXPECT_EQ(readFile(store.path("uploads/a")), "content");
}

TEST_F(BlobStoreTest, replacesABlobByANewerOne)
{
    put("uploads/a", "old");
    put("uploads/a", "newer");
    EXPECT_EQ(readFile(store.path("uploads/a")), "newer");
}

TEST_F(BlobStoreTest, hasNoSizeForWhatIsNotThere)
{
    EXPECT_EQ(store.size("uploads/a"), std::nullopt);
    put("uploads/a", "x");
    store.remove("uploads/a");
    EXPECT_EQ(store.size("uploads/a"), std::nullopt);
}

TEST_F(BlobStoreTest, namesADifferentFileForEachUpload)
{
    EXPECT_NE(store.incomingFile(), store.incomingFile());
}

TEST_F(BlobStoreTest, saysWhyAFileCannotBeStored)
{
    const auto done = store.put(folder.path() / "missing", "uploads/a");
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error(), "The file cannot be stored: No such file or directory.");
}

TEST_F(BlobStoreTest, acceptsOnlyPlainKeys)
{
    for (const char* key : {"uploads/a", "results/0a-1.b"})
        EXPECT_TRUE(BlobStore::isKey(key)) << key;
    for (const char* key : {"", "a", "/a", "a/", "../a", "a/..", "a/../b", "a/b/c", "A/b", "a/.b", "a\\b/c", "a/b\n",
                            "a/b c", "incoming/a"})
        EXPECT_FALSE(BlobStore::isKey(key)) << key;
    EXPECT_FALSE(BlobStore::isKey(std::string_view("a/b\0", 4)));
}

TEST_F(BlobStoreTest, removesWhatIsTooOldAndNothingElse)
{
    put("uploads/old", "x");
    put("uploads/new", "x");
    put("results/old", "x");
    const auto unfinished = store.incomingFile();
    std::ofstream(unfinished) << "x";
    const auto hidden = unfinished.parent_path() / ".upload-abc";
    std::ofstream(hidden) << "x";
    for (const auto& file : {store.path("uploads/old"), store.path("results/old"), unfinished, hidden})
        age(file, 25h);

    EXPECT_EQ(store.removeOlderThan(std::filesystem::file_time_type::clock::now() - 24h), 4U);
    EXPECT_EQ(store.size("uploads/new"), 1U);
    EXPECT_EQ(store.size("uploads/old"), std::nullopt);
    EXPECT_EQ(store.size("results/old"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(unfinished));
    EXPECT_FALSE(std::filesystem::exists(hidden));
}

TEST_F(BlobStoreTest, keepsItsFoldersPrivate)
{
    for (const auto& entry : std::filesystem::directory_iterator(folder.path() / "blobs"))
        EXPECT_EQ(entry.status().permissions(), std::filesystem::perms::owner_all) << entry.path();
}

TEST_F(BlobStoreTest, saysWhyItsFolderCannotBeCreated)
{
    folder.write("file", "");
    const auto opened = BlobStore::open(folder.path() / "file" / "blobs");
    ASSERT_FALSE(opened);
    EXPECT_EQ(opened.error(), "The folder for the stored files cannot be created: Not a directory.");
}

} // namespace

} // namespace VX::Test
