#include "ProgressPanel.h"

#include "Translate.h"

#include <VXViewer/MainLoop.h>
#include <VXViewer/ProgressBar.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <algorithm>

namespace VX
{

namespace
{

/// Shorter work shows no panel: it would only flash.
constexpr double delay = 0.25;
constexpr double refreshInterval = 0.1;
constexpr std::size_t maxRows = 5;

std::string elapsedText(double seconds)
{
    const int whole = static_cast<int>(seconds);
    return whole < 60 ? trf("{} s", whole) : trf("{} min {:02} s", whole / 60, whole % 60);
}

void drawRow(const ProgressInfo& task, bool withTitle)
{
    ImGui::PushID(static_cast<int>(task.id));
    const float width = ImGui::GetContentRegionAvail().x;
    if (withTitle)
        UI::text(UI::elided(task.title, width));
    const float cancelWidth = UI::px(88);
    const float barWidth = width - cancelWidth - UI::px(12);
    const float barHeight = UI::px(8);

    const ImVec2 start = ImGui::GetCursorPos();
    ImGui::SetCursorPosY(start.y + (UI::px(28) - barHeight) / 2);
    UI::progressBar(task.title, task.fraction, {barWidth, barHeight});
    ImGui::SetCursorPos({start.x + barWidth + UI::px(12), start.y});
    if (UI::button(tr("Cancel") + "##cancel", {cancelWidth, 0}))
        ProgressBar::cancel(task.id);

    std::string left = task.waiting ? tr("Waiting") : task.taskName;
    if (left.empty())
        left = trf("{} %", static_cast<int>(task.fraction * 100));
    const std::string right = elapsedText(task.elapsed);
    const float rightWidth = ImGui::CalcTextSize(right.c_str()).x;
    UI::secondaryText(UI::elided(left, barWidth - rightWidth - UI::px(12)));
    ImGui::SameLine();
    ImGui::SetCursorPosX(start.x + barWidth - rightWidth);
    UI::secondaryText(right);
    ImGui::PopID();
}

} // namespace

void ProgressPanel::draw()
{
    const std::vector<ProgressInfo> tasks = ProgressBar::tasks();
    if (tasks.empty())
    {
        UI::closeModal(windowName());
        return;
    }
    const auto oldest = std::max_element(tasks.begin(), tasks.end(),
                                         [](const auto& a, const auto& b) { return a.elapsed < b.elapsed; });
    if (oldest->elapsed < delay && !ImGui::IsPopupOpen(windowName()))
    {
        viewer_.loop().requestFrameAfter(delay - oldest->elapsed);
        return;
    }
    viewer_.loop().requestFrameAfter(refreshInterval);
    if (!ImGui::IsPopupOpen(windowName()))
        ImGui::OpenPopup(windowName());
    const bool several = tasks.size() > 1;
    const std::string title = several ? trn("{} task", "{} tasks", tasks.size(), tasks.size()) : tasks.front().title;
    if (!UI::beginModal(windowName(), title, UI::px(480)))
        return;
    for (std::size_t i = 0; i < std::min(tasks.size(), maxRows); ++i)
        drawRow(tasks[i], several);
    if (tasks.size() > maxRows)
        UI::secondaryText(trf("and {} more", tasks.size() - maxRows));
    UI::endModal();
    if (!ProgressBar::isOrdered())
        UI::closeModal(windowName());
}

} // namespace VX
