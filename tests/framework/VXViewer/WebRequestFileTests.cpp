#include "WebRequestFixture.h"
#include "tests/support/RawSocket.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <thread>
#include <vector>

namespace VX::Test
{

namespace
{

using Method = WebRequest::Method;

/// Refuses every request by its head.
class RefusingHandler final : public HttpHandler
{
    tl::expected<HttpBodySink, HttpResponse> acceptBody(const HttpRequest&) override
    {
        return tl::unexpected(HttpResponse{.status = 413});
    }

    void handle(HttpRequest, Respond) override {}
};

class WebRequestFileTests : public WebRequestFixture
{
public:
    [[nodiscard]] WebRequest upload(const std::filesystem::path& file) const
    {
        WebRequest request(recorder.url("/upload"));
        request.setMethod(Method::Put);
        request.setInputPath(file);
        return request;
    }

    [[nodiscard]] WebRequest download() const
    {
        WebRequest request(recorder.url("/download"));
        request.setOutputPath(out);
        return request;
    }

    /// What is in the folder of the downloads, whatever its name.
    [[nodiscard]] std::size_t filesInFolder() const
    {
        const std::filesystem::directory_iterator files(out.parent_path());
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }

    static std::string content(std::size_t size)
    {
        std::string text;
        while (text.size() < size)
            text += std::to_string(text.size());
        return text;
    }

    const std::filesystem::path out = folder.write("downloads/.keep", "").parent_path() / "out.bin";
};

} // namespace

TEST_F(WebRequestFileTests, UploadsAFileWithItsLength)
{
    const auto bytes = content(3'000'000);
    EXPECT_EQ(answerTo(upload(folder.write("in.bin", bytes)))["code"], 200);
    const auto sent = recorder.requests().front();
    EXPECT_EQ(sent.method, "PUT");
    EXPECT_TRUE(sent.body == bytes);
    EXPECT_EQ(sent.headers.at("Content-Length"), std::to_string(bytes.size()));
    for (const char* name : {"Content-Type", "Expect", "Transfer-Encoding"})
        EXPECT_FALSE(sent.headers.contains(name)) << name;
}

TEST_F(WebRequestFileTests, UploadsAnEmptyFile)
{
    EXPECT_EQ(answerTo(upload(folder.write("in.bin", "")))["code"], 200);
    EXPECT_EQ(recorder.requests().front().headers.at("Content-Length"), "0");
}

TEST_F(WebRequestFileTests, PostsAFileWithoutAType)
{
    auto request = upload(folder.write("in.bin", "bytes"));
    request.setMethod(Method::Post);
    (void)answerTo(request);
    EXPECT_EQ(recorder.requests().front().method, "POST");
    EXPECT_EQ(recorder.requests().front().body, "bytes");
    EXPECT_FALSE(recorder.requests().front().headers.contains("Content-Type"));
}

TEST_F(WebRequestFileTests, SaysThatTheFileToUploadIsMissing)
{
    const auto answer = answerTo(upload(folder.path() / "missing.bin"));
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "Cannot open \"missing.bin\": no such file or directory.");
    EXPECT_TRUE(recorder.requests().empty());
}

TEST_F(WebRequestFileTests, SaysThatAFolderCannotBeUploaded)
{
    EXPECT_EQ(answerTo(upload(folder.path() / "downloads"))["error"],
              "Cannot open \"downloads\": it is not a regular file.");
}

TEST_F(WebRequestFileTests, AnUploadThatIsRefusedHasTheAnswer)
{
    recorder.answer("/upload", {.status = 403, .body = "expired"});
    const auto answer = answerTo(upload(folder.write("in.bin", content(1'000'000))));
    EXPECT_EQ(answer["code"], 403);
    EXPECT_EQ(answer["text"], "expired");
    EXPECT_EQ(answer["error"], "HTTP 403: Forbidden");
}

TEST_F(WebRequestFileTests, AnUploadThatIsRefusedBeforeItIsReadHasTheAnswer)
{
    RefusingHandler handler;
    const auto server = HttpServer::start({}, handler);
    ASSERT_TRUE(server);
    auto request = upload(folder.write("in.bin", content(32U << 20U)));
    request.send(
        "http://127.0.0.1:" + std::to_string((*server)->port()), "",
        [&](const Json::Value& answer) { EXPECT_EQ(answer["code"], 413); }, false);
}

TEST_F(WebRequestFileTests, DownloadsToAFileOfItsOwner)
{
    const auto bytes = content(3'000'000);
    recorder.answer("/download", {.body = bytes});
    const auto answer = answerTo(download());
    EXPECT_EQ(answer["code"], 200);
    EXPECT_EQ(answer["text"], "");
    EXPECT_FALSE(answer.isMember("error"));
    EXPECT_TRUE(readFile(out) == bytes);
    EXPECT_EQ(std::filesystem::status(out).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(filesInFolder(), 2U);
}

TEST_F(WebRequestFileTests, DownloadsAnEmptyFile)
{
    EXPECT_EQ(answerTo(download())["code"], 200);
    EXPECT_TRUE(std::filesystem::exists(out));
    EXPECT_TRUE(std::filesystem::is_empty(out));
}

TEST_F(WebRequestFileTests, ADownloadReplacesTheFile)
{
    folder.write("downloads/out.bin", "old");
    recorder.answer("/download", {.body = "new"});
    (void)answerTo(download());
    EXPECT_EQ(readFile(out), "new");
}

TEST_F(WebRequestFileTests, AFailedDownloadHasTheTextAndLeavesNothing)
{
    recorder.answer("/download", {.status = 404, .body = "no such key"});
    const auto answer = answerTo(download());
    EXPECT_EQ(answer["code"], 404);
    EXPECT_EQ(answer["text"], "no such key");
    EXPECT_EQ(answer["error"], "HTTP 404: Not Found");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(WebRequestFileTests, AFailedDownloadKeepsTheOldFile)
{
    folder.write("downloads/out.bin", "old");
    recorder.answer("/download", {.status = 500, .body = "broken"});
    (void)answerTo(download());
    EXPECT_EQ(readFile(out), "old");
}

TEST_F(WebRequestFileTests, TheTextOfAFailedDownloadIsBounded)
{
    recorder.answer("/download", {.status = 500, .body = content(1'000'000)});
    const auto answer = answerTo(download());
    EXPECT_EQ(answer["code"], 500);
    EXPECT_EQ(answer["text"].asString().size(), 64U << 10U);
}

TEST_F(WebRequestFileTests, ADownloadThatIsCutOffLeavesNothing)
{
    recorder.answer("/download", {.body = content(64U << 20U)});
    auto request = download();
    std::once_flag once;
    request.setDownloadProgressCallback(
        [&](float fraction)
        {
            if (fraction > 0)
                std::call_once(once, [&] { recorder.stop(); });
            return true;
        });
    const auto answer = answerTo(request);
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "The connection to 127.0.0.1 broke off.");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(WebRequestFileTests, SaysThatTheFolderOfTheDownloadIsMissing)
{
    WebRequest request(recorder.url("/download"));
    request.setOutputPath(folder.path() / "missing" / "out.bin");
    const auto answer = answerTo(request);
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "Cannot write \"out.bin\": no such file or directory.");
    EXPECT_TRUE(recorder.requests().empty());
}

TEST_F(WebRequestFileTests, SaysThatTheNameOfTheDownloadIsAFolder)
{
    std::filesystem::create_directories(out / "inside");
    const auto answer = answerTo(download());
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "Cannot write \"out.bin\": is a directory.");
    EXPECT_EQ(filesInFolder(), 2U);
}

TEST_F(WebRequestFileTests, ReportsTheProgressOfAnUpload)
{
    std::vector<float> seen;
    auto request = upload(folder.write("in.bin", content(8'000'000)));
    request.setUploadProgressCallback(
        [&](float fraction)
        {
            seen.push_back(fraction);
            return true;
        });
    EXPECT_EQ(answerTo(request)["code"], 200);
    ASSERT_GE(seen.size(), 3U);
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    EXPECT_GE(seen.front(), 0.F);
    EXPECT_EQ(seen.back(), 1.F);
    EXPECT_TRUE(std::ranges::any_of(seen, [](float f) { return f > 0 && f < 1; }));
}

TEST_F(WebRequestFileTests, ReportsTheProgressOfADownload)
{
    std::vector<float> seen;
    recorder.answer("/download", {.body = content(8'000'000)});
    auto request = download();
    request.setDownloadProgressCallback(
        [&](float fraction)
        {
            seen.push_back(fraction);
            return true;
        });
    EXPECT_EQ(answerTo(request)["code"], 200);
    EXPECT_TRUE(std::ranges::is_sorted(seen));
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.back(), 1.F);
}

TEST_F(WebRequestFileTests, ADownloadOfUnknownLengthEndsWithAWholeToo)
{
    RawListener listener;
    std::vector<float> seen;
    auto request = download();
    request.setDownloadProgressCallback(
        [&](float fraction)
        {
            seen.push_back(fraction);
            return true;
        });
    std::thread serving(
        [&]
        {
            auto client = listener.accept();
            client.receiveUntil("\r\n\r\n");
            client.send("HTTP/1.1 200 OK\r\n\r\nbytes");
        });
    request.send(
        "http://127.0.0.1:" + std::to_string(listener.port()), "",
        [&](const Json::Value& answer) { EXPECT_EQ(answer["code"], 200); }, false);
    serving.join();
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), 0.F);
    EXPECT_EQ(seen.back(), 1.F);
    EXPECT_EQ(readFile(out), "bytes");
}

TEST_F(WebRequestFileTests, AnUploadIsCanceledInTheMiddle)
{
    auto request = upload(folder.write("in.bin", content(64U << 20U)));
    request.setUploadProgressCallback([](float fraction) { return fraction < 0.1F; });
    const auto answer = answerTo(request);
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "Operation was canceled");
    EXPECT_TRUE(recorder.requests().empty());
}

TEST_F(WebRequestFileTests, ADownloadIsCanceledInTheMiddleAndLeavesNothing)
{
    recorder.answer("/download", {.body = content(64U << 20U)});
    auto request = download();
    request.setDownloadProgressCallback([](float fraction) { return fraction < 0.1F; });
    const auto answer = answerTo(request);
    EXPECT_EQ(answer["code"], 0);
    EXPECT_EQ(answer["error"], "Operation was canceled");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(WebRequestFileTests, ACancelAtTheEndCountsToo)
{
    recorder.answer("/download", {.body = "short"});
    auto request = download();
    request.setDownloadProgressCallback([](float fraction) { return fraction < 1.F; });
    EXPECT_EQ(answerTo(request)["error"], "Operation was canceled");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(WebRequestFileTests, ARequestIsCanceledWhileTheServerSaysNothing)
{
    recorder.answer("/download", {.delay = std::chrono::minutes(1)});
    int calls = 0;
    auto request = download();
    request.setDownloadProgressCallback([&](float) { return ++calls < 8; });
    auto answer = send(request);
    EXPECT_EQ(wait(answer)["error"], "Operation was canceled");
}

TEST_F(WebRequestFileTests, AProgressCallbackThatThrowsCancels)
{
    recorder.answer("/download", {.body = "x"});
    auto request = download();
    request.setDownloadProgressCallback([](float) -> bool { throw std::runtime_error("broken"); });
    EXPECT_EQ(answerTo(request)["code"], 0);
}

TEST_F(WebRequestFileTests, AProgressCallbackCannotWaitForAnAnswer)
{
    Json::Value inner;
    auto request = download();
    request.setDownloadProgressCallback(
        [&](float)
        {
            inner = get("/inner");
            return true;
        });
    EXPECT_EQ(answerTo(request)["code"], 200);
    EXPECT_EQ(inner["error"], "A progress callback cannot wait for an answer.");
}

} // namespace VX::Test
