#include "ActionItem.h"
#include "ItemGroups.h"
#include "PanelItem.h"
#include "menu/Translate.h"

#include <VXViewer/HistoryStore.h>
#include <VXViewer/Locale.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <imgui.h>

#include <optional>
#include <utility>

namespace VX
{

namespace
{

std::string whyNotUndo(const HistoryStore& history)
{
    if (history.isScopeOpen())
        return tr("Another step is not finished yet.");
    return history.position() == 0 ? tr("There is nothing to undo.") : std::string();
}

std::string whyNotRedo(const HistoryStore& history)
{
    if (history.isScopeOpen())
        return tr("Another step is not finished yet.");
    return history.position() == history.actions().size() ? tr("There is nothing to redo.") : std::string();
}

/// The list of all steps: a press on one brings the scene to where it was behind that step.
class HistoryItem : public PanelItem
{
public:
    explicit HistoryItem(Viewer& viewer)
        : PanelItem("History", viewer, {translatable("History"), 260})
    {
    }

protected:
    void drawContent_() override
    {
        HistoryStore& history = *viewer_().getGlobalHistoryStore();
        const bool moved = std::exchange(shownPosition_, history.position()) != history.position();
        std::optional<std::size_t> chosen;
        ImGui::BeginChild("##steps", {0, UI::px(listHeight)});
        ImGuiListClipper clipper;
        clipper.Begin(static_cast<int>(history.actions().size()) + 1);
        if (moved)
            clipper.IncludeItemByIndex(static_cast<int>(history.position()));
        while (clipper.Step())
        {
            for (int row = clipper.DisplayStart; row < clipper.DisplayEnd; ++row)
            {
                const auto position = static_cast<std::size_t>(row);
                if (drawRow_(history, position))
                    chosen = position;
                if (moved && position == history.position())
                    ImGui::SetScrollHereY();
            }
        }
        ImGui::EndChild();
        if (chosen)
            history.jumpTo(*chosen);
    }

private:
    /// The row of what the scene is after `position` steps. @return true when it was pressed
    static bool drawRow_(const HistoryStore& history, std::size_t position)
    {
        const std::string name =
            position == 0 ? tr("As at the beginning") : Locale::translate(history.actions()[position - 1]->name());
        const bool done = position <= history.position();
        ImGui::PushID(static_cast<int>(position));
        ImGui::PushStyleColor(ImGuiCol_Text, UI::color(done ? UI::Color::Text : UI::Color::SecondaryText));
        const bool pressed = UI::listRow(name, position == history.position());
        ImGui::PopStyleColor();
        ImGui::PopID();
        return pressed;
    }

    static constexpr float listHeight = 280;

    std::size_t shownPosition_ = 0;
};

} // namespace

RibbonItems makeHistoryItems(Viewer& viewer)
{
    return {
        std::make_shared<ActionItem>("Undo", ItemActions{.press = [&viewer] { viewer.getGlobalHistoryStore()->undo(); },
                                                         .unavailableReason = [&viewer]
                                                         { return whyNotUndo(*viewer.getGlobalHistoryStore()); }}),
        std::make_shared<ActionItem>("Redo", ItemActions{.press = [&viewer] { viewer.getGlobalHistoryStore()->redo(); },
                                                         .unavailableReason = [&viewer]
                                                         { return whyNotRedo(*viewer.getGlobalHistoryStore()); }}),
        std::make_shared<HistoryItem>(viewer),
    };
}

} // namespace VX
