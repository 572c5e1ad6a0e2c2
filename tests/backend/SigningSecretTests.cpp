#include "tests/support/StartThreads.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <backend/SigningSecret.h>

#include <algorithm>
#include <set>
#include <vector>

namespace VX::Test
{

namespace
{

TEST(SigningSecret, staysTheSameOnceItIsMade)
{
    const TempDir folder;
    const auto first = loadOrCreateSecret(folder.path() / "key");
    ASSERT_TRUE(first) << first.error();
    EXPECT_EQ(loadOrCreateSecret(folder.path() / "key"), first);
    EXPECT_FALSE(std::ranges::all_of(*first, [](unsigned char byte) { return byte == 0; }));
}

TEST(SigningSecret, isDifferentInEachFolder)
{
    const TempDir folder;
    EXPECT_NE(loadOrCreateSecret(folder.path() / "a"), loadOrCreateSecret(folder.path() / "b"));
}

TEST(SigningSecret, isReadableForItsOwnerAlone)
{
    const TempDir folder;
    ASSERT_TRUE(loadOrCreateSecret(folder.path() / "key"));
    EXPECT_EQ(std::filesystem::status(folder.path() / "key").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1) << "no temporary file remains";
}

TEST(SigningSecret, isOneForAllThatMakeItAtOnce)
{
    const TempDir folder;
    std::vector<SigningSecret> secrets(8);
    startThreads(std::size(secrets),
                 [&](std::size_t i) { secrets[i] = loadOrCreateSecret(folder.path() / "key").value(); })
        .clear();
    EXPECT_EQ(std::set<SigningSecret>(secrets.begin(), secrets.end()).size(), 1U);
}

TEST(SigningSecret, saysWhatToDoWithADamagedFile)
{
    const TempDir folder;
    const auto secret = loadOrCreateSecret(folder.write("link-key", "short"));
    ASSERT_FALSE(secret);
    EXPECT_EQ(secret.error(),
              "The key for links is damaged: remove the file \"link-key\" and start the service again.");
}

TEST(SigningSecret, saysWhyItCannotBeWritten)
{
    const TempDir folder;
    const auto secret = loadOrCreateSecret(folder.path() / "missing" / "key");
    ASSERT_FALSE(secret);
    EXPECT_EQ(secret.error(), "Cannot write \"key\": no such file or directory.");
}

} // namespace

} // namespace VX::Test
