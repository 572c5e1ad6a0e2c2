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
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

class FromStepFailure : public Test::FromStepForms
{
protected:
    /// The first requests of a run, up to the one that fails.
    std::vector<std::string> firstRequests(std::ptrdiff_t count) const
    {
        return {allRequests_.begin(), allRequests_.begin() + count};
    }

    ProgressCallback cancelAt(float fraction)
    {
        return record([fraction](float reported) { return reported != fraction; });
    }

    bool hasPayload() const { return std::filesystem::exists(payload_); }

    bool hasResult() const { return std::filesystem::exists(result_); }

    bool hasCopy() const { return std::filesystem::exists(workingFolder_ / "input"); }
};

INSTANTIATE_TEST_SUITE_P(Forms, FromStepFailure, ::testing::Values(Form::Blocking, Form::Async), Test::formName);

TEST_P(FromStepFailure, isAConnectionErrorWhereTheServiceBreaksOff)
{
    const std::vector<std::string> paths{"/converter/v2/request", "/storage/upload", "/converter/v2/convert",
                                         "/converter/v2/status", "/storage/result"};
    for (auto path = paths.rbegin(); path != paths.rend(); ++path)
    {
        answer(*path, HttpRecorder::Answer{.status = 0});
        EXPECT_EQ(errorOf(), "Connection error") << *path;
    }
}

TEST_P(FromStepFailure, isAConnectionErrorWhereNobodyListens)
{
    recorder_.stop();
    EXPECT_EQ(errorOf(), "Connection error");
}

TEST_P(FromStepFailure, isTheMessageOfTheServiceInEveryStage)
{
    for (const char* path : {"/converter/v2/status", "/converter/v2/convert", "/converter/v2/request"})
    {
        const std::string message = std::string("refused by ") + path;
        answerText(path, 400, R"({"result": null, "error": {"message": ")" + message + "\"}}");
        EXPECT_EQ(errorOf(), message);
    }
}

TEST_P(FromStepFailure, isAnInvalidResponseInEveryStage)
{
    for (const char* path : {"/converter/v2/status", "/converter/v2/convert", "/converter/v2/request"})
    {
        answerText(path, 200, "[]");
        EXPECT_EQ(errorOf(), "Invalid response format") << path;
    }
}

TEST_P(FromStepFailure, endsAtAFieldThatIsMissing)
{
    answerText("/converter/v2/status", 200, R"({"result": {"state": "finished"}})");
    EXPECT_EQ(errorOf(), "\"url\" field is missing");
    answerText("/converter/v2/status", 200, R"({"result": {"state": "resting"}})");
    EXPECT_EQ(errorOf(), "Unknown state: resting");
    answerText("/converter/v2/request", 200, R"({"result": {"url": "u"}})");
    EXPECT_EQ(errorOf(), "\"request_id\" field is missing");
}

TEST_P(FromStepFailure, isTheErrorOfTheStorage)
{
    answerText("/storage/result", 404, "gone");
    EXPECT_THAT(errorOf(), StartsWith("HTTP 404"));
    answerText("/storage/upload", 403, "expired");
    EXPECT_THAT(errorOf(), StartsWith("HTTP 403"));
}

TEST_P(FromStepFailure, makesNoFurtherRequests)
{
    answerText("/converter/v2/convert", 200, "{}");
    EXPECT_NE(errorOf(), "no error");
    EXPECT_EQ(requests(), firstRequests(3));
}

TEST_P(FromStepFailure, leavesNothingBehindOfARefusedRequest)
{
    answerText("/converter/v2/request", 200, "{}");
    EXPECT_NE(errorOf(), "no error");
    EXPECT_FALSE(hasPayload());
    EXPECT_FALSE(std::filesystem::exists(workingFolder_));
}

TEST_P(FromStepFailure, leavesThePayloadOfAFailedUploadBehind)
{
    answerText("/storage/upload", 403, "");
    EXPECT_NE(errorOf(), "no error");
    EXPECT_TRUE(hasPayload());
    EXPECT_FALSE(hasCopy());
}

TEST_P(FromStepFailure, leavesNoPayloadBehindOnceItIsUploaded)
{
    answerText("/converter/v2/convert", 200, "{}");
    EXPECT_NE(errorOf(), "no error");
    EXPECT_FALSE(hasPayload());
}

TEST_P(FromStepFailure, leavesNoPartOfADownloadBehind)
{
    answerText("/storage/result", 500, "sorry");
    EXPECT_NE(errorOf(), "no error");
    EXPECT_FALSE(hasResult());
}

TEST_P(FromStepFailure, isTheErrorOfTheReaderAndLeavesNoResultBehind)
{
    answerText("/storage/result", 200, "no scene");
    const std::string error = errorOf();
    EXPECT_THAT(error, ::testing::HasSubstr(name_ + ".vxu"));
    EXPECT_FALSE(hasResult());
    EXPECT_EQ(requests(), allRequests_);
}

TEST_P(FromStepFailure, isErrno2ForAnInputThatIsMissing)
{
    EXPECT_EQ(runFile(folder_.path() / (name_ + ".missing.step")).error(), "errno 2");
    EXPECT_EQ(requests(), firstRequests(1));
    EXPECT_FALSE(hasCopy());
}

TEST_P(FromStepFailure, isErrno21ForAFolder)
{
    const auto input = folder_.path() / (name_ + ".folder.step");
    std::filesystem::create_directory(input);
    EXPECT_EQ(runFile(input).error(), "errno 21");
}

TEST_P(FromStepFailure, isErrno13ForAnInputThatMayNotBeRead)
{
    std::filesystem::permissions(input_, std::filesystem::perms::none);
    // Root reads every file, but not with the identity of another user, which threads inherit.
    const int before = ::setfsuid(65'534);
    const bool mayRead = std::ifstream(input_).good();
    const std::string error = mayRead ? "" : errorOf();
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
    EXPECT_EQ(errorOf(), "errno 30");
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_P(FromStepFailure, isErrno28WhereTheInputFindsNoRoom)
{
    QX_NEED_PRIVATE_ROOT();
    const auto small = MountScope::makeSmall(ConverterService::serviceOutputDirectory(), 65'536);
    ASSERT_TRUE(small.isActive());
    EXPECT_EQ(runFile(folder_.write(name_ + ".step", std::string(1'000'000, 'x'))).error(), "errno 28");
    EXPECT_FALSE(hasCopy());
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
    EXPECT_THAT(runFile(folder_.write(name_ + ".step", noise)).error(), ::testing::HasSubstr(name_ + ".input.zip"));
    EXPECT_FALSE(hasPayload());
    EXPECT_EQ(requests(), firstRequests(1));
}

TEST_P(FromStepFailure, isAnErrnoWhereThePlaceOfTheResultCannotBeFreed)
{
    std::filesystem::create_directories(result_ / "folder");
    EXPECT_EQ(errorOf(), "errno 39");
    EXPECT_THAT(requests(), IsEmpty());
    std::filesystem::remove_all(result_);
}

TEST_P(FromStepFailure, isAnErrnoWhereThePayloadCannotBeRemoved)
{
    whenAsked_["/storage/upload"] = [this]
    {
        std::filesystem::remove(payload_);
        std::filesystem::create_directories(payload_ / "folder");
    };
    EXPECT_EQ(errorOf(), "errno 39");
    EXPECT_EQ(requests(), firstRequests(2));
    std::filesystem::remove_all(payload_);
}

TEST_P(FromStepFailure, isErrno22ForARequestIdThatLeadsElsewhere)
{
    const auto before = std::distance(std::filesystem::directory_iterator("/"), {});
    for (const char* id : {"", ".", "..", "../up", "a/b", "/etc", "a\\u0000b"})
    {
        requestId_ = id;
        EXPECT_EQ(errorOf(), "errno 22") << id;
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("/"), {}), before);
    EXPECT_THAT(requests(), Not(::testing::Contains("PUT /storage/upload")));
}

TEST_P(FromStepFailure, takesAnUnusualRequestIdAsItIs)
{
    requestId_ = "..." + name_ + " \xC3\xBC";
    EXPECT_EQ(errorOf(), "no error");
    EXPECT_TRUE(std::filesystem::is_empty(output(requestId_)));
    std::filesystem::remove(output(requestId_));
}

TEST_P(FromStepFailure, isErrno20WhereAFileIsInPlaceOfTheWorkingDirectory)
{
    std::ofstream file(workingFolder_);
    EXPECT_EQ(errorOf(), "errno 20");
}

TEST_P(FromStepFailure, isACancelBeforeTheUpload)
{
    EXPECT_EQ(errorOf(cancelAt(0.0F)), "Operation was canceled");
    EXPECT_EQ(requests(), firstRequests(1));
    EXPECT_FALSE(std::filesystem::exists(workingFolder_));
}

TEST_P(FromStepFailure, isACancelBeforeTheConversionWhichLeavesThePayloadBehind)
{
    std::atomic_bool uploaded{false};
    whenAsked_["/storage/upload"] = [&] { uploaded = true; };
    EXPECT_EQ(errorOf(record([&](float) { return !uploaded; })), "Operation was canceled");
    EXPECT_EQ(requests(), firstRequests(2));
    EXPECT_TRUE(hasPayload());
}

TEST_P(FromStepFailure, isACancelWhileTheConversionRuns)
{
    setUnfinished(std::vector<std::string>(30, "in_progress"));
    std::atomic_bool waiting{false};
    whenAsked_["/converter/v2/status"] = [&] { waiting = true; };
    EXPECT_EQ(errorOf(record([&](float) { return !waiting; })), "Operation was canceled");
    EXPECT_EQ(requests(), firstRequests(4));
    EXPECT_FALSE(hasPayload());
}

TEST_P(FromStepFailure, isACancelBeforeTheDownload)
{
    EXPECT_EQ(errorOf(cancelAt(0.5F)), "Operation was canceled");
    EXPECT_EQ(requests(), firstRequests(4));
    EXPECT_FALSE(hasResult());
}

TEST_P(FromStepFailure, isACancelAfterTheDownload)
{
    EXPECT_EQ(errorOf(cancelAt(0.75F)), "Operation was canceled");
    EXPECT_EQ(requests(), allRequests_);
}

TEST_P(FromStepFailure, isACancelWhileTheResultIsLoadedWhichLeavesNothingBehind)
{
    EXPECT_EQ(errorOf(record([](float fraction) { return fraction <= 0.75F; })), "Operation was canceled");
    EXPECT_EQ(requests(), allRequests_);
    EXPECT_FALSE(hasResult());
}

TEST_P(FromStepFailure, isTheTextOfAnExceptionOfTheProgressCallback)
{
    const auto breakDown = [](float fraction)
    {
        if (fraction >= 0.5F)
            throw std::runtime_error("broken callback");
        return true;
    };
    EXPECT_EQ(errorOf(breakDown), "broken callback");
}

TEST_P(FromStepFailure, makesTheNextRunNotFail)
{
    EXPECT_EQ(errorOf(cancelAt(0.25F)), "Operation was canceled");
    EXPECT_EQ(errorOf(), "no error");
    EXPECT_FALSE(hasPayload());
}

} // namespace

} // namespace VX
