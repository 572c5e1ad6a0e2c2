#include <gtest/gtest.h>

#include <backend/CommandArguments.h>

namespace VX::Test
{

namespace
{

TEST(CommandArguments, readsEveryOption)
{
    const auto arguments = CommandArguments::parse({"serve", "--port", "8080", "--data", "/d", "--config", "/c.json",
                                                    "--listen-fd", "5", "--exit-with-parent", "42"});
    ASSERT_TRUE(arguments) << arguments.error();
    EXPECT_EQ(arguments->port, 8080);
    EXPECT_EQ(arguments->dataFolder, "/d");
    EXPECT_EQ(arguments->configFile, "/c.json");
    EXPECT_EQ(arguments->listenFd, 5);
    EXPECT_EQ(arguments->parent, 42);
    EXPECT_EQ(arguments->command, CommandArguments::Command::Serve);
}

TEST(CommandArguments, needsNoMoreThanFolderAndPort)
{
    const auto arguments = CommandArguments::parse({"serve", "--data", "/d", "--port", "0"});
    ASSERT_TRUE(arguments) << arguments.error();
    EXPECT_EQ(arguments->port, 0);
    EXPECT_EQ(arguments->listenFd, -1);
    EXPECT_EQ(arguments->parent, 0);
    EXPECT_TRUE(CommandArguments::parse({"serve", "--data", "/d", "--listen-fd", "3"}));
}

TEST(CommandArguments, helps)
{
    const auto arguments = CommandArguments::parse({"--help"});
    ASSERT_TRUE(arguments);
    EXPECT_EQ(arguments->command, CommandArguments::Command::Help);
    for (const char* option : {"--data", "--port", "--listen-fd", "--config", "--exit-with-parent", "--password-stdin",
                               "user add", "user list", "user remove", "user reset", "stats", "logs", "--user",
                               "--level", "--since", "--until", "--text", "--limit", "--json"})
        EXPECT_NE(commandHelp().find(option), std::string::npos) << option;
}

TEST(CommandArguments, readsWhatToDoWithUsers)
{
    const std::pair<std::vector<std::string>, CommandArguments::Command> cases[] = {
        {{"user", "add", "a@b.c", "--password-stdin", "--data", "/d"}, CommandArguments::Command::UserAdd},
        {{"user", "reset", "--data", "/d", "--password-stdin", "a@b.c"}, CommandArguments::Command::UserReset},
        {{"user", "remove", "a@b.c", "--data", "/d"}, CommandArguments::Command::UserRemove},
    };
    for (const auto& [words, command] : cases)
    {
        const auto arguments = CommandArguments::parse(words);
        ASSERT_TRUE(arguments) << arguments.error();
        EXPECT_EQ(arguments->command, command);
        EXPECT_EQ(arguments->address, "a@b.c");
        EXPECT_EQ(arguments->dataFolder, "/d");
    }
    const auto list = CommandArguments::parse({"user", "list", "--data", "/d"});
    ASSERT_TRUE(list) << list.error();
    EXPECT_EQ(list->command, CommandArguments::Command::UserList);
}

TEST(CommandArguments, readsStats)
{
    const auto arguments = CommandArguments::parse({"stats", "--data", "/d"});
    ASSERT_TRUE(arguments) << arguments.error();
    EXPECT_EQ(arguments->command, CommandArguments::Command::Stats);
}

TEST(CommandArguments, readsWhichLogLinesAreWanted)
{
    const auto arguments = CommandArguments::parse({"logs", "--data", "/d", "--user", "a@b.c", "--level", "warning",
                                                    "--since", "2025-01-31", "--until", "2025-01-31T09:15:02", "--text",
                                                    "t", "--limit", "7", "--json"});
    ASSERT_TRUE(arguments) << arguments.error();
    EXPECT_EQ(arguments->command, CommandArguments::Command::Logs);
    EXPECT_EQ(arguments->lines.account, "a@b.c");
    EXPECT_EQ(arguments->lines.level, "warning");
    EXPECT_EQ(arguments->lines.since, "2025-01-31T00:00:00.0000000Z");
    EXPECT_EQ(arguments->lines.until, "2025-01-31T09:15:02.0000000Z");
    EXPECT_EQ(arguments->lines.text, "t");
    EXPECT_EQ(arguments->lines.limit, 7);
    EXPECT_TRUE(arguments->asJson);
}

TEST(CommandArguments, wantsAThousandLogLinesAsText)
{
    const auto arguments = CommandArguments::parse({"logs", "--data", "/d"});
    ASSERT_TRUE(arguments) << arguments.error();
    EXPECT_EQ(arguments->lines.limit, 1000);
    EXPECT_FALSE(arguments->asJson);
}

TEST(CommandArguments, saysWhatIsWrong)
{
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{}, "Say what to do: \"serve\" starts the service."},
        {{"start"}, "\"start\" is not known."},
        {{"serve", "--datas", "/d"}, "\"--datas\" is not known."},
        {{"serve", "--data"}, "\"--data\" needs a value."},
        {{"stats", "--data", "/d", "--json"}, "\"--json\" is not known."},
        {{"logs", "--level", "warn"}, "\"--level\" needs a level: trace, debug, info, warning, error, critical."},
        {{"logs", "--since", "now"}, "\"--since\" needs a time in UTC: 2025-01-31 or 2025-01-31T09:15:02."},
        {{"logs", "--until", ""}, "\"--until\" needs a time in UTC: 2025-01-31 or 2025-01-31T09:15:02."},
        {{"logs", "--limit", "-1"}, "\"--limit\" needs a whole number from 0 to 2147483647."},
        {{"logs"}, "\"--data\" is missing."},
        {{"serve", "--port", "1"}, "\"--data\" is missing."},
        {{"serve", "--data", "/d"}, "\"--port\" or \"--listen-fd\" is missing."},
        {{"serve", "--port", "65536"}, "\"--port\" needs a whole number from 0 to 65535."},
        {{"serve", "--port", "-1"}, "\"--port\" needs a whole number from 0 to 65535."},
        {{"serve", "--port", "80x"}, "\"--port\" needs a whole number from 0 to 65535."},
        {{"user"}, "Say what to do with users: \"add\", \"list\", \"remove\" or \"reset\"."},
        {{"user", "rename"}, "Say what to do with users: \"add\", \"list\", \"remove\" or \"reset\"."},
        {{"user", "add", "--password-stdin", "--data", "/d"}, "The e-mail address is missing."},
        {{"user", "add", "a@b.c", "--data", "/d"}, "\"--password-stdin\" is missing."},
        {{"user", "add", "a@b.c", "d@e.f"}, "\"d@e.f\" is not known."},
        {{"user", "add", "a@b.c", "--password", "x"}, "\"--password\" is not known."},
        {{"user", "list", "a@b.c"}, "\"a@b.c\" is not known."},
        {{"user", "list"}, "\"--data\" is missing."},
        {{"stats", "--port", "1"}, "\"--port\" is not known."},
        {{"serve", "--listen-fd", ""}, "\"--listen-fd\" needs a whole number from 0 to 2147483647."},
    };
    for (const auto& [arguments, error] : cases)
    {
        const auto parsed = CommandArguments::parse(arguments);
        ASSERT_FALSE(parsed) << error;
        EXPECT_EQ(parsed.error(), error);
    }
}

} // namespace

} // namespace VX::Test
