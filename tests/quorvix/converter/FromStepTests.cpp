#include "FromStepFixture.h"
#include <quorvix/auth/UserInfo.h>

#include <VXMesh/Json.h>
#include <VXMesh/Zip.h>

#include <gmock/gmock.h>

#include <fstream>

namespace VX
{

namespace
{

using Test::Form;
using Test::readFile;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FromStep : public Test::FromStepForms
{
protected:
    /// What the service got with the request number `index`.
    Json::Value bodyOf_(std::size_t index) const
    {
        return deserializeJsonValue(recorder_.requests().at(index).body).value();
    }

    /// Unpacks the uploaded payload. @return its folder
    std::filesystem::path unpackUpload_() const
    {
        const auto payload = folder_.write("upload.zip", recorder_.requests().at(1).body);
        const auto target = folder_.path() / "unpacked";
        const auto unpacked = decompressZip(payload, target, {});
        EXPECT_TRUE(unpacked) << unpacked.error();
        return target;
    }
};

INSTANTIATE_TEST_SUITE_P(Forms, FromStep, ::testing::Values(Form::Blocking, Form::Async), Test::formName);

TEST_P(FromStep, loadsTheConvertedFile)
{
    const auto loaded = run_();
    ASSERT_TRUE(loaded) << loaded.error();
    ASSERT_EQ(loaded->objects.size(), 1U);
    EXPECT_EQ(loaded->objects.front()->name(), "Tetrahedron");
    EXPECT_EQ(requests_(), allRequests_);
}

TEST_P(FromStep, tellsTheServiceTheFormatsAndTheRequest)
{
    ASSERT_TRUE(run_());
    Json::Value context;
    context["input_format"] = "step";
    context["compress_input"] = "zip";
    EXPECT_EQ(bodyOf_(0), context);
    Json::Value start = context;
    start["request_id"] = requestId_;
    start["output_format"] = "vxu";
    EXPECT_EQ(bodyOf_(2), start);
    EXPECT_EQ(recorder_.requests().at(3).query.at("request_id"), requestId_);
}

TEST_P(FromStep, provesTheSignIn)
{
    UserInfo::setAccessToken("token");
    ASSERT_TRUE(run_());
    UserInfo::setAccessToken({});
    EXPECT_EQ(bodyOf_(0)["access_token"], "token");
    EXPECT_EQ(bodyOf_(2)["access_token"], "token");
}

TEST_P(FromStep, takesTheFormatInTheLetterCaseOfTheName)
{
    ASSERT_TRUE(runFile_(folder_.write(name_ + ".StP", content_)));
    EXPECT_EQ(bodyOf_(0)["input_format"], "StP");
    EXPECT_EQ(bodyOf_(2)["input_format"], "StP");
}

TEST_P(FromStep, sendsAnEmptyFormatForANameWithoutAnExtension)
{
    ASSERT_TRUE(runFile_(folder_.write(name_, content_)));
    EXPECT_EQ(bodyOf_(0)["input_format"], "");
}

TEST_P(FromStep, uploadsTheFileAloneAsInputToThePresignedUrl)
{
    ASSERT_TRUE(run_());
    EXPECT_EQ(recorder_.requests().at(1).rawQuery, "key=1");
    const auto unpacked = unpackUpload_();
    EXPECT_EQ(readFile(unpacked / "input"), content_);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(unpacked), {}), 1);
}

TEST_P(FromStep, logsItsStages)
{
    ASSERT_TRUE(run_());
    EXPECT_THAT(logLines_(),
                ElementsAre("STEP loader: connecting to the converter service",
                            "STEP loader: creating a temporary directory",
                            "STEP loader: copying the file to the temporary directory",
                            "STEP loader: compressing the file", "STEP loader: removing the temporary copy",
                            "STEP loader: uploading the file to the converter service",
                            "STEP loader: removing the temporary payload file",
                            "STEP loader: waiting for the converter process to finish",
                            "STEP loader: downloading the converted file", "STEP loader: processing the file"));
}

TEST_P(FromStep, logsNoNameOfTheFileForOthersToRead)
{
    ASSERT_TRUE(run_());
    for (const auto& line : log_.lines())
        EXPECT_TRUE(line.level < spdlog::level::info || line.text.find(name_) == std::string::npos) << line.text;
}

TEST_P(FromStep, usesAWorkingDirectoryThatIsThere)
{
    std::filesystem::create_directory(workingFolder_);
    ASSERT_TRUE(run_());
    EXPECT_THAT(logLines_(), ::testing::Not(::testing::Contains("STEP loader: creating a temporary directory")));
}

TEST_P(FromStep, leavesOnlyTheEmptyWorkingDirectoryBehind)
{
    ASSERT_TRUE(run_());
    EXPECT_FALSE(std::filesystem::exists(payload_));
    EXPECT_FALSE(std::filesystem::exists(result_));
    EXPECT_TRUE(std::filesystem::is_empty(workingFolder_));
    EXPECT_EQ(readFile(input_), content_);
}

TEST_P(FromStep, keepsItsFilesFromOtherUsers)
{
    unsigned payloadMode = 0;
    unsigned folderMode = 0;
    bool copyIsGone = false;
    whenAsked_["/storage/upload"] = [&]
    {
        payloadMode = modeOf_(payload_);
        folderMode = modeOf_(workingFolder_);
        copyIsGone = std::filesystem::is_empty(workingFolder_);
    };
    unsigned resultMode = 0;
    ASSERT_TRUE(run_(record_(
        [&](float fraction)
        {
            if (fraction == 0.75F && std::filesystem::exists(result_))
                resultMode = modeOf_(result_);
            return true;
        })));
    EXPECT_EQ(payloadMode, 0600U);
    EXPECT_EQ(folderMode, 0700U);
    EXPECT_EQ(resultMode, 0600U);
    EXPECT_TRUE(copyIsGone);
}

TEST_P(FromStep, hasRemovedThePayloadBeforeItStartsTheConversion)
{
    bool payloadIsThere = true;
    whenAsked_["/converter/v2/convert"] = [&] { payloadIsThere = std::filesystem::exists(payload_); };
    ASSERT_TRUE(run_());
    EXPECT_FALSE(payloadIsThere);
}

TEST_P(FromStep, replacesWhatAnEarlierRunLeftBehind)
{
    for (const auto& file : {payload_, result_})
        std::ofstream(file) << "left behind";
    bool resultIsThere = true;
    whenAsked_["/converter/v2/request"] = [&] { resultIsThere = std::filesystem::exists(result_); };
    ASSERT_TRUE(run_());
    EXPECT_FALSE(resultIsThere);
    EXPECT_EQ(readFile(unpackUpload_() / "input"), content_);
}

TEST_P(FromStep, createsTheOutputDirectory)
{
    QX_NEED_PRIVATE_ROOT();
    std::filesystem::remove_all(ConverterService::serviceOutputDirectory());
    ASSERT_TRUE(run_());
    EXPECT_TRUE(std::filesystem::is_directory(ConverterService::serviceOutputDirectory()));
}

TEST_P(FromStep, asksForTheStatusUntilTheConversionIsFinished)
{
    setUnfinished_({"not_started", "in_progress"});
    ASSERT_TRUE(run_());
    EXPECT_THAT(requests_(),
                ElementsAre("POST /converter/v2/request", "PUT /storage/upload", "POST /converter/v2/convert",
                            "GET /converter/v2/status", "GET /converter/v2/status", "GET /converter/v2/status",
                            "GET /storage/result"));
}

TEST_P(FromStep, reportsAQuarterBeforeEveryStatusThatIsAskedFor)
{
    setUnfinished_({"in_progress"});
    std::vector<std::vector<float>> before;
    whenAsked_["/converter/v2/convert"] = [&] { before.push_back(reports_()); };
    whenAsked_["/converter/v2/status"] = [&] { before.push_back(reports_()); };
    ASSERT_TRUE(run_(record_()));
    ASSERT_EQ(before.size(), 3U);
    EXPECT_EQ(before[0].back(), 0.25F);
    EXPECT_EQ(before[1].size(), before[0].size() + 1);
    EXPECT_EQ(before[1].back(), 0.25F);
    EXPECT_EQ(before[2].size(), before[1].size() + 1);
    EXPECT_EQ(before[2].back(), 0.25F);
    EXPECT_EQ(reports_().at(before[2].size()), 0.5F);
}

TEST_P(FromStep, reportsFractionsThatNeverFall)
{
    ASSERT_TRUE(run_(record_()));
    const auto all = reports_();
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end())) << ::testing::PrintToString(all);
    EXPECT_EQ(all.front(), 0.0F);
    for (const float point : {0.25F, 0.5F, 0.75F})
        EXPECT_THAT(all, ::testing::Contains(point));
    EXPECT_LE(all.back(), 1.0F);
}

TEST_P(FromStep, refusesAnInputOfTheOutputFormatBeforeAnyRequest)
{
    EXPECT_EQ(runFile_(folder_.write(name_ + ".vxu", content_)).error(), "Input and output formats are equal");
    EXPECT_THAT(requests_(), IsEmpty());
    EXPECT_THAT(logLines_(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_directory(ConverterService::serviceOutputDirectory()));
}

TEST_P(FromStep, leavesAnOldResultAloneForAnInputOfTheOutputFormat)
{
    std::ofstream(result_) << "left behind";
    EXPECT_FALSE(runFile_(folder_.write(name_ + ".vxu", content_)));
    EXPECT_TRUE(std::filesystem::exists(result_));
}

TEST_P(FromStep, convertsAnInputWhoseExtensionIsWrittenOtherwise)
{
    EXPECT_TRUE(runFile_(folder_.write(name_ + ".VXU", content_)));
}

TEST_P(FromStep, namesItsFilesAfterTheStemUpToTheLastDot)
{
    bool payloadIsThere = false;
    whenAsked_["/storage/upload"] = [&] { payloadIsThere = std::filesystem::exists(output_(name_ + ".a.input.zip")); };
    ASSERT_TRUE(runFile_(folder_.write(name_ + ".a.step", content_)));
    EXPECT_TRUE(payloadIsThere);
}

} // namespace

} // namespace VX
