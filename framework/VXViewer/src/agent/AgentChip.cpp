#include "AgentChip.h"

#include "AgentServer.h"
#include "menu/Translate.h"
#include "panels/NamedPopup.h"

#include <VXMcp/Mcp.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/NotificationType.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#include <fmt/chrono.h>

#include <algorithm>
#include <atomic>
#include <string>

namespace VX
{

namespace
{

constexpr float side = 28;
constexpr float gap = 8;
constexpr float padding = 12;
constexpr float popupWidth = 360;
constexpr std::size_t shownCalls = 8;
constexpr const char* popupName = "Agents";

/// What the last frame showed, for who wants to know from another thread whether that still holds.
struct Shown
{
    std::atomic<bool> popup = false;
    std::atomic<unsigned> clients = 0;
    std::atomic<bool> running = false;
};

Shown& shown()
{
    static Shown instance;
    return instance;
}

void drawAddress(const Mcp::Server::Status& status)
{
    if (!status.running)
    {
        UI::wrappedText(tr("Switched off: no program can drive the viewer."));
        return;
    }
    UI::wrappedText(tr("Programs of this user can drive the viewer here:"));
    ImGui::AlignTextToFramePadding();
    UI::text(status.address);
    ImGui::SameLine();
    if (UI::iconButton("copy", tr("Copy the address"), false, {UI::px(side), UI::px(side)}))
        ImGui::SetClipboardText(status.address.c_str());
    UI::tooltip(tr("Copy the address"));
    UI::text(trn("{} connection", "{} connections", status.clients, status.clients));
}

void drawCall(const Mcp::Server::Status::Call& call)
{
    const std::string time =
        fmt::format("{:%H:%M:%S}", fmt::localtime(std::chrono::system_clock::to_time_t(call.time)));
    const std::string text = call.client.empty() ? call.tool : fmt::format("{}  ({})", call.tool, call.client);
    const float timeWidth = ImGui::CalcTextSize(time.c_str()).x;
    const float room = ImGui::GetContentRegionAvail().x;
    const float start = ImGui::GetCursorPosX();
    if (call.failed)
    {
        UI::icon("alert-triangle", 16, UI::Color::Warning);
        UI::tooltip(tr("This call failed"));
        ImGui::SameLine();
    }
    UI::text(UI::elided(text, room - timeWidth - UI::px(gap + side)));
    ImGui::SameLine(start + room - timeWidth);
    UI::secondaryText(time);
}

void drawCalls(const Mcp::Server::Status& status)
{
    if (status.lastCalls.empty())
    {
        UI::secondaryText(tr("No calls yet"));
        return;
    }
    UI::secondaryText(tr("Last calls"));
    for (std::size_t i = 0; i < std::min(status.lastCalls.size(), shownCalls); ++i)
    {
        ImGui::PushID(static_cast<int>(i));
        drawCall(status.lastCalls[i]);
        ImGui::PopID();
    }
}

void setOn(bool on)
{
    const auto done = AgentServer::instance().setOn(on);
    const auto& menu = getViewerInstance().getMenuPlugin();
    if (!done && menu)
        menu->showModalMessage(done.error(), NotificationType::Error);
}

void drawPopup(const Mcp::Server::Status& status, float right, float bottom)
{
    ImGui::SetNextWindowPos({std::max(right, UI::px(popupWidth + gap)), bottom + UI::px(gap)}, ImGuiCond_Always,
                            {1, 0});
    ImGui::SetNextWindowSizeConstraints({UI::px(popupWidth), 0},
                                        {UI::px(popupWidth), ImGui::GetMainViewport()->Size.y});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding), UI::px(padding)));
    const bool open = beginNamedPopup(popupName, ImGuiWindowFlags_NoMove);
    ImGui::PopStyleVar();
    if (!open)
        return;
    bool on = status.running;
    const bool switched = UI::checkbox(tr("Let agents drive the viewer"), on);
    UI::separator();
    drawAddress(status);
    UI::separator();
    drawCalls(status);
    ImGui::EndPopup();
    if (switched)
        setOn(on);
}

} // namespace

float AgentChip::width()
{
    return AgentServer::instance().isOffered() ? UI::px(side) : 0;
}

void AgentChip::draw()
{
    const Mcp::Server::Status status = Mcp::getDefaultServer().status();
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const std::string label = tr("Agents");
    ImGui::PushStyleColor(ImGuiCol_Text, UI::color(status.running ? UI::Color::Text : UI::Color::SecondaryText));
    if (UI::iconButton("link", label, status.clients > 0, {UI::px(side), UI::px(side)}))
        ImGui::OpenPopup(popupName);
    ImGui::PopStyleColor();
    UI::tooltip(!status.running ? tr("Agents: switched off")
                                : trn("Agents: {} connection to {}", "Agents: {} connections to {}", status.clients,
                                      status.clients, status.address));
    shown().popup = ImGui::IsPopupOpen(popupName);
    shown().clients = status.clients;
    shown().running = status.running;
    drawPopup(status, min.x + UI::px(side), min.y + UI::px(side));
}

void AgentChip::refresh()
{
    const Mcp::Server& server = Mcp::getDefaultServer();
    const Mcp::Server::Status status = server.status();
    if (shown().popup || shown().clients != status.clients || shown().running != status.running)
        getViewerInstance().postEmptyEvent();
}

} // namespace VX
