#pragma once

#include <imgui.h>

#include <vector>

namespace VX
{

/// The keyboard control of the ribbon: what can be pressed are its stops, the arrows go to the next one in their
/// direction, Enter presses. A pop-up is a level of its own, and the keys move in the highest level there is.
/// @threads the UI thread
class RibbonFocus
{
public:
    /// Call these around what draws the stops.
    void beginFrame();
    void endFrame();

    /// The item before can be pressed by Enter. Draws the ring around it while it has the focus.
    /// @return true when Enter was pressed on it
    bool stop();

    /// The stops until `endLevel` are those of a pop-up. It takes its keys from Dear ImGui.
    void beginLevel();
    void endLevel();

    [[nodiscard]] bool isActive() const { return active_; }

    /// True when the focus is on the item `id`.
    [[nodiscard]] bool isOn(ImGuiID id) const;

    /// The focus goes to the first stop, with the next frame.
    void enter();
    void leave();

    /// @param key  GLFW's number
    /// @return true when the key was used; any other ends the control
    bool handleKey(int key, int mods);

private:
    struct Stop
    {
        ImGuiID id = 0;
        int level = 0;
        ImVec2 min;
        ImVec2 max;
    };

    void handlePopupKeys_();
    void move_(ImVec2 direction);
    void moveInOrder_(int step);
    [[nodiscard]] const Stop* focused_() const;
    [[nodiscard]] std::vector<Stop> topStops_() const;

    std::vector<Stop> drawn_;
    std::vector<Stop> shown_;
    /// What has the focus in each level.
    std::vector<ImGuiID> focus_;
    ImGuiID pressed_ = 0;
    int level_ = 0;
    int topLevel_ = 0;
    bool active_ = false;
};

} // namespace VX
