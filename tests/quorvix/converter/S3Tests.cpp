#include <quorvix/converter/S3.h>

#include <gtest/gtest.h>
#include <json/writer.h>

#include <tests/quorvix/support/RecordingTransport.h>

namespace VX::S3
{

namespace
{

using Test::makeAnswer;
using Test::RecordingTransport;

class S3Test : public ::testing::Test
{
protected:
    void TearDown() override { WebRequests::reset(); }

    [[nodiscard]] WebRequestData dataOf_(const WebRequest& request) const
    {
        request.send([](const Json::Value&) {});
        return transport_->last().request;
    }

    const std::shared_ptr<RecordingTransport> transport_ = RecordingTransport::install();
};

/// What both transfers have in common.
void expectTransfer(const WebRequestData& data)
{
    EXPECT_EQ(data.url, "https://storage.example.com/file?signature=a%2Bb");
    EXPECT_EQ(data.timeout, std::chrono::milliseconds(600'000));
    EXPECT_EQ(data.logName, "S3");
    EXPECT_TRUE(data.parameters.empty());
    EXPECT_TRUE(data.headers.empty());
    EXPECT_FALSE(data.body);
    EXPECT_TRUE(data.async);
}

TEST_F(S3Test, uploadsAFileWithAPut)
{
    float reported = 0;
    const WebRequestData data =
        dataOf_(uploadWithPresignedUrl("https://storage.example.com/file?signature=a%2Bb", "/folder/part.zip",
                                       [&](float fraction)
                                       {
                                           reported = fraction;
                                           return false;
                                       }));
    expectTransfer(data);
    EXPECT_EQ(data.method, WebRequest::Method::Put);
    EXPECT_EQ(data.inputPath, "/folder/part.zip");
    EXPECT_TRUE(data.outputPath.empty());
    EXPECT_FALSE(data.downloadProgress);
    ASSERT_TRUE(data.uploadProgress);
    EXPECT_FALSE(data.uploadProgress(0.5F));
    EXPECT_EQ(reported, 0.5F);
}

TEST_F(S3Test, downloadsAFileWithAGet)
{
    float reported = 0;
    const WebRequestData data =
        dataOf_(downloadWithPresignedUrl("https://storage.example.com/file?signature=a%2Bb", "/folder/part.vxu",
                                         [&](float fraction)
                                         {
                                             reported = fraction;
                                             return true;
                                         }));
    expectTransfer(data);
    EXPECT_EQ(data.method, WebRequest::Method::Get);
    EXPECT_EQ(data.outputPath, "/folder/part.vxu");
    EXPECT_TRUE(data.inputPath.empty());
    EXPECT_FALSE(data.uploadProgress);
    ASSERT_TRUE(data.downloadProgress);
    EXPECT_TRUE(data.downloadProgress(0.25F));
    EXPECT_EQ(reported, 0.25F);
}

TEST_F(S3Test, transfersWithoutReports)
{
    EXPECT_FALSE(dataOf_(uploadWithPresignedUrl("https://storage.example.com/", "/f", {})).uploadProgress);
    EXPECT_FALSE(dataOf_(downloadWithPresignedUrl("https://storage.example.com/", "/f", {})).downloadProgress);
}

std::string errorOf(const Json::Value& answer)
{
    const auto result = parseResponse(answer);
    return result ? "no error" : result.error();
}

TEST(S3Answer, isAConnectionErrorForCodeZeroWhateverElseItSays)
{
    Json::Value answer = makeAnswer(0, "body");
    answer["error"] = "no route";
    EXPECT_EQ(errorOf(answer), "Connection error");
}

TEST(S3Answer, isAConnectionErrorWithoutACodeThatIsAnInt)
{
    Json::Value answer(Json::objectValue);
    EXPECT_EQ(errorOf(answer), "Connection error");
    for (const Json::Value& code : {Json::Value("200"), Json::Value(200.5), Json::Value(), Json::Value(false)})
    {
        answer["code"] = code;
        EXPECT_EQ(errorOf(answer), "Connection error") << code;
    }
    EXPECT_EQ(errorOf(Json::Value("text")), "Connection error");
}

TEST(S3Answer, isASuccessBelow400)
{
    for (const int code : {100, 200, 204, 307, 399})
        EXPECT_EQ(errorOf(makeAnswer(code, "")), "no error") << code;
}

TEST(S3Answer, isItsErrorTextFrom400On)
{
    for (const int code : {400, 403, 500, 599})
    {
        Json::Value answer = makeAnswer(code, "body");
        answer["error"] = "HTTP error";
        EXPECT_EQ(errorOf(answer), "HTTP error") << code;
    }
}

TEST(S3Answer, isAnEmptyErrorWhereTheTextIsMissing)
{
    Json::Value answer = makeAnswer(404, "body");
    EXPECT_EQ(errorOf(answer), "");
    answer["error"] = 5;
    EXPECT_EQ(errorOf(answer), "");
}

} // namespace

} // namespace VX::S3
