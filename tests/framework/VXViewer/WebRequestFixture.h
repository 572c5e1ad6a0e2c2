#pragma once

#include "tests/support/HttpRecorder.h"
#include "tests/support/TempDir.h"

#include <VXViewer/WebRequest.h>
#include <VXViewer/WebRequests.h>

#include <gtest/gtest.h>
#include <json/value.h>
#include <json/writer.h>

#include <chrono>
#include <future>
#include <memory>
#include <string>
#include <utility>

namespace VX::Test
{

/// Requests over loopback to a recorder, in a process that has sent none before.
class WebRequestFixture : public ::testing::Test
{
public:
    void TearDown() override { WebRequests::reset(); }

    /// The answer to `request`, waited for.
    static Json::Value answerTo(WebRequest request)
    {
        Json::Value answer;
        request.setAsync(false);
        request.send([&](const Json::Value& value) { answer = value; });
        return answer;
    }

    [[nodiscard]] Json::Value get(const std::string& path) const { return answerTo(WebRequest(recorder.url(path))); }

    /// Sends `request`; its answer arrives in the future.
    static std::future<Json::Value> send(const WebRequest& request)
    {
        auto promise = std::make_shared<std::promise<Json::Value>>();
        auto future = promise->get_future();
        request.send([promise](const Json::Value& value) { promise->set_value(value); });
        return future;
    }

    /// Waits ten seconds at most.
    static Json::Value wait(std::future<Json::Value>& future)
    {
        if (future.wait_for(std::chrono::seconds(10)) != std::future_status::ready)
            return "no answer";
        return future.get();
    }

    TempDir folder;
    HttpRecorder recorder;
};

} // namespace VX::Test
