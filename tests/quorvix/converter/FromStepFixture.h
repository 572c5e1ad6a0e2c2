#pragma once

#include "OutputDirectory.h"
#include <quorvix/converter/ConverterService.h>
#include <quorvix/setup/Deployment.h>

#include <VXMesh/ObjectMesh.h>
#include <VXViewer/WebRequests.h>

#include <tests/support/HttpRecorder.h>
#include <tests/support/LogCapture.h>
#include <tests/support/TempDir.h>

#include <atomic>
#include <future>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

namespace VX::Test
{

enum class Form
{
    Blocking,
    Async
};

using StepResult = tl::expected<LoadedObjects, std::string>;

/// A conversion service and a storage on loopback, and conversions that go through them. The service converts whatever
/// it gets into one scene; a test changes the answers that it is about.
class FromStepFixture : public OutputDirectoryTest
{
protected:
    void SetUp() override
    {
        OutputDirectoryTest::SetUp();
        if (IsSkipped())
            return;
        resetDeployment();
        ASSERT_TRUE(setDeployment(withEmbeddedServices({}, recorder_.port())));
        saveResult_(scene_);
        answer_("/converter/v2/request", [this] { return contextAnswer_(requestId_); });
        answer_("/storage/upload", [] { return HttpRecorder::Answer{}; });
        answer_("/converter/v2/convert", [] { return resultText_(""); });
        answer_("/converter/v2/status", [this] { return statusAnswer_(); });
        answer_("/storage/result", [this] { return HttpRecorder::Answer{.file = scene_}; });
    }

    void TearDown() override
    {
        WebRequests::reset();
        resetDeployment();
        std::error_code ignored;
        for (const auto& entry :
             std::filesystem::directory_iterator(ConverterService::serviceOutputDirectory(), ignored))
        {
            if (entry.path().filename().string().find(name_) != std::string::npos)
                std::filesystem::remove_all(entry.path(), ignored);
        }
    }

    /// Answers the requests for `path`, after the test's `whenAsked_` for it.
    void answer_(const std::string& path, const std::function<HttpRecorder::Answer()>& make)
    {
        recorder_.answer(path,
                         [this, path, make](const HttpRequest&)
                         {
                             if (const auto ask = whenAsked_.find(path); ask != whenAsked_.end())
                                 ask->second();
                             return make();
                         });
    }

    void answer_(const std::string& path, const HttpRecorder::Answer& fixed)
    {
        answer_(path, [fixed] { return fixed; });
    }

    /// What the service answers to the first request.
    HttpRecorder::Answer contextAnswer_(const std::string& requestId) const
    {
        return resultText_(R"("request_id": ")" + requestId + R"(", "url": ")" +
                           recorder_.url("/storage/upload?key=1") + '"');
    }

    /// Gives every conversion a working directory of its own, as the service does.
    void giveEachItsOwnRequestId_()
    {
        answer_("/converter/v2/request", [this, count = std::make_shared<std::atomic_int>(0)]
                { return contextAnswer_(requestId_ + '-' + std::to_string(++*count)); });
    }

    /// Lets the service say that the conversion failed, or the storage that it has nothing.
    void answerText_(const std::string& path, int status, const std::string& text)
    {
        answer_(path, HttpRecorder::Answer{.status = status, .body = text});
    }

    /// Converts `path` and waits for the end.
    StepResult run_(Form form, const std::filesystem::path& path, const ProgressCallback& progress = {})
    {
        if (form == Form::Blocking)
            return ConverterService::fromStep(path, progress);
        std::promise<StepResult> promise;
        ConverterService::fromStep(
            path, [&promise](StepResult result) { promise.set_value(std::move(result)); }, progress);
        auto future = promise.get_future();
        if (future.wait_for(std::chrono::seconds(40)) != std::future_status::ready)
            ADD_FAILURE() << "no result after 40 s";
        return future.get();
    }

    StepResult run_(Form form, const ProgressCallback& progress = {}) { return run_(form, input_, progress); }

    std::string errorOf_(Form form, const ProgressCallback& progress = {})
    {
        const auto result = run_(form, progress);
        return result ? "no error" : result.error();
    }

    /// Remembers what is reported, and goes on while `goOn` says so.
    ProgressCallback record_(std::function<bool(float)> goOn = {})
    {
        return [this, goOn = std::move(goOn)](float fraction)
        {
            {
                const std::lock_guard lock(mutex_);
                recorded_.push_back(fraction);
            }
            return !goOn || goOn(fraction);
        };
    }

    std::vector<float> reports_() const
    {
        const std::lock_guard lock(mutex_);
        return recorded_;
    }

    /// "POST /converter/v2/request" and so on, in order.
    std::vector<std::string> requests_() const
    {
        std::vector<std::string> lines;
        for (const HttpRequest& request : recorder_.requests())
            lines.push_back(request.method + ' ' + request.path);
        return lines;
    }

    /// The lines of the pipeline, all of level info.
    std::vector<std::string> logLines_() const
    {
        std::vector<std::string> lines;
        for (const std::string& line : log_.texts(spdlog::level::info))
        {
            if (line.starts_with("STEP loader: "))
                lines.push_back(line);
        }
        return lines;
    }

    /// Lets the next conversion be unfinished that often.
    void setUnfinished_(std::vector<std::string> states) { unfinished_ = std::move(states); }

    TempDir folder_;
    HttpRecorder recorder_;
    LogCapture log_;
    const std::string name_ = "fromStep" + std::to_string(::getpid());
    const std::string content_ = "ISO-10303-21;";
    const std::filesystem::path input_ = folder_.write(name_ + ".step", content_);
    const std::filesystem::path scene_ = folder_.path() / "scene.vxu";
    std::string requestId_ = "request-" + name_;
    const std::filesystem::path workingFolder_ = output_(requestId_);
    const std::filesystem::path payload_ = output_(name_ + ".input.zip");
    const std::filesystem::path result_ = output_(name_ + ".vxu");
    /// Called on a thread of the server when the path is asked for.
    std::map<std::string, std::function<void()>> whenAsked_;

    const std::vector<std::string> allRequests_ = {"POST /converter/v2/request", "PUT /storage/upload",
                                                   "POST /converter/v2/convert", "GET /converter/v2/status",
                                                   "GET /storage/result"};

private:
    static HttpRecorder::Answer resultText_(const std::string& members)
    {
        return {.body = R"({"result": {)" + members + "}}"};
    }

    HttpRecorder::Answer statusAnswer_()
    {
        const std::lock_guard lock(mutex_);
        if (unfinished_.empty())
            return resultText_(R"("state": "finished", "url": ")" + recorder_.url("/storage/result") + '"');
        const std::string state = unfinished_.front();
        unfinished_.erase(unfinished_.begin());
        return resultText_(R"("state": ")" + state + '"');
    }

    static void saveResult_(const std::filesystem::path& file)
    {
        Mesh mesh;
        mesh.points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        mesh.triangles = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
        const auto root = std::make_shared<Object>();
        const auto child = std::make_shared<ObjectMesh>(std::make_shared<const Mesh>(std::move(mesh)));
        child->setName("Tetrahedron");
        root->addChild(child);
        const auto saved = saveObjectToFile(*root, file, {});
        ASSERT_TRUE(saved) << saved.error();
    }

    mutable std::mutex mutex_;
    std::vector<float> recorded_;
    std::vector<std::string> unfinished_;
};

/// A fixture whose tests hold for both forms.
class FromStepForms : public FromStepFixture, public ::testing::WithParamInterface<Form>
{
protected:
    StepResult run_(const ProgressCallback& progress = {}) { return FromStepFixture::run_(GetParam(), progress); }

    StepResult runFile_(const std::filesystem::path& path) { return FromStepFixture::run_(GetParam(), path); }

    std::string errorOf_(const ProgressCallback& progress = {})
    {
        return FromStepFixture::errorOf_(GetParam(), progress);
    }
};

inline std::string formName(const ::testing::TestParamInfo<Form>& form)
{
    return form.param == Form::Blocking ? "Blocking" : "Async";
}

} // namespace VX::Test
