#pragma once

#include <VXMcp/Export.h>
#include <VXMesh/ThreadAnnotations.h>

#include <json/value.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX::Mcp
{

/// One call of a tool, as the tool sees it.
/// @threads any, for all operations
class VXMCP_API ToolCall
{
public:
    using ProgressSink = std::function<void(double value, double total, const std::string& message)>;
    using LogSink = std::function<void(const std::string& level, const Json::Value& data)>;

    /// What the server knows about the client that calls.
    struct Client
    {
        ProgressSink progress{};      ///< where reports of progress go; empty: nobody asked for them
        LogSink log{};                ///< where log messages go; empty: nobody asked for them
        Json::Value capabilities{};   ///< as the client declared them; an object or null
        Json::Value inputResponses{}; ///< its answers to the `Inquiry` of the call before; an object or null
        std::string requestState{};   ///< `Inquiry::state` of the call before
    };

    /// @param arguments  a JSON object
    explicit ToolCall(Json::Value arguments, ProgressSink progress = {});
    ToolCall(Json::Value arguments, Client client);

    ToolCall(const ToolCall&) = delete;
    ToolCall& operator=(const ToolCall&) = delete;

    /// The arguments, an object that fits the tool's input schema.
    [[nodiscard]] const Json::Value& arguments() const { return arguments_; }

    /// Whether nobody waits for the result any more: the client has cancelled the call or closed its stream, or the
    /// server stops. Stays true.
    [[nodiscard]] bool isCanceled() const;

    /// Calls `callback` when the call is cancelled, on the thread that cancels it, or at once where that has happened.
    /// Of several callbacks the last one counts.
    void onCanceled(std::function<void()> callback);

    /// Tells the client how far the work is; does nothing where it did not ask. What is not more than the last report
    /// is left out.
    /// @param value    0 to `total`
    /// @param total    in the same unit; 0 where it is not known
    /// @param message  a sentence about the step in progress; may be empty
    void progress(double value, double total, const std::string& message = {});

    /// Sends the client a log message, where it wants those of this level.
    /// @param level  "debug", "info", "notice", "warning", "error", "critical", "alert" or "emergency"
    /// @param data   any JSON, a string as a rule
    void log(const std::string& level, const Json::Value& data);

    /// What the client can be asked for in an `Inquiry`: it has a member "elicitation", "sampling" or "roots" for each.
    [[nodiscard]] const Json::Value& clientCapabilities() const { return client_.capabilities; }

    /// The client's answers, by the keys of `Inquiry::requests`; null in a first call.
    [[nodiscard]] const Json::Value& inputResponses() const { return client_.inputResponses; }

    /// What the tool left in `Inquiry::state`; empty in a first call.
    [[nodiscard]] const std::string& requestState() const { return client_.requestState; }

    /// Makes the call a cancelled one; further times do nothing.
    void cancel();

private:
    const Json::Value arguments_;
    const Client client_;
    mutable Mutex mutex_;
    std::function<void()> callback_ VX_GUARDED_BY(mutex_);
    double reported_ VX_GUARDED_BY(mutex_) = -1;
    bool isCanceled_ VX_GUARDED_BY(mutex_) = false;
};

/// A piece of what a tool gives back.
struct Content
{
    enum class Type
    {
        Text,         ///< `text`
        Image,        ///< `data`, `mimeType`
        Audio,        ///< `data`, `mimeType`
        Resource,     ///< `uri`, `mimeType`, and `text`, or `data` where that is not empty
        ResourceLink, ///< `uri`, `mimeType`, the name in `text`
    };

    Type type = Type::Text;
    std::string text{};
    std::string mimeType{};
    std::string data{}; ///< bytes as they are
    std::string uri{};
};

/// What a tool has to know from the client before it can go on. The tool is called again with the answers.
struct Inquiry
{
    /// An object with a request for each key: `{"method": "elicitation/create", "params": {…}}`, and the same with
    /// "sampling/createMessage" and "roots/list".
    Json::Value requests{};
    std::string state{}; ///< comes back unchanged, whichever way it took
};

/// What a tool gives back.
struct ToolResult
{
    Json::Value structured{};         ///< an object that fits the tool's output schema, or null
    std::vector<Content> content{};   ///< where it is empty, `structured` is sent as text too
    bool isError = false;             ///< the call failed; `structured` is not sent then
    std::optional<Inquiry> inquiry{}; ///< in place of all the others

    /// A failure. The text says what is wrong and what to do about it; the agent reads it.
    [[nodiscard]] VXMCP_API static ToolResult error(std::string text);

    [[nodiscard]] VXMCP_API static ToolResult of(Json::Value structured);
};

/// Something that agents may do.
struct Tool
{
    using Answer = std::function<void(ToolResult)>;

    std::string name{}; ///< "scene.list"; letters, digits, "_", "-" and ".", at most 128
    std::string title{};
    std::string description{};
    /// JSON Schema of an object. Arguments that do not fit are refused by the server, and the tool does not see them.
    /// Understood are type, properties, required, additionalProperties, enum, const, minimum, maximum,
    /// exclusiveMinimum, exclusiveMaximum, items, minItems, maxItems, minLength and maxLength; others are passed on to
    /// the client only.
    Json::Value inputSchema{};
    Json::Value outputSchema{}; ///< null: none
    bool readOnly = false;
    bool destructive = false;
    bool idempotent = false;
    bool openWorld = false;
    /// Called on a server thread, which other clients wait for: what takes long is done elsewhere. Answers exactly
    /// once, on any thread; later answers are ignored, and a call whose `Answer` is dropped has failed.
    std::function<void(std::shared_ptr<ToolCall>, Answer)> run{};
};

} // namespace VX::Mcp
