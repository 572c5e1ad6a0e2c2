#include "TelemetryApiFixture.h"
#include "tests/support/LogCapture.h"

#include <backend/telemetry/StatsTable.h>

namespace VX::Test
{

namespace
{

constexpr std::int64_t day = 1738314902123; // 2025-01-31T09:15:02.123Z

class TelemetryApiTest : public TelemetryApiFixture
{
public:
    [[nodiscard]] ClientAnswer post(const Json::Value& body) const { return client.post("/stats/log", body); }

    [[nodiscard]] std::int64_t createSession() const
    {
        Json::Value body;
        body["type"] = "createSession";
        body["email"] = "ann@example.com";
        return post(body).json()["sessionId"].asInt64();
    }

    [[nodiscard]] static Json::Value actions(std::int64_t session, const std::vector<std::string>& names)
    {
        Json::Value body;
        body["type"] = "logAction";
        body["sessionId"] = Json::Int64{session};
        body["email"] = "ann@example.com";
        body["actionNames"] = Json::Value(Json::arrayValue);
        for (const std::string& name : names)
        {
            Json::Value action;
            action["name"] = name;
            action["ts"] = Json::Int64{day};
            body["actionNames"].append(action);
        }
        return body;
    }

    [[nodiscard]] static Json::Value platform(std::int64_t session, const std::string& version)
    {
        Json::Value body;
        body["type"] = "setPlatform";
        body["sessionId"] = Json::Int64{session};
        body["platform"] = "Some System 1.0";
        body["version"] = version;
        return body;
    }
};

TEST_F(TelemetryApiTest, answersANewSessionWithItsNumber)
{
    Json::Value body;
    body["type"] = "createSession";
    body["email"] = "ann@example.com";
    const auto answer = post(body);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.json().getMemberNames(), (std::vector<std::string>{"sessionId"}));
    EXPECT_TRUE(answer.json()["sessionId"].isInt64());
    EXPECT_GT(answer.json()["sessionId"].asInt64(), 0);
    EXPECT_NE(answer.json()["sessionId"].asInt64(), createSession());
    EXPECT_EQ(stored("SELECT email FROM sessions").front(), "ann@example.com");
}

TEST_F(TelemetryApiTest, storesActionsInTheirOrder)
{
    const auto session = createSession();
    const auto answer = post(actions(session, {"Sign In", "Open", "Close"}));
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "{}");
    EXPECT_EQ(post(actions(session, {"Sign Out"})).status, 200);
    EXPECT_EQ(stored("SELECT name FROM actions ORDER BY id"),
              (std::vector<std::string>{"Sign In", "Open", "Close", "Sign Out"}));
    EXPECT_EQ(stored("SELECT DISTINCT time FROM actions"), (std::vector<std::string>{std::to_string(day)}));
}

TEST_F(TelemetryApiTest, storesThePlatform)
{
    const auto session = createSession();
    EXPECT_EQ(post(platform(session, "QX_1.0.0.0")).body, "{}");
    EXPECT_EQ(stored("SELECT platform || ', ' || version FROM sessions"),
              (std::vector<std::string>{"Some System 1.0, QX_1.0.0.0"}));
}

TEST_F(TelemetryApiTest, doesNotKnowOtherSessions)
{
    EXPECT_EQ(post(actions(1, {"Open"})).status, 404);
    EXPECT_EQ(post(platform(1, "v")).errorMessage(), "There is no such session.");
    EXPECT_TRUE(stored("SELECT name FROM actions").empty());
}

TEST_F(TelemetryApiTest, storesABatchWholeOrNotAtAll)
{
    Json::Value body = actions(createSession(), {"Open", "Close"});
    body["actionNames"][1]["ts"] = "now";
    EXPECT_EQ(post(body).errorMessage(), "\"ts\" must be a whole number.");
    EXPECT_TRUE(stored("SELECT name FROM actions").empty());
}

TEST_F(TelemetryApiTest, takesALargeBatch)
{
    EXPECT_EQ(post(actions(createSession(), std::vector<std::string>(5000, "Open"))).status, 200);
    EXPECT_EQ(stored("SELECT count(*) FROM actions").front(), "5000");
}

TEST_F(TelemetryApiTest, saysWhatIsWrongWithARequest)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "The request must be a JSON object."},
        {"[]", "The request must be a JSON object."},
        {"{}", "\"type\" must be a string."},
        {R"({"type":"other"})", "\"type\" must be \"createSession\", \"logAction\" or \"setPlatform\"."},
        {R"({"type":"createSession"})", "\"email\" must be a string."},
        {R"({"type":"logAction"})", "\"sessionId\" must be a whole number."},
        {R"({"type":"logAction","sessionId":"1"})", "\"sessionId\" must be a whole number."},
        {R"({"type":"logAction","sessionId":1})", "\"actionNames\" must be a list."},
        {R"({"type":"logAction","sessionId":1,"actionNames":["Open"]})", "\"actionNames\" must hold objects."},
        {R"({"type":"setPlatform","sessionId":1,"platform":1})", "\"platform\" must be a string."},
        {R"({"type":"setPlatform","sessionId":1,"platform":"a"})", "\"version\" must be a string."},
    };
    for (const auto& [body, text] : cases)
    {
        const auto answer = client.send("POST", "/stats/log", body);
        EXPECT_EQ(answer.status, 400) << body;
        EXPECT_EQ(answer.errorMessage(), text);
    }
    EXPECT_EQ(post(actions(createSession(), {std::string(501, 'x')})).errorMessage(), "\"name\" is too long.");
}

TEST_F(TelemetryApiTest, countsActionsByDayNameAndVersion)
{
    const auto first = createSession();
    ASSERT_EQ(post(platform(first, "QX_1.0.0.0")).status, 200);
    ASSERT_EQ(post(actions(first, {"Open", "Sign In", "Open"})).status, 200);
    ASSERT_EQ(post(actions(createSession(), {"Open"})).status, 200);
    EXPECT_EQ(statsTable(store->actionCounts().value()), "Day         Action   Version     Count\n"
                                                         "2025-01-31  Open                     1\n"
                                                         "2025-01-31  Open     QX_1.0.0.0      2\n"
                                                         "2025-01-31  Sign In  QX_1.0.0.0      1\n");
}

TEST_F(TelemetryApiTest, logsNothingOfWhatItIsSent)
{
    const LogCapture log;
    const auto session = createSession();
    ASSERT_EQ(post(actions(session, {"Some Action"})).status, 200);
    for (const std::string& text : {std::string("ann@"), std::string("Some Action"), std::to_string(session)})
        EXPECT_FALSE(log.contains(text)) << text;
}

TEST(StatsTable, showsNoControlCharacters)
{
    EXPECT_EQ(statsTable({{.day = "d", .name = "\x1B[2J", .version = "v", .count = 1}}),
              "Day  Action  Version  Count\nd    ?[2J    v            1\n");
}

TEST(StatsTable, hasAHeadingWithoutAnyAction)
{
    EXPECT_EQ(statsTable({}), "Day  Action  Version  Count\n");
}

} // namespace

} // namespace VX::Test
