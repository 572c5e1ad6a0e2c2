#include "agent/AgentToolList.h"
#include "agent/AllowedFolders.h"
#include "tests/framework/VXViewer/UiTestScene.h"
#include "tests/support/TempConfig.h"
#include "tests/support/TempDir.h"

#include <VXMesh/Json.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/HistoryStore.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/Viewer.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
#include <string_view>

namespace
{

/// A viewer without a window, whose files lie in a folder of the test's.
class Tools
{
public:
    Tools() { VX::AllowedFolders::setSettings({folder_.path()}); }

    /// Calls a tool whose arguments nobody has checked, and waits for its answer, which must come.
    void call(std::size_t tool, const Json::Value& arguments)
    {
        refill_();
        std::promise<VX::Mcp::ToolResult> promise;
        auto result = promise.get_future();
        tools_[tool % tools_.size()].run(std::make_shared<VX::Mcp::ToolCall>(arguments),
                                         [&promise](VX::Mcp::ToolResult given)
                                         { promise.set_value(std::move(given)); });
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(8);
        while (result.wait_for(std::chrono::microseconds(100)) != std::future_status::ready)
        {
            VX::CommandLoop::processCommands();
            if (std::chrono::steady_clock::now() > end)
                std::abort();
        }
        VX::CommandLoop::processCommands();
    }

private:
    /// The same small scene each time.
    void refill_()
    {
        viewer_.getGlobalHistoryStore()->clear();
        viewer_.scene().setChildren({VX::Test::makeBox("A"), VX::Test::makeBox("B", {2, 0, 0}, {3, 1, 1})});
    }

    VX::Test::TempConfig config_;
    VX::Test::TempDir folder_;
    VX::Viewer& viewer_ = VX::getViewerInstance();
    std::vector<VX::Mcp::Tool> tools_ = VX::makeAgentTools(viewer_);
};

} // namespace

// The first byte chooses a tool, the others are its arguments as JSON.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Tools tools;
    if (size == 0)
        return 0;
    const auto arguments = VX::deserializeJsonValue(std::string(reinterpret_cast<const char*>(data + 1), size - 1));
    if (arguments && arguments->isObject())
        tools.call(data[0], *arguments);
    return 0;
}
