#pragma once

#include "AgentCall.h"

#include <VXMcp/Tool.h>

#include <boost/signals2/connection.hpp>
#include <json/value.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace VX
{

/// The long work that agents have begun: tasks of the progress panel, each with what came of it.
/// @threads the UI thread
class AgentJobs
{
public:
    /// Remembers that `call` began the task `id`. The call reports its progress and cancels it; unless it is to wait,
    /// it is answered at once.
    void begin(const std::shared_ptr<AgentCall>& call, std::uint64_t id, bool wait);

    /// The task has ended with `result`, which answers the call where that waits.
    void end(std::uint64_t id, AgentResult result);

    /// What is known of a task: {"job", "title", "state", "progress", "seconds"} and, once it has ended, "result" or
    /// "error".
    /// @return `There is no job N. …`
    [[nodiscard]] tl::expected<Json::Value, std::string> describe(std::uint64_t id) const;

    /// What is known of all that run, whoever began them, and of those of agents that ended lately.
    [[nodiscard]] std::vector<Json::Value> list() const;

    [[nodiscard]] static Json::Value schema();

private:
    struct Job
    {
        std::uint64_t id = 0;
        std::string title;
        std::shared_ptr<AgentCall> call;            ///< waits; null where it does not
        std::shared_ptr<void> timer;                ///< reports progress
        boost::signals2::scoped_connection closing; ///< lets the call go when the viewer closes
        bool ended = false;
        std::string error;
        Json::Value result;
    };

    void release_(std::uint64_t id);
    [[nodiscard]] static Json::Value endedJson_(const Job& job);

    std::deque<Job> jobs_; ///< the newest in front
};

} // namespace VX
