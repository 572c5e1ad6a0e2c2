#include "FromStepFixture.h"
#include <quorvix/async/StateMachineExecutor.h>
#include <quorvix/converter/AsyncLoader.h>

#include <gmock/gmock.h>

#include <tests/quorvix/support/RecordingTransport.h>

#include <optional>
#include <thread>

namespace VX
{

namespace
{

using ConverterService::AsyncLoader;
using Test::Form;
using Test::makeAnswer;
using Test::RecordingTransport;
using Test::StepResult;
using ::testing::ElementsAre;

class FromStepAsync : public Test::FromStepFixture
{
protected:
    /// Starts a conversion whose result goes to `results_`.
    void start_(const ProgressCallback& progress = {})
    {
        ConverterService::fromStep(
            input_, [this](StepResult result) { results_.push_back(std::move(result)); }, progress);
    }

    /// The answers of a service that needs no time, given by the transport itself.
    Json::Value serve_(const WebRequestData& request)
    {
        const auto endsWith = [&](const char* path) { return request.url.ends_with(path); };
        if (endsWith("/request"))
            return makeAnswer(200, R"({"result": {"request_id": ")" + requestId_ + R"(", "url": "http://s/upload"}})");
        if (endsWith("/convert"))
            return makeAnswer(200, R"({"result": {}})");
        if (endsWith("/status"))
            return makeAnswer(200, R"({"result": {"state": "finished", "url": "http://s/result"}})");
        if (endsWith("/result"))
            std::filesystem::copy_file(scene_, request.outputPath);
        return makeAnswer(200, "");
    }

    /// Urls of the requests so far.
    static std::vector<std::string> urls_(const RecordingTransport& transport)
    {
        std::vector<std::string> all;
        for (const auto& sent : transport.sent())
            all.push_back(sent.request.url);
        return all;
    }

    std::vector<StepResult> results_;
};

TEST_F(FromStepAsync, returnsOnceTheFirstRequestIsOnItsWay)
{
    const auto transport = RecordingTransport::install();
    start_();
    EXPECT_TRUE(results_.empty());
    ASSERT_EQ(transport->sent().size(), 1U);
    EXPECT_TRUE(transport->last().request.async);
    EXPECT_TRUE(transport->last().request.url.ends_with("/converter/v2/request"));
    transport->last().answer(makeAnswer(0, ""));
}

TEST_F(FromStepAsync, callsBackBeforeItReturnsWhereTheFormatsAreEqual)
{
    const auto thread = std::this_thread::get_id();
    bool called = false;
    ConverterService::fromStep(folder_.write(name_ + ".vxu", ""),
                               [&](const StepResult& result)
                               {
                                   called = true;
                                   EXPECT_EQ(result.error(), "Input and output formats are equal");
                                   EXPECT_EQ(std::this_thread::get_id(), thread);
                               },
                               {});
    EXPECT_TRUE(called);
}

TEST_F(FromStepAsync, reportsItsStages)
{
    ASSERT_TRUE(run_(Form::Async, record_()));
    const auto all = reports_();
    ASSERT_GE(all.size(), 5U);
    EXPECT_THAT(std::vector(all.begin(), all.begin() + 5), ElementsAre(0.0F, 0.25F, 0.25F, 0.5F, 0.75F));
    for (std::size_t i = 5; i < all.size(); ++i)
        EXPECT_TRUE(all[i] >= 0.75F && all[i] <= 1.0F) << all[i];
}

TEST_F(FromStepAsync, transfersWithoutReports)
{
    const auto transport =
        RecordingTransport::install([this](const WebRequestData& request) { return serve_(request); });
    start_(record_());
    ASSERT_EQ(results_.size(), 1U);
    for (const auto& sent : transport->sent())
    {
        EXPECT_FALSE(sent.request.uploadProgress);
        EXPECT_FALSE(sent.request.downloadProgress);
    }
}

TEST_F(FromStepAsync, callsBackOnTheThreadOfTheLastAnswer)
{
    const auto transport = RecordingTransport::install();
    std::thread::id calledOn;
    ConverterService::fromStep(input_, [&](const StepResult&) { calledOn = std::this_thread::get_id(); }, {});
    std::thread other([&] { transport->last().answer(makeAnswer(0, "")); });
    const auto otherId = other.get_id();
    other.join();
    EXPECT_EQ(calledOn, otherId);
}

TEST_F(FromStepAsync, runsToItsEndWithinTheFirstCallWhereEveryAnswerComesAtOnce)
{
    const auto transport =
        RecordingTransport::install([this](const WebRequestData& request) { return serve_(request); });
    start_();
    ASSERT_EQ(results_.size(), 1U);
    EXPECT_TRUE(results_.front()) << results_.front().error();
    EXPECT_EQ(urls_(*transport).size(), 5U);
}

TEST_F(FromStepAsync, ignoresAnAnswerThatIsDeliveredAgain)
{
    const auto transport = RecordingTransport::install();
    start_();
    const auto first = transport->last();
    const auto answer = serve_(first.request);
    first.answer(answer);
    ASSERT_EQ(transport->sent().size(), 2U);
    first.answer(answer);
    EXPECT_EQ(transport->sent().size(), 2U) << "the file is uploaded once";
    EXPECT_TRUE(results_.empty());
    transport->last().answer(makeAnswer(0, ""));
    transport->last().answer(makeAnswer(0, ""));
    EXPECT_EQ(results_.size(), 1U);
}

TEST_F(FromStepAsync, isFinishedOnceWhereTheLastAnswerIsDeliveredAgain)
{
    const auto transport = RecordingTransport::install();
    start_();
    while (results_.empty())
    {
        const auto sent = transport->last();
        const auto answer = serve_(sent.request);
        sent.answer(answer);
        sent.answer(answer);
    }
    EXPECT_EQ(results_.size(), 1U);
    EXPECT_EQ(urls_(*transport).size(), 5U);
}

TEST_F(FromStepAsync, goesOnOnWhicheverThreadAnAnswerArrives)
{
    const auto transport = RecordingTransport::install();
    start_();
    while (results_.empty())
    {
        const auto sent = transport->last();
        std::thread([&] { sent.answer(serve_(sent.request)); }).join();
    }
    EXPECT_TRUE(results_.front()) << results_.front().error();
}

TEST_F(FromStepAsync, letsGoOfTheCallbacksAtItsEnd)
{
    const auto transport =
        RecordingTransport::install([this](const WebRequestData& request) { return serve_(request); });
    const auto captured = std::make_shared<int>(0);
    ConverterService::fromStep(input_, [captured](const StepResult&) {}, [captured](float) { return true; });
    transport->forget();
    EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(FromStepAsync, keepsTheCallbacksWhileItWaits)
{
    const auto transport = RecordingTransport::install();
    const auto captured = std::make_shared<int>(0);
    ConverterService::fromStep(input_, [captured](const StepResult&) {}, {});
    EXPECT_GT(captured.use_count(), 1);
    transport->last().answer(makeAnswer(0, ""));
    transport->forget();
    EXPECT_EQ(captured.use_count(), 1);
}

TEST_F(FromStepAsync, treatsAnswersThatMakeNoSenseAsErrors)
{
    for (const Json::Value& odd : {Json::Value(), Json::Value("text"), makeAnswer(200, "no json"),
                                   makeAnswer(200, R"({"result": {"request_id": [], "url": {}}})")})
    {
        const auto transport = RecordingTransport::install();
        start_();
        EXPECT_NO_THROW(transport->last().answer(odd));
    }
    ASSERT_EQ(results_.size(), 4U);
    EXPECT_EQ(results_[0].error(), "Connection error");
    EXPECT_EQ(results_[1].error(), "Connection error");
    EXPECT_THAT(results_[2].error(), ::testing::StartsWith("Invalid JSON: "));
    EXPECT_EQ(results_[3].error(), "\"request_id\" field is missing");
}

TEST_F(FromStepAsync, survivesACompletionCallbackThatThrows)
{
    const auto transport = RecordingTransport::install();
    int calls = 0;
    ConverterService::fromStep(input_,
                               [&](const StepResult&)
                               {
                                   ++calls;
                                   throw std::runtime_error("broken");
                               },
                               {});
    EXPECT_NO_THROW(transport->last().answer(makeAnswer(0, "")));
    EXPECT_EQ(calls, 1);
    EXPECT_THAT(log_.texts(spdlog::level::err), ElementsAre("STEP loader: the completion callback failed"));
}

TEST_F(FromStepAsync, needsNoCompletionCallback)
{
    const auto transport =
        RecordingTransport::install([this](const WebRequestData& request) { return serve_(request); });
    EXPECT_NO_THROW(ConverterService::fromStep(input_, nullptr, {}));
    EXPECT_EQ(urls_(*transport).size(), 5U);
}

TEST_F(FromStepAsync, runsSeveralConversionsAtATime)
{
    giveEachItsOwnRequestId_();
    std::vector<std::promise<StepResult>> promises(4);
    for (std::size_t i = 0; i < promises.size(); ++i)
    {
        const auto file = folder_.write(name_ + '.' + std::to_string(i) + ".step", content_);
        ConverterService::fromStep(file, [&promise = promises[i]](StepResult result)
                                   { promise.set_value(std::move(result)); }, {});
    }
    for (auto& promise : promises)
        EXPECT_TRUE(promise.get_future().get());
}

TEST(AsyncLoaderStates, areNumberedInTheOrderOfTheStages)
{
    EXPECT_THAT((std::vector<int>{AsyncLoader::Connect, AsyncLoader::Upload, AsyncLoader::StartConvert,
                                  AsyncLoader::ConvertStarted, AsyncLoader::CheckStatus, AsyncLoader::StatusReceived,
                                  AsyncLoader::Process, AsyncLoader::Wait, AsyncLoader::Done}),
                ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(AsyncLoaderMachine, startsConnectingAndEndsDone)
{
    const auto machine = AsyncLoader::makeStateMachine(std::make_shared<AsyncLoader>("part.step", nullptr, nullptr));
    EXPECT_EQ(machine->initialState(), AsyncLoader::Connect);
    EXPECT_EQ(machine->finalState(), AsyncLoader::Done);
}

TEST(AsyncLoaderFetch, sendsTheRequestAsItIsAndWaits)
{
    const auto transport = RecordingTransport::install();
    const auto loader = std::make_shared<AsyncLoader>("part.step", nullptr, nullptr);
    std::vector<int> resumed;
    WebRequest request("http://127.0.0.1/path");
    EXPECT_EQ(loader->fetch(request, AsyncLoader::Process, [&](int state) { resumed.push_back(state); }),
              AsyncLoader::Wait);
    EXPECT_TRUE(transport->last().request.async);
    EXPECT_TRUE(resumed.empty());
    transport->last().answer(makeAnswer(200, ""));
    EXPECT_THAT(resumed, ElementsAre(AsyncLoader::Process));
    WebRequests::reset();
}

} // namespace

} // namespace VX
