#include "FromStepFixture.h"

#include <VXViewer/CommandLoop.h>
#include <VXViewer/ProgressBar.h>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace VX
{

namespace
{

using Test::Form;
using Test::HttpRecorder;

class FromStepBlocking : public Test::FromStepFixture
{
protected:
    /// Text that no archive makes smaller.
    static std::string noise_(std::size_t size)
    {
        std::string text(size, '\0');
        std::uint32_t state = 1;
        for (char& c : text)
            c = static_cast<char>((state = state * 1664525 + 1013904223) >> 24U);
        return text;
    }

    /// How many of the fractions lie between the two.
    std::size_t reportsBetween_(float from, float to) const
    {
        const auto all = reports_();
        return static_cast<std::size_t>(
            std::count_if(all.begin(), all.end(), [&](float fraction) { return fraction > from && fraction < to; }));
    }
};

TEST_F(FromStepBlocking, returnsOnItsOwnThreadWhileNobodyMarshalsAnything)
{
    const auto result = ConverterService::fromStep(input_, {});
    EXPECT_TRUE(result) << result.error();
}

TEST_F(FromStepBlocking, reportsTheUploadUpToAQuarterAndTheDownloadUpToThreeQuarters)
{
    const auto file = folder_.write(name_ + ".step", noise_(8'000'000));
    answer_("/storage/result", HttpRecorder::Answer{.body = noise_(8'000'000)});
    EXPECT_FALSE(run_(Form::Blocking, file, record_()));
    const auto all = reports_();
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end())) << ::testing::PrintToString(all);
    EXPECT_EQ(all.front(), 0.0F);
    EXPECT_LE(all.back(), 1.0F);
    EXPECT_EQ(reportsBetween_(0.25F, 0.5F), 0U);
}

TEST_F(FromStepBlocking, isCanceledDuringTheUpload)
{
    // The server does not answer before the test has seen a report of the upload.
    std::promise<void> reported;
    whenAsked_["/storage/upload"] = [&] { reported.get_future().wait_for(std::chrono::seconds(10)); };
    int count = 0;
    const std::string error = errorOf_(Form::Blocking, record_(
                                                           [&](float)
                                                           {
                                                               // The first report is the one before the upload.
                                                               if (++count == 2)
                                                                   reported.set_value();
                                                               return count < 2;
                                                           }));
    EXPECT_EQ(error, "Operation was canceled");
    EXPECT_TRUE(std::filesystem::exists(payload_));
    EXPECT_THAT(requests_(), ::testing::Not(::testing::Contains("POST /converter/v2/convert")));
}

TEST_F(FromStepBlocking, isCanceledDuringTheDownloadAndLeavesNothingOfIt)
{
    answer_("/storage/result", HttpRecorder::Answer{.delay = std::chrono::seconds(30), .file = scene_});
    const std::string error = errorOf_(Form::Blocking, record_(
                                                           [half = 0](float fraction) mutable
                                                           {
                                                               half += fraction == 0.5F ? 1 : 0;
                                                               return half < 2;
                                                           }));
    EXPECT_EQ(error, "Operation was canceled");
    EXPECT_FALSE(std::filesystem::exists(result_));
}

TEST_F(FromStepBlocking, countsAnExceptionDuringATransferAsACancel)
{
    answer_("/storage/result", HttpRecorder::Answer{.delay = std::chrono::seconds(30), .file = scene_});
    const std::string error = errorOf_(Form::Blocking, record_(
                                                           [half = 0](float fraction) mutable
                                                           {
                                                               half += fraction == 0.5F ? 1 : 0;
                                                               if (half == 2)
                                                                   throw std::runtime_error("broken");
                                                               return true;
                                                           }));
    EXPECT_EQ(error, "Operation was canceled");
}

TEST_F(FromStepBlocking, takesItsTimeOverSeveralConversionsAtOnce)
{
    giveEachItsOwnRequestId_();
    const auto other = folder_.write(name_ + ".other.step", content_);
    std::thread thread([&] { EXPECT_TRUE(run_(Form::Blocking, other)); });
    EXPECT_TRUE(run_(Form::Blocking));
    thread.join();
}

/// The names on the progress bar while a conversion runs as one of its tasks.
class FromStepTaskNames : public FromStepBlocking
{
protected:
    void TearDown() override
    {
        ProgressBar::shutdown();
        CommandLoop::clear();
        FromStepBlocking::TearDown();
    }

    static std::string shownName_()
    {
        const auto tasks = ProgressBar::tasks();
        return tasks.empty() ? "no task" : tasks.front().taskName;
    }

    /// Runs a conversion on a worker of the progress bar. @return the name after its end
    std::string runAsTask_(const ProgressCallback& progress)
    {
        auto after = std::make_shared<std::promise<std::string>>();
        auto future = after->get_future();
        ProgressBar::order("Open part.step",
                           [this, progress, after](const ProgressCallback&) -> ProgressBar::Finish
                           {
                               static_cast<void>(ConverterService::fromStep(input_, progress));
                               after->set_value(shownName_());
                               return {};
                           });
        return future.get();
    }
};

TEST_F(FromStepTaskNames, tellTheStages)
{
    std::map<std::string, std::string> names;
    for (const char* path : {"/converter/v2/request", "/storage/upload", "/converter/v2/convert",
                             "/converter/v2/status", "/storage/result"})
        whenAsked_[path] = [&names, path] { names[path] = shownName_(); };
    std::string whileLoading;
    EXPECT_EQ(runAsTask_(
                  [&](float fraction)
                  {
                      if (fraction > 0.75F)
                          whileLoading = shownName_();
                      return true;
                  }),
              "");
    EXPECT_EQ(names["/converter/v2/request"], "Connecting to the converter service");
    EXPECT_EQ(names["/storage/upload"], "Uploading the file to the converter service");
    EXPECT_EQ(names["/converter/v2/convert"], "Converting the file");
    EXPECT_EQ(names["/converter/v2/status"], "Converting the file");
    EXPECT_EQ(names["/storage/result"], "Downloading the converted file");
    EXPECT_EQ(whileLoading, "Processing the file");
}

TEST_F(FromStepTaskNames, goAwayAfterAnError)
{
    answerText_("/converter/v2/convert", 200, "{}");
    EXPECT_EQ(runAsTask_({}), "");
}

TEST_F(FromStepTaskNames, goAwayAfterAnException)
{
    EXPECT_EQ(runAsTask_([](float) -> bool { throw std::runtime_error("broken"); }), "");
}

} // namespace

} // namespace VX
