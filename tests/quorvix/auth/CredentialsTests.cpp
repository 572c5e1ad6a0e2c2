#include "tests/support/LogCapture.h"
#include "tests/support/TempDir.h"
#include <quorvix/auth/Credentials.h>

#include <VXViewer/Viewer.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace VX
{

namespace
{

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* openToOthers =
    "The credentials file can be read by other users of this computer; \"chmod 600\" keeps them out";

class CredentialsTest : public ::testing::Test
{
protected:
    void TearDown() override { getViewerInstance().reset(); }

    /// Writes a file that only its owner may read.
    [[nodiscard]] std::string write_(const std::string& name, const std::string& content) const
    {
        const auto path = folder_.write(name, content);
        std::filesystem::permissions(path, std::filesystem::perms(0600));
        return path.string();
    }

    static std::optional<Credentials> readWith_(std::vector<std::string> arguments)
    {
        getViewerInstance().setCommandLineArguments(std::move(arguments));
        return readCredentials();
    }

    [[nodiscard]] std::optional<Credentials> readContent_(const std::string& content) const
    {
        return readWith_({"-creds", write_("credentials.json", content)});
    }

    [[nodiscard]] std::vector<std::string> warnings_() const { return log_.texts(spdlog::level::warn); }

    const VX::Test::TempDir folder_;
    const VX::Test::LogCapture log_;
};

TEST_F(CredentialsTest, areNoneWithoutTheArgument)
{
    EXPECT_FALSE(readWith_({}));
    EXPECT_FALSE(readWith_({"part.stl", "creds", "-Creds", "-creds2"}));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(CredentialsTest, areNoneWithoutAFileBehindTheArgument)
{
    EXPECT_FALSE(readWith_({"part.stl", "-creds"}));
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(CredentialsTest, areReadFromTheFile)
{
    const auto credentials = readContent_(R"({"email": "ann@example.com", "password": "pass word", "more": 1})");
    ASSERT_TRUE(credentials);
    EXPECT_EQ(credentials->email, "ann@example.com");
    EXPECT_EQ(credentials->password, "pass word");
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(CredentialsTest, areReadFromAFileWithANameInUtf8)
{
    const std::string file = write_("Schl\xC3\xBCssel.json", R"({"email": "ann@example.com", "password": "p"})");
    EXPECT_TRUE(readWith_({"-creds", file}));
}

TEST_F(CredentialsTest, areThoseOfTheLastFileNamed)
{
    const std::string first = write_("1.json", R"({"email": "first@example.com", "password": "p"})");
    const std::string second = write_("2.json", R"({"email": "second@example.com", "password": "p"})");
    const auto credentials = readWith_({"-creds", first, "part.stl", "-creds", second});
    ASSERT_TRUE(credentials);
    EXPECT_EQ(credentials->email, "second@example.com");
}

TEST_F(CredentialsTest, areNoneWhereTheFileIsMissing)
{
    EXPECT_FALSE(readWith_({"-creds", (folder_.path() / "missing.json").string()}));
    EXPECT_THAT(warnings_(), ElementsAre("Cannot read credentials file: Cannot open \"missing.json\": no such file or "
                                         "directory."));
}

TEST_F(CredentialsTest, areNoneWhereTheFileIsNotJson)
{
    EXPECT_FALSE(readContent_("email=ann@example.com"));
    EXPECT_THAT(warnings_(), ElementsAre(HasSubstr("Cannot read credentials file: Cannot read \"credentials.json\"")));
}

TEST_F(CredentialsTest, areNoneWhereAMemberIsMissingOrEmptyOrNoText)
{
    const std::vector<const char*> contents = {R"({"email": "ann@example.com"})",
                                               R"({"password": "p"})",
                                               R"({"email": "", "password": "p"})",
                                               R"({"email": "ann@example.com", "password": ""})",
                                               R"({"email": "ann@example.com", "password": 12345678})",
                                               R"({"email": ["ann@example.com"], "password": "p"})",
                                               "[]",
                                               "null",
                                               "\"ann@example.com\""};
    for (const char* const content : contents)
        EXPECT_FALSE(readContent_(content)) << content;
    EXPECT_EQ(warnings_(), std::vector<std::string>(contents.size(), "Credentials file is invalid"));
}

TEST_F(CredentialsTest, areNoneWhereTheAddressIsNone)
{
    EXPECT_FALSE(readContent_(R"({"email": "ann.example.com", "password": "p"})"));
    EXPECT_THAT(warnings_(), ElementsAre("Credentials file: email is invalid"));
}

TEST_F(CredentialsTest, areUsedWithAWarningWhereOthersMayReadThem)
{
    const std::string file = write_("c.json", R"({"email": "ann@example.com", "password": "p"})");
    for (const unsigned mode : {0644U, 0640U, 0604U})
    {
        std::filesystem::permissions(file, std::filesystem::perms(mode));
        EXPECT_TRUE(readWith_({"-creds", file})) << mode;
    }
    EXPECT_THAT(warnings_(), ElementsAre(openToOthers, openToOthers, openToOthers));
}

TEST_F(CredentialsTest, areNotLogged)
{
    static_cast<void>(readContent_(R"({"email": "ann@example.com", "password": "Wert"})"));
    static_cast<void>(readContent_(R"({"email": "ann", "password": "Wert"})"));
    static_cast<void>(readContent_(R"({"email": "ann@example.com", "password": Wert})"));
    static_cast<void>(readContent_(R"({"email": "ann@example.com", "password": 4711e})"));
    EXPECT_FALSE(log_.contains("Wert"));
    EXPECT_FALSE(log_.contains("4711"));
    EXPECT_FALSE(log_.contains("ann@"));
}

TEST(EmailRule, acceptsAddresses)
{
    for (const char* const text :
         {"a@b.c", "ann+x@ex.co", "a@b.c_d", "a.b@c.d.e", "\xC3\xBC@\xC3\xA4.de", "a@b..c", "a\"b@c.d", "a@-.9"})
        EXPECT_TRUE(isValidEmail(text)) << text;
}

TEST(EmailRule, refusesWhatIsNone)
{
    for (const char* const text :
         {"", "@", "a", "a@b", "@b.c", "a@.c", "a@b.", "a.b@c", "a b@c.d", "a@b c.d", "a@b.c d", "a@b.c-d", "a@b.c ",
          " a@b.c", "a@b@c.d", "a\\b@c.d", "a/b@c.d", "a@b/c.d", "a@b.\xC3\xA4"})
        EXPECT_FALSE(isValidEmail(text)) << text;
}

TEST(EmailRule, takesTextsOfAnyLength)
{
    const std::string longText(1'000'000, 'a');
    EXPECT_FALSE(isValidEmail(longText));
    EXPECT_TRUE(isValidEmail(longText + "@b." + longText));
}

} // namespace

} // namespace VX
