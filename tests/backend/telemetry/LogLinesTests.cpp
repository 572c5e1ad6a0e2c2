#include "TelemetryApiFixture.h"
#include "tests/support/LogCapture.h"

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

class LogLinesTest : public TelemetryApiFixture
{
public:
    [[nodiscard]] static Json::Value line(const std::string& message,
                                          const std::string& time = "2025-01-31T09:15:02.1234567Z")
    {
        Json::Value line;
        line["timestamp"] = time;
        line["logLevel"] = "info";
        line["serviceName"] = "Quorvix";
        line["serviceVersion"] = "1.0.0.0";
        line["platform"] = "Linux";
        line["environment"] = "production";
        line["message"] = message;
        return line;
    }

    [[nodiscard]] static Json::Value lines(const std::vector<std::string>& messages)
    {
        Json::Value body;
        body["items"] = Json::Value(Json::arrayValue);
        for (const std::string& message : messages)
            body["items"].append(line(message));
        return body;
    }

    [[nodiscard]] ClientAnswer sendText(const std::string& body, const std::string& token = "good") const
    {
        return client.send("POST", "/v1/logs", body,
                           "Content-Type: application/json\r\nAuthorization: Bearer " + token + "\r\n");
    }

    [[nodiscard]] ClientAnswer send(const Json::Value& body, const std::string& token = "good") const
    {
        return sendText(body.toStyledString(), token);
    }

    [[nodiscard]] std::vector<std::string> messages() const { return stored("SELECT message FROM lines ORDER BY id"); }
};

TEST_F(LogLinesTest, areStoredWithTheirSender)
{
    const auto answer = send(lines({"first", "second"}));
    EXPECT_EQ(answer.status, 201);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(messages(), (std::vector<std::string>{"first", "second"}));
    EXPECT_EQ(stored("SELECT time || level || service || version || platform || environment FROM lines LIMIT 1"),
              (std::vector<std::string>{"2025-01-31T09:15:02.1234567ZinfoQuorvix1.0.0.0Linuxproduction"}));
    EXPECT_EQ(stored("SELECT DISTINCT account FROM lines"), (std::vector<std::string>{"ann@example.com"}));
}

TEST_F(LogLinesTest, mayBeNone)
{
    EXPECT_EQ(send(lines({})).status, 201);
}

TEST_F(LogLinesTest, areTakenOfSignedInUsersOnly)
{
    for (const char* const token : {"bad", "", "Good", "good more"})
    {
        const auto answer = send(lines({"line"}), token);
        EXPECT_EQ(answer.status, 401) << token;
        EXPECT_EQ(answer.errorMessage(), "Sign in to send log lines.");
    }
    EXPECT_EQ(client.post("/v1/logs", lines({"line"})).status, 401);
    EXPECT_TRUE(messages().empty());
}

TEST_F(LogLinesTest, areNotReadWithoutAToken)
{
    EXPECT_EQ(sendText("nonsense", "bad").status, 401);
}

TEST_F(LogLinesTest, areStoredOnceWhenTheyAreSentAgain)
{
    ASSERT_EQ(send(lines({"first", "second"})).status, 201);
    EXPECT_EQ(send(lines({"first", "second", "third"})).status, 201);
    EXPECT_EQ(messages(), (std::vector<std::string>{"first", "second", "third"}));
}

TEST_F(LogLinesTest, areNotTheSameWhereAnythingDiffers)
{
    const Json::Value body = lines({"line"});
    ASSERT_EQ(send(body).status, 201);
    EXPECT_EQ(send(body, "other").status, 201);
    for (const char* const member : {"logLevel", "serviceName", "serviceVersion", "platform", "environment", "message"})
    {
        Json::Value changed = body;
        changed["items"][0][member] = "another";
        EXPECT_EQ(send(changed).status, 201);
    }
    Json::Value later = body;
    later["items"][0]["timestamp"] = "2025-01-31T09:15:02.1234568Z";
    EXPECT_EQ(send(later).status, 201);
    EXPECT_EQ(messages().size(), 9U);
}

TEST_F(LogLinesTest, areStoredAllOrNone)
{
    Json::Value body = lines({"first", "second"});
    body["items"][1]["message"] = 2;
    EXPECT_EQ(send(body).status, 400);
    EXPECT_TRUE(messages().empty());
}

TEST_F(LogLinesTest, sayWhatIsWrongWithThem)
{
    EXPECT_EQ(sendText("nonsense").errorMessage(), "The request must be a JSON object.");
    EXPECT_EQ(sendText("[]").errorMessage(), "The request must be a JSON object.");
    EXPECT_EQ(sendText("{}").errorMessage(), "\"items\" must be a list.");
    EXPECT_EQ(sendText(R"({"items":{}})").errorMessage(), "\"items\" must be a list.");
    EXPECT_EQ(sendText(R"({"items":[1]})").errorMessage(), "\"items\" must hold objects.");
    for (const char* const member :
         {"timestamp", "logLevel", "serviceName", "serviceVersion", "platform", "environment", "message"})
    {
        Json::Value body = lines({"line"});
        body["items"][0].removeMember(member);
        const auto answer = send(body);
        EXPECT_EQ(answer.status, 400) << member;
        EXPECT_EQ(answer.errorMessage(), std::string("\"") + member + "\" must be a string.");
    }
}

TEST_F(LogLinesTest, needATimeInUtc)
{
    for (const char* const time :
         {"", "now", "2025-01-31T09:15:02+01:00", "2025-02-30T09:15:02Z", "2025-01-31 09:15:02Z"})
    {
        Json::Value body;
        body["items"].append(line("line", time));
        EXPECT_EQ(send(body).errorMessage(), "\"timestamp\" must be a time in UTC: \"2025-01-31T09:15:02.1234567Z\".")
            << time;
    }
}

TEST_F(LogLinesTest, haveLimits)
{
    Json::Value body = lines({"line"});
    body["items"][0]["platform"] = std::string(501, 'x');
    EXPECT_EQ(send(body).errorMessage(), "\"platform\" is too long.");

    body = lines({std::string((8U << 20U) + 1, 'x')});
    EXPECT_EQ(send(body).errorMessage(), "\"items\" must hold lines of at most 8 MiB.");
    EXPECT_TRUE(messages().empty());
}

TEST_F(LogLinesTest, mayBeLong)
{
    const std::string end = "\xC3\xA9\xC3\xA9";
    const std::string fits((64U << 10U) - 1, 'x');
    ASSERT_EQ(send(lines({fits + end})).status, 201);
    EXPECT_EQ(messages(), (std::vector<std::string>{fits}));
}

TEST_F(LogLinesTest, comeInLargeBatches)
{
    std::vector<std::string> many;
    for (int i = 0; i < 10'000; ++i)
        many.push_back("line " + std::to_string(i));
    EXPECT_EQ(send(lines(many)).status, 201);
    EXPECT_EQ(messages(), many);
}

/// More than a megabyte, which goes another way.
std::vector<std::string> manyMessages()
{
    std::vector<std::string> many;
    for (int i = 0; i < 60'000; ++i)
        many.push_back("line " + std::to_string(i));
    return many;
}

TEST_F(LogLinesTest, comeInBatchesOfAnySize)
{
    const auto many = manyMessages();
    const auto answer = send(lines(many));
    EXPECT_EQ(answer.status, 201);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(messages(), many);
    EXPECT_EQ(stored("SELECT DISTINCT account FROM lines"), (std::vector<std::string>{"ann@example.com"}));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "batch"));
}

TEST_F(LogLinesTest, areStoredOnceInALargeBatchToo)
{
    const auto many = manyMessages();
    ASSERT_EQ(send(lines({many.front(), many.back()})).status, 201);
    EXPECT_EQ(send(lines(many)).status, 201);
    EXPECT_EQ(stored("SELECT count(*) FROM lines").front(), std::to_string(many.size()));
}

TEST_F(LogLinesTest, areNotStoredWhereAnyOfALargeBatchIsWrong)
{
    Json::Value body = lines(manyMessages());
    body["items"][59'999]["message"] = 2;
    const auto answer = send(body);
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.errorMessage(), "\"message\" must be a string.");
    EXPECT_TRUE(messages().empty());
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "batch"));
}

TEST_F(LogLinesTest, areNotTakenOfStrangersInALargeBatch)
{
    EXPECT_EQ(send(lines(manyMessages()), "bad").status, 401);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "batch"));
}

TEST_F(LogLinesTest, areForgottenWhenTheyAreOld)
{
    ASSERT_EQ(send(lines({"line"})).status, 201);
    ASSERT_TRUE(store->forgetLinesOlderThan(std::chrono::system_clock::now() - 1h));
    EXPECT_EQ(messages().size(), 1U);
    ASSERT_TRUE(store->forgetLinesOlderThan(std::chrono::system_clock::now() + 1h));
    EXPECT_TRUE(messages().empty());
}

TEST_F(LogLinesTest, leaveNoTraceInTheServicesOwnLog)
{
    const LogCapture log;
    ASSERT_EQ(send(lines({"some line"})).status, 201);
    for (const char* const text : {"ann@", "some line", "good"})
        EXPECT_FALSE(log.contains(text)) << text;
}

TEST(LogStore, takesADatabaseOfTheFirstVersion)
{
    const TempDir folder;
    const auto file = folder.path() / "telemetry.sqlite";
    {
        auto database = SqliteDatabase::open(file).value();
        ASSERT_TRUE(database.execute(R"(
            CREATE TABLE sessions (id INTEGER PRIMARY KEY, email TEXT NOT NULL, started INTEGER NOT NULL,
                                   platform TEXT, version TEXT);
            CREATE TABLE actions (id INTEGER PRIMARY KEY, session INTEGER NOT NULL, name TEXT NOT NULL,
                                  time INTEGER NOT NULL);
            CREATE TABLE lines (id INTEGER PRIMARY KEY, received INTEGER NOT NULL, time TEXT NOT NULL,
                                level TEXT NOT NULL, service TEXT NOT NULL, version TEXT NOT NULL,
                                platform TEXT NOT NULL, environment TEXT NOT NULL, message TEXT NOT NULL);
            CREATE INDEX linesByAge ON lines(received);
            INSERT INTO lines(received, time, level, service, version, platform, environment, message) VALUES
                (1, 't', 'info', 's', 'v', 'p', 'e', 'same'), (1, 't', 'info', 's', 'v', 'p', 'e', 'same');
            PRAGMA user_version = 1;)"));
    }
    for (int start = 0; start < 2; ++start)
    {
        const auto store = LogStore::open(file);
        ASSERT_TRUE(store) << store.error();
        EXPECT_EQ((*store)->findLines({})->size(), 2U);
    }
}

} // namespace

} // namespace VX::Test
