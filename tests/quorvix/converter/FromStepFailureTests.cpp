#include "FromStepFixture.h"

#include <gmock/gmock.h>

#include <sys/fsuid.h>

#include <atomic>
#include <fstream>
#include <stdexcept>

namespace VX
{

namespace
{

using Test::Form;
using Test::HttpRecorder;
using Test::MountScope;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class FromStepFailure : public Test::FromStepForms
{
protected:
    /// The first requests of a run, up to the one that fails.
    std::vector<std::string> firstRequests_(std::ptrdiff_t count) const
    {
        return {allRequests_.begin(), allRequests_.begin() + count};
    }

    ProgressCallback cancelAt_(float fraction)
    {
        return record_([fraction](float reported) { return reported != fraction; });
    }

    bool hasPayload_() const { return std::filesystem::exists(payload_); }

    bool hasResult_() const { return std::filesystem::exists(result_); }

    bool hasCopy_() const { return std::filesystem::exists(workingFolder_ / "input"); }
};

INSTANTIATE_TEST_SUITE_P(Forms, FromStepFailure, ::testing::Values(Form::Blocking, Form::Async), Test::formName);

TEST_P(FromStepFailure, isAConnectionErrorWhereTheServiceBreaksOff)
{
    const std::vector<std::string> paths{"/converter/v2/request", "/storage/upload", "/converter/v2/convert",
                                         "/converter/v2/status", "/storage/result"};
    for (auto path = paths.rbegin(); path != paths.rend(); ++path)
    {
        answer_(*path, HttpRecorder::Answer{.status = 0});
        EXPECT_EQ(errorOf_(), "Connection error") << *path;
    }
}

TEST_P(FromStepFailure, isAConnectionErrorWhereNobodyListens)
{
    recorder_.stop();
    EXPECT_EQ(errorOf_(), "Connection error");
}

TEST_P(FromStepFailure, isTheMessageOfTheServiceInEveryStage)
{
    for (const char* path : {"/converter/v2/status", "/converter/v2/convert", "/converter/v2/request"})
    {
        const std::string message = std::string("refused by ") + path;
        answerText_(path, 400, R"({"result": null, "error": {"message": ")" + message + "\"}}");
        EXPECT_EQ(errorOf_(), message);
    }
}

TEST_P(FromStepFailure, isAnInvalidResponseInEveryStage)
{
    for (const char* path : {"/converter/v2/status", "/converter/v2/convert", "/converter/v2/request"})
    {
        answerText_(path, 200, "[]");
        EXPECT_EQ(errorOf_(), "Invalid response format") << path;
    }
}

TEST_P(FromStepFailure, endsAtAFieldThatIsMissing)
{
    answerText_("/converter/v2/status", 200, R"({"result": {"state": "finished"}})");
    EXPECT_EQ(errorOf_(), "\"url\" field is missing");
    answerText_("/converter/v2/status", 200, R"({"result": {"state": "resting"}})");
    EXPECT_EQ(errorOf_(), "Unknown state: resting");
    answerText_("/converter/v2/request", 200, R"({"result": {"url": "u"}})");
    EXPECT_EQ(errorOf_(), "\"request_id\" field is missing");
}

TEST_P(FromStepFailure, isTheErrorOfTheStorage)
{
    answerText_("/storage/result", 404, "gone");
    EXPECT_THAT(errorOf_(), StartsWith("HTTP 404"));
    answerText_("/storage/upload", 403, "expired");
    EXPECT_THAT(errorOf_(), StartsWith("HTTP 403"));
}

TEST_P(FromStepFailure, makesNoFurtherRequests)
{
    answerText_("/converter/v2/convert", 200, "{}");
    EXPECT_NE(errorOf_(), "no error");
    EXPECT_EQ(requests_(), firstRequests_(3));
}

TEST_P(FromStepFailure, leavesNothingBehindOfARefusedRequest)
{
    answerText_("/converter/v2/request", 200, "{}");
    EXPECT_NE(errorOf_(), "no error");
    EXPECT_FALSE(hasPayload_());
    EXPECT_FALSE(std::filesystem::exists(workingFolder_));
}

TEST_P(FromStepFailure, leavesThePayloadOfAFailedUploadBehind)
{
    answerText_("/storage/upload", 403, "");
    EXPECT_NE(errorOf_(), "no error");
    EXPECT_TRUE(hasPayload_());
    EXPECT_FALSE(hasCopy_());
}

TEST_P(FromStepFailure, leavesNoPayloadBehindOnceItIsUploaded)
{
    answerText_("/converter/v2/convert", 200, "{}");
    EXPECT_NE(errorOf_(), "no error");
    EXPECT_FALSE(hasPayload_());
}

TEST_P(FromStepFailure, leavesNoPartOfADownloadBehind)
{
    answerText_("/storage/result", 500, "sorry");
    EXPECT_NE(errorOf_(), "no error");
    EXPECT_FALSE(hasResult_());
}

TEST_P(FromStepFailure, isTheErrorOfTheReaderAndLeavesNoResultBehind)
{
    answerText_("/storage/result", 200, "no scene");
    const std::string error = errorOf_();
    EXPECT_THAT(error, ::testing::HasSubstr(name_ + ".vxu"));
    EXPECT_FALSE(hasResult_());
    EXPECT_EQ(requests_(), allRequests_);
}

TEST_P(FromStepFailure, isErrno2ForAnInputThatIsMissing)
{
    EXPECT_EQ(runFile_(folder_.path() / (name_ + ".missing.step")).error(), "errno 2");
    EXPECT_EQ(requests_(), firstRequests_(1));
    EXPECT_FALSE(hasCopy_());
}

TEST_P(FromStepFailure, isErrno21ForAFolder)
{
    const auto input = folder_.path() / (name_ + ".folder.step");
    std::filesystem::create_directory(input);
    EXPECT_EQ(runFile_(input).error(), "errno 21");
}

TEST_P(FromStepFailure, isErrno13ForAnInputThatMayNotBeRead)
{
    std::filesystem::permissions(input_, std::filesystem::perms::none);
    // Root reads every file, but not with the identity of another user, which threads inherit.
    const int before = ::setfsuid(65'534);
    const bool mayRead = std::ifstream(input_).good();
    const std::string error = mayRead ? "" : errorOf_();
    ::setfsuid(static_cast<uid_t>(before));
    if (mayRead)
        GTEST_SKIP() << "this user may read every file";
    EXPECT_EQ(error, "errno 13");
}

TEST_P(FromStepFailure, isErrno30WhereTheOutputDirectoryCannotBeCreated)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::remove_all(ConverterService::serviceOutputDirectory());
    const auto readOnly = MountScope::makeReadOnly("/");
    ASSERT_TRUE(readOnly.isActive());
    EXPECT_EQ(errorOf_(), "errno 30");
    EXPECT_THAT(requests_(), IsEmpty());
}

TEST_P(FromStepFailure, isErrno28WhereTheInputFindsNoRoom)
{
    QX_NEED_PRIVATE_ROOT();
    const auto small = MountScope::makeSmall(ConverterService::serviceOutputDirectory(), 65'536);
    ASSERT_TRUE(small.isActive());
    EXPECT_EQ(runFile_(folder_.write(name_ + ".step", std::string(1'000'000, 'x'))).error(), "errno 28");
    EXPECT_FALSE(hasCopy_());
}

TEST_P(FromStepFailure, isWhatCompressZipSaysWhereThePayloadFindsNoRoom)
{
    QX_NEED_PRIVATE_ROOT();
    const auto small = MountScope::makeSmall(ConverterService::serviceOutputDirectory(), 1'000'000);
    ASSERT_TRUE(small.isActive());
    std::string noise(900'000, '\0');
    std::uint32_t state = 1;
    for (char& c : noise)
        c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24U);
    EXPECT_THAT(runFile_(folder_.write(name_ + ".step", noise)).error(), ::testing::HasSubstr(name_ + ".input.zip"));
    EXPECT_FALSE(hasPayload_());
    EXPECT_EQ(requests_(), firstRequests_(1));
}

TEST_P(FromStepFailure, isAnErrnoWhereThePlaceOfTheResultCannotBeFreed)
{
    std::filesystem::create_directories(result_ / "folder");
    EXPECT_EQ(errorOf_(), "errno 39");
    EXPECT_THAT(requests_(), IsEmpty());
    std::filesystem::remove_all(result_);
}

TEST_P(FromStepFailure, isAnErrnoWhereThePayloadCannotBeRemoved)
{
    whenAsked_["/storage/upload"] = [this]
    {
        std::filesystem::remove(payload_);
        std::filesystem::create_directories(payload_ / "folder");
    };
    EXPECT_EQ(errorOf_(), "errno 39");
    EXPECT_EQ(requests_(), firstRequests_(2));
    std::filesystem::remove_all(payload_);
}

TEST_P(FromStepFailure, isErrno22ForARequestIdThatLeadsElsewhere)
{
    const auto before = std::distance(std::filesystem::directory_iterator("/"), {});
    for (const char* id : {"", ".", "..", "../up", "a/b", "/etc", "a\\u0000b"})
    {
        requestId_ = id;
        EXPECT_EQ(errorOf_(), "errno 22") << id;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("/"), {}), before);
    EXPECT_THAT(requests_(), Not(::testing::Contains("PUT /storage/upload")));
}

TEST_P(FromStepFailure, takesAnUnusualRequestIdAsItIs)
{
    requestId_ = "..." + name_ + " \xC3\xBC";
    EXPECT_EQ(errorOf_(), "no error");
    EXPECT_TRUE(std::filesystem::is_empty(output_(requestId_)));
    std::filesystem::remove(output_(requestId_));
}

TEST_P(FromStepFailure, isErrno20WhereAFileIsInPlaceOfTheWorkingDirectory)
{
    std::ofstream file(workingFolder_);
    EXPECT_EQ(errorOf_(), "errno 20");
}

TEST_P(FromStepFailure, isACancelBeforeTheUpload)
{
    EXPECT_EQ(errorOf_(cancelAt_(0.0F)), "Operation was canceled");
    EXPECT_EQ(requests_(), firstRequests_(1));
    EXPECT_FALSE(std::filesystem::exists(workingFolder_));
}

TEST_P(FromStepFailure, isACancelBeforeTheConversionWhichLeavesThePayloadBehind)
{
    std::atomic_bool uploaded{false};
    whenAsked_["/storage/upload"] = [&] { uploaded = true; };
    EXPECT_EQ(errorOf_(record_([&](float) { return !uploaded; })), "Operation was canceled");
    EXPECT_EQ(requests_(), firstRequests_(2));
    EXPECT_TRUE(hasPayload_());
}

TEST_P(FromStepFailure, isACancelWhileTheConversionRuns)
{
    setUnfinished_(std::vector<std::string>(30, "in_progress"));
    std::atomic_bool waiting{false};
    whenAsked_["/converter/v2/status"] = [&] { waiting = true; };
    EXPECT_EQ(errorOf_(record_([&](float) { return !waiting; })), "Operation was canceled");
    EXPECT_EQ(requests_(), firstRequests_(4));
    EXPECT_FALSE(hasPayload_());
}

TEST_P(FromStepFailure, isACancelBeforeTheDownload)
{
    EXPECT_EQ(errorOf_(cancelAt_(0.5F)), "Operation was canceled");
    EXPECT_EQ(requests_(), firstRequests_(4));
    EXPECT_FALSE(hasResult_());
}

TEST_P(FromStepFailure, isACancelAfterTheDownload)
{
    EXPECT_EQ(errorOf_(cancelAt_(0.75F)), "Operation was canceled");
    EXPECT_EQ(requests_(), allRequests_);
}

TEST_P(FromStepFailure, isACancelWhileTheResultIsLoadedWhichLeavesNothingBehind)
{
    EXPECT_EQ(errorOf_(record_([](float fraction) { return fraction <= 0.75F; })), "Operation was canceled");
    EXPECT_EQ(requests_(), allRequests_);
    EXPECT_FALSE(hasResult_());
}

TEST_P(FromStepFailure, isTheTextOfAnExceptionOfTheProgressCallback)
{
    const auto breakDown = [](float fraction)
    {
        if (fraction >= 0.5F)
            throw std::runtime_error("broken callback");
        return true;
    };
    EXPECT_EQ(errorOf_(breakDown), "broken callback");
}

TEST_P(FromStepFailure, makesTheNextRunNotFail)
{
    EXPECT_EQ(errorOf_(cancelAt_(0.25F)), "Operation was canceled");
    EXPECT_EQ(errorOf_(), "no error");
    EXPECT_FALSE(hasPayload_());
}

} // namespace

} // namespace VX
