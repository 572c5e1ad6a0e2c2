#pragma once

namespace VX
{

/// What the header of the ribbon shows of the agents: a button with the number of those that are connected, and a
/// pop-up with the address, the last calls and the switch that turns the server off and on.
/// @threads the UI thread, within a frame
class AgentChip
{
public:
    AgentChip() = delete;

    /// In pixels; 0 where this program does not serve agents.
    [[nodiscard]] static float width();

    /// From the cursor on.
    static void draw();

    /// Asks for a frame where what is shown is no longer true.
    /// @threads any
    static void refresh();
};

} // namespace VX
