#pragma once

#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>

#include <net/HttpBodyStream.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace VX::Mcp
{

/// Something that clients may want to hear of.
struct Change
{
    enum class Kind
    {
        ToolList,
        PromptList,
        ResourceList,
        Resource,
    };

    Kind kind = Kind::ToolList;
    std::string uri{}; ///< of the resource
};

/// The streams on which clients listen for changes.
/// @threads any
class Listeners
{
public:
    struct Listener
    {
        std::shared_ptr<HttpBodyStream> stream{};
        std::function<bool(const Change&)> wants{};
        Json::Value subscriptionId{}; ///< null in the revisions without
        std::string sessionId{};      ///< empty in those without sessions
    };

    /// @return a number for `remove`
    std::uint64_t add(Listener listener);
    void remove(std::uint64_t number);

    void publish(const Change& change);

    /// Ends the streams of a session.
    void endSession(const std::string& sessionId);

    /// Ends all of them.
    void endAll();

private:
    Mutex mutex_;
    std::map<std::uint64_t, Listener> listeners_ VX_GUARDED_BY(mutex_);
    std::uint64_t last_ VX_GUARDED_BY(mutex_) = 0;
};

} // namespace VX::Mcp
