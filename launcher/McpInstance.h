#pragma once

#include <VXMesh/ThreadAnnotations.h>
#include <VXViewer/AgentInstance.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace VX
{

/// Which of the running programs an agent is connected to: the one found first, for as long as it runs. A program that
/// is started meanwhile does not take its place.
/// @threads any
class McpInstance
{
public:
    /// Those that run, the one started last in front.
    using Find = std::function<std::vector<AgentInstance>()>;

    /// @param port  that the user has named: only the program that serves there counts
    explicit McpInstance(std::optional<int> port, Find find = findAgentInstances);

    /// Where the program serves; nothing: there is none.
    [[nodiscard]] std::optional<std::uint16_t> port();

private:
    const std::optional<int> named_;
    const Find find_;
    Mutex mutex_;
    std::int64_t process_ VX_GUARDED_BY(mutex_) = 0; ///< of the program; 0: none was found yet
};

} // namespace VX
