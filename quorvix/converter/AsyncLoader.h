#pragma once

#include <quorvix/Export.h>
#include <quorvix/async/StateMachine.h>
#include <quorvix/converter/ConversionContext.h>

#include <VXViewer/WebRequest.h>

#include <json/value.h>

#include <functional>
#include <memory>

namespace VX::ConverterService
{

/// The asynchronous form of `fromStep`: the steps of its state machine and what they share. Always held by
/// `std::shared_ptr`; the machine keeps it alive.
class QUORVIX_API AsyncLoader : public std::enable_shared_from_this<AsyncLoader>
{
public:
    using Callback = std::function<void(tl::expected<LoadedObjects, std::string>)>;
    using Resume = std::function<void(int)>;

    enum State : int
    {
        Connect,
        Upload,
        StartConvert,
        ConvertStarted,
        CheckStatus,
        StatusReceived,
        Process,
        Wait, ///< the wait state
        Done  ///< the final state
    };

    AsyncLoader(const std::filesystem::path& path, Callback callback, ProgressCallback progress);

    [[nodiscard]] static std::shared_ptr<StateMachine> makeStateMachine(const std::shared_ptr<AsyncLoader>& loader);

    /// Sends `request`; its answer becomes that of the last request, and the machine goes on at `next`. An answer that
    /// is delivered again is ignored.
    /// @return `Wait`
    [[nodiscard]] State fetch(WebRequest request, State next, const Resume& resume);

private:
    using Step = State (AsyncLoader::*)(const Resume&);

    /// Hands the result to the caller.
    [[nodiscard]] State finish_(tl::expected<LoadedObjects, std::string> result);
    [[nodiscard]] State fail_(const std::string& error);

    /// Runs one step; an exception fails the run.
    [[nodiscard]] State runStep_(Step step, const Resume& resume);

    [[nodiscard]] State connect_(const Resume& resume);
    [[nodiscard]] State upload_(const Resume& resume);
    [[nodiscard]] State startConvert_(const Resume& resume);
    [[nodiscard]] State convertStarted_(const Resume& resume);
    [[nodiscard]] State checkStatus_(const Resume& resume);
    [[nodiscard]] State statusReceived_(const Resume& resume);
    [[nodiscard]] State process_(const Resume& resume);

    ConversionContext context_;
    Callback callback_; ///< empty once called
    Json::Value response_;
};

} // namespace VX::ConverterService
