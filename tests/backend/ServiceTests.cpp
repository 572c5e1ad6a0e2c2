#include "support/BackendTestSupport.h"
#include "tests/support/EnvironmentVariable.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RawSocket.h"
#include "tests/support/TempDir.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <backend/Service.h>

#include <regex>
#include <thread>

namespace VX::Test
{

namespace
{

using namespace std::chrono_literals;

constexpr const char* unknownText = "The conversion service does not know this request any more: open the file again.";
constexpr const char* forbiddenText = "This link is not valid or has expired: open the file again.";

class ServiceTest : public ::testing::Test
{
public:
    ServiceTest()
    {
        config.converter = fakeConverter();
        config.statusHold = 50ms;
    }

    void start()
    {
        auto started = Service::start(config, data, {});
        ASSERT_TRUE(started) << started.error();
        service = std::move(*started);
    }

    [[nodiscard]] Client client() const { return Client(service->port()); }

    /// The result of a request for a link.
    [[nodiscard]] Json::Value context() const
    {
        return client().post("/converter/v2/request", converterBody()).json()["result"];
    }

    [[nodiscard]] std::string uploadLink() const { return context()["url"].asString(); }

    TempDir folder;
    const std::filesystem::path data = folder.path() / "data";
    ServerConfig config;
    std::unique_ptr<Service> service;
};

TEST_F(ServiceTest, convertsAFile)
{
    start();
    EXPECT_EQ(client().run("succeed a part"), "converted a part");
}

TEST_F(ServiceTest, tellsThatItIsAlive)
{
    start();
    const auto answer = client().send("GET", "/healthz");
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, R"({"status":"ok"})");
}

TEST_F(ServiceTest, answersOtherPathsWithAnError)
{
    start();
    const auto answer = client().send("GET", "/nothing");
    EXPECT_EQ(answer.status, 404);
    EXPECT_EQ(answer.errorMessage(), "There is nothing under this address.");
}

TEST_F(ServiceTest, namesEachRequestByAnotherRandomIdentifier)
{
    start();
    const Json::Value first = context();
    EXPECT_TRUE(std::regex_match(first["request_id"].asString(),
                                 std::regex("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}")));
    EXPECT_NE(first["request_id"], context()["request_id"]);
}

TEST_F(ServiceTest, linksToItsOwnPort)
{
    start();
    EXPECT_TRUE(uploadLink().starts_with(fmt::format("http://127.0.0.1:{}/storage/uploads/", service->port())));
}

TEST_F(ServiceTest, linksToItsPublicAddress)
{
    config.publicUrl = "https://service.example/base";
    start();
    EXPECT_TRUE(uploadLink().starts_with("https://service.example/base/storage/uploads/"));
}

TEST_F(ServiceTest, saysWhatIsWrongWithARequest)
{
    start();
    const auto answer = client().post("/converter/v2/request", Json::Value(Json::objectValue));
    EXPECT_EQ(answer.status, 400);
    EXPECT_EQ(answer.errorMessage(), "\"input_format\" is missing in the request.");
    EXPECT_EQ(client().post("/converter/v2/convert", converterBody()).errorMessage(),
              "\"request_id\" is missing in the request.");
    EXPECT_EQ(client().send("GET", "/converter/v2/status").errorMessage(), "\"request_id\" is missing in the request.");
}

TEST_F(ServiceTest, doesNotKnowAStrangersIdentifier)
{
    start();
    EXPECT_EQ(client().convert("no-such-id").errorMessage(), unknownText);
    EXPECT_EQ(client().status("no-such-id").errorMessage(), unknownText);
}

TEST_F(ServiceTest, convertsOnlyWhatWasUploaded)
{
    start();
    const std::string id = context()["request_id"].asString();
    const auto answer = client().convert(id);
    EXPECT_EQ(answer.status, 409);
    EXPECT_EQ(answer.errorMessage(), "The file has not been uploaded yet: open the file again.");
    EXPECT_EQ(client().status(id).json()["result"]["state"], "not_started");
}

TEST_F(ServiceTest, startsAConversionOnceHoweverOftenItIsAskedFor)
{
    const auto log = folder.path() / "log";
    const EnvironmentVariable variable("FAKE_CONVERTER_LOG", log.string());
    start();
    const std::string id = client().upload("succeed once");
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(client().convert(id).body, R"({"result":{}})");
    EXPECT_EQ(client().waitForEnd(id).json()["result"]["state"], "finished");
    EXPECT_EQ(client().convert(id).body, R"({"result":{}})");
    EXPECT_EQ(client().status(id).json()["result"]["state"], "finished");
    EXPECT_EQ(readLines(log).size(), 1U);
}

TEST_F(ServiceTest, tellsOfAConversionUnderWay)
{
    start();
    const std::string id = client().upload("wait /never");
    EXPECT_EQ(client().convert(id).status, 200);
    EXPECT_EQ(client().status(id).body, R"({"result":{"state":"in_progress"}})");
}

TEST_F(ServiceTest, tellsOfAConversionThatFailed)
{
    start();
    EXPECT_EQ(client().run("fail The file holds no shape."), "error: The file holds no shape.");
}

TEST_F(ServiceTest, holdsTheStatusUntilTheConversionEnds)
{
    config.statusHold = 1min;
    start();
    const auto go = folder.path() / "go";
    const std::string id = client().upload("wait " + go.string());
    EXPECT_EQ(client().convert(id).status, 200);
    auto socket = RawSocket::connect(service->port());
    socket.send("GET /converter/v2/status?request_id=" + id + " HTTP/1.1\r\nHost: a\r\n\r\n");
    folder.write("go", "");
    EXPECT_NE(socket.receiveAnswer().find("\"finished\""), std::string::npos);
}

TEST_F(ServiceTest, servesOthersWhileManyWait)
{
    config.statusHold = 1min;
    start();
    const std::string id = context()["request_id"].asString();
    std::vector<RawSocket> waiting;
    for (int i = 0; i < 50; ++i)
    {
        waiting.push_back(RawSocket::connect(service->port()));
        waiting.back().send("GET /converter/v2/status?request_id=" + id + " HTTP/1.1\r\nHost: a\r\n\r\n");
    }
    EXPECT_EQ(client().run("succeed x"), "converted x");
}

TEST_F(ServiceTest, asksForATokenWhereOneIsRequired)
{
    config.requireToken = true;
    start();
    Json::Value body = converterBody();
    EXPECT_EQ(client().post("/converter/v2/request", body).errorMessage(), "Sign in to convert files.");
    body["access_token"] = "";
    EXPECT_EQ(client().post("/converter/v2/request", body).errorMessage(), "Sign in to convert files.");
    body["access_token"] = "token";
    EXPECT_EQ(client().post("/converter/v2/request", body).errorMessage(), "Sign in to convert files.");
    EXPECT_EQ(client().convert("id").errorMessage(), "Sign in to convert files.");
}

TEST_F(ServiceTest, tellsTheVersionOfTheApplication)
{
    start();
    const auto answer = client().send("GET", "/version/latesttag");
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(std::regex_match(answer.body, std::regex("[0-9]+(\\.[0-9]+){3}"))) << answer.body;
    EXPECT_NE(answer.head.find("Content-Type: text/plain\r\n"), std::string::npos) << answer.head;
}

TEST_F(ServiceTest, acceptsATokenWhereNoneIsRequired)
{
    start();
    Json::Value body = converterBody();
    body["access_token"] = "token";
    EXPECT_EQ(client().post("/converter/v2/request", body).status, 200);
}

TEST_F(ServiceTest, keepsTheLastOfTwoUploads)
{
    start();
    const Json::Value request = context();
    for (const char* input : {"succeed first", "succeed second"})
        EXPECT_EQ(client().send("PUT", request["url"].asString(), zipOf({{"input", input}})).status, 200);
    const std::string id = request["request_id"].asString();
    EXPECT_EQ(client().convert(id).status, 200);
    const auto end = client().waitForEnd(id);
    EXPECT_EQ(client().send("GET", end.json()["result"]["url"].asString()).body, "converted second");
}

TEST_F(ServiceTest, answersHeadLikeGetButWithoutTheBody)
{
    start();
    const std::string id = client().upload("succeed x");
    EXPECT_EQ(client().convert(id).status, 200);
    const std::string link = client().waitForEnd(id).json()["result"]["url"].asString();
    const auto answer = client().send("HEAD", link);
    EXPECT_EQ(answer.status, 200);
    EXPECT_NE(answer.head.find("Content-Length: 11\r\n"), std::string::npos) << answer.head;
    EXPECT_EQ(answer.body, "");
}

TEST_F(ServiceTest, refusesForgedLinks)
{
    start();
    const std::string link = uploadLink();
    const auto forged = client().send("PUT", link + "0", "content");
    EXPECT_EQ(forged.status, 403);
    EXPECT_EQ(forged.errorMessage(), forbiddenText);
    EXPECT_EQ(client().send("GET", link).status, 403);
    EXPECT_EQ(client().send("GET", link.substr(0, link.find('?'))).status, 403);
    EXPECT_EQ(client().send("PUT", "/storage/../link-key", "content").status, 403);
    EXPECT_EQ(client().send("DELETE", link).status, 405);
}

TEST_F(ServiceTest, refusesExpiredLinks)
{
    config.linkLifetime = 0s;
    start();
    EXPECT_EQ(client().send("PUT", uploadLink(), "content").status, 403);
}

TEST_F(ServiceTest, refusesLinksOfAnotherDataFolder)
{
    start();
    const std::string link = uploadLink();
    service = Service::start(config, folder.path() / "other", {}).value();
    EXPECT_EQ(client().send("PUT", link, "content").status, 403);
}

TEST_F(ServiceTest, refusesUploadsThatAreTooLarge)
{
    config.uploadLimit = 10;
    start();
    const auto refused = client().send("PUT", uploadLink(), "12345678901");
    EXPECT_EQ(refused.status, 413);
    EXPECT_EQ(refused.errorMessage(), "The file is too large for the conversion service: split it into smaller ones.");
    EXPECT_EQ(client().send("PUT", uploadLink(), "1234567890").status, 200);
}

TEST_F(ServiceTest, refusesAnUploadThatTheDiskHasNoRoomFor)
{
    config.uploadLimit = UINT64_MAX;
    start();
    const std::string link = uploadLink();
    auto socket = RawSocket::connect(service->port());
    socket.send("PUT " + link.substr(link.find("/storage")) +
                " HTTP/1.1\r\nHost: a\r\nContent-Length: 4000000000000000000\r\n\r\n");
    const std::string answer = socket.receiveAnswer();
    EXPECT_NE(answer.find(" 507 "), std::string::npos) << answer;
    EXPECT_NE(answer.find("The disk of the conversion service is full. Free some space and try again."),
              std::string::npos);
}

TEST_F(ServiceTest, answersADownloadThatIsGoneWith404)
{
    start();
    const std::string id = client().upload("succeed x");
    EXPECT_EQ(client().convert(id).status, 200);
    const std::string link = client().waitForEnd(id).json()["result"]["url"].asString();
    std::filesystem::remove_all(data / "blobs" / "results");
    const auto answer = client().send("GET", link);
    EXPECT_EQ(answer.status, 404);
    EXPECT_EQ(answer.errorMessage(), "The file is not there any more: open the file again.");
}

TEST_F(ServiceTest, keepsNothingOfAnUploadThatIsCutOff)
{
    start();
    const std::string link = uploadLink();
    {
        auto socket = RawSocket::connect(service->port());
        socket.send("PUT " + link.substr(link.find("/storage")) +
                    " HTTP/1.1\r\nHost: a\r\nContent-Length: 1000\r\n\r\nsome");
        EXPECT_TRUE(waitUntil([&] { return !std::filesystem::is_empty(data / "blobs" / "incoming"); }));
    }
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::is_empty(data / "blobs" / "incoming"); }));
    EXPECT_TRUE(std::filesystem::is_empty(data / "blobs" / "uploads"));
}

TEST_F(ServiceTest, logsNoSecretsAtAnyLevel)
{
    const LogCapture log;
    start();
    const std::string id = client().upload("succeed typed-by-the-user");
    Json::Value body = converterBody(id);
    body["access_token"] = "secret-token";
    EXPECT_EQ(client().post("/converter/v2/convert", body).status, 200);
    const std::string link = client().waitForEnd(id).json()["result"]["url"].asString();
    EXPECT_EQ(client().send("GET", link).status, 200);
    const auto signature = link.substr(link.find("signature=") + 10);
    EXPECT_TRUE(waitUntil([&] { return log.contains("finished after"); }));
    EXPECT_FALSE(log.contains(signature));
    EXPECT_FALSE(log.contains("secret-token"));
    for (const auto& line : log.texts(spdlog::level::info))
        EXPECT_EQ(line.find(id), std::string::npos) << line;
}

TEST_F(ServiceTest, keepsItsJobsWhenItIsRestarted)
{
    start();
    const auto go = folder.path() / "go";
    const std::string id = client().upload("wait " + go.string());
    EXPECT_EQ(client().convert(id).status, 200);
    service.reset();
    folder.write("go", "");
    start();
    EXPECT_EQ(client().waitForEnd(id).json()["result"]["state"], "finished");
}

TEST_F(ServiceTest, saysWhyItCannotStart)
{
    folder.write("file", "");
    const auto inFile = Service::start(config, folder.path() / "file" / "data", {});
    ASSERT_FALSE(inFile);
    EXPECT_EQ(inFile.error(), "The data folder cannot be created: Not a directory.");

    start();
    const auto samePort = Service::start(config, data, {.port = service->port()});
    ASSERT_FALSE(samePort);
    EXPECT_NE(samePort.error(), "");
}

} // namespace

} // namespace VX::Test
