#include "InformationPanel.h"
#include "ModalMessages.h"
#include "PanelWindow.h"
#include "ProgressPanel.h"
#include "ScaleIndicator.h"
#include "SceneTreePanel.h"
#include "StatusLine.h"
#include "Translate.h"
#include "panels/SceneContextMenu.h"

#include <VXViewer/FileDialog.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/Selection.h>
#include <VXViewer/ShortcutManager.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <imgui.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <utility>

namespace VX
{

namespace
{

constexpr float leftWidth = 280;
constexpr float statusHeight = 28;
constexpr float informationHeight = 232;

/// A narrower window keeps its pixels for the scene.
constexpr float smallestWidthWithPanel = 560;

} // namespace

struct ImGuiMenu::State
{
    explicit State(Viewer& owner)
        : viewer(owner)
        , contextMenu(owner)
        , tree(owner, [this] { openListMenu(); })
        , information(owner)
        , statusLine(owner)
        , progress(owner)
        , dialog(owner)
        , files(owner, dialog)
    {
    }

    void openListMenu()
    {
        contextMenu.open({ImGui::GetMousePos().x, ImGui::GetMousePos().y});
        isListMenu = true;
    }

    void openSceneMenu(const Vector2f& position)
    {
        contextMenu.open(position);
        isListMenu = false;
    }

    Viewer& viewer;
    SceneContextMenu contextMenu;
    bool isListMenu = false; ///< else the scene's
    SceneTreePanel tree;
    InformationPanel information;
    StatusLine statusLine;
    ProgressPanel progress;
    ModalMessages messages;
    FileDialog dialog;
    SceneFiles files;
    std::unique_ptr<ShortcutManager> shortcuts;
};

ImGuiMenu::ImGuiMenu() = default;

ImGuiMenu::~ImGuiMenu() = default;

void ImGuiMenu::init(Viewer* viewer)
{
    state_ = std::make_unique<State>(*viewer);
    viewer->view().setContextRequest([this](const Vector2f& position) { state_->openSceneMenu(position); });
    setupShortcuts_();
}

void ImGuiMenu::shutdown()
{
    if (state_)
        state_->viewer.view().setContextRequest({});
    state_.reset();
}

Viewer* ImGuiMenu::viewer_() const
{
    return state_ ? &state_->viewer : nullptr;
}

ShortcutManager* ImGuiMenu::shortcutManager() const
{
    return state_ ? state_->shortcuts.get() : nullptr;
}

FileDialog& ImGuiMenu::fileDialog() const
{
    return state_->dialog;
}

float ImGuiMenu::leftPanelWidth() const
{
    const auto width = static_cast<float>(state_ ? state_->viewer.framebufferSize().width : 0);
    return width >= UI::px(smallestWidthWithPanel) ? UI::px(leftWidth) : 0;
}

float ImGuiMenu::topPanelHeight() const
{
    return 0;
}

void ImGuiMenu::setupShortcuts_()
{
    if (!state_->shortcuts)
        state_->shortcuts = std::make_unique<ShortcutManager>();
}

void ImGuiMenu::settingsLoaded() {}

bool ImGuiMenu::handleKey(const KeyEvent& event)
{
    return state_ && state_->shortcuts && state_->shortcuts->process(event);
}

bool ImGuiMenu::isCovered() const
{
    return false;
}

bool ImGuiMenu::isStartingUp() const
{
    return false;
}

PixelRect ImGuiMenu::drawFrame()
{
    draw();
    // A copy: a plug-in may end itself or another one.
    for (const std::shared_ptr<ViewerPlugin>& plugin : std::vector(state_->viewer.plugins()))
        plugin->draw();
    return sceneArea_();
}

PixelRect ImGuiMenu::sceneArea_() const
{
    const PixelSize size = state_->viewer.framebufferSize();
    const int left = static_cast<int>(leftPanelWidth());
    const int top = static_cast<int>(UI::px(topPanelHeight()));
    const int bottom = static_cast<int>(UI::px(statusHeight));
    return {left, top, std::max(0, size.width - left), std::max(0, size.height - top - bottom)};
}

void ImGuiMenu::draw()
{
    drawTopPanel_();
    if (leftPanelWidth() > 0)
        drawLeftPanel_();
    drawStatusLine_();
    if (state_->viewer.scene().children().empty())
        drawEmptySceneHint_();
    drawAdditionalWindows();
}

void ImGuiMenu::drawTopPanel_() {}

void ImGuiMenu::drawLeftPanel_()
{
    const PixelSize size = state_->viewer.framebufferSize();
    const float width = leftPanelWidth();
    const float top = UI::px(topPanelHeight());
    const float bottom = static_cast<float>(size.height) - UI::px(statusHeight);
    // In a low window the two share the height.
    const float split = bottom - std::min(UI::px(informationHeight), std::round((bottom - top) / 2));
    const auto toRect = [&](float from, float to)
    { return PixelRect{0, static_cast<int>(from), static_cast<int>(width), std::max(1, static_cast<int>(to - from))}; };

    beginPanel("Scene", toRect(top, split), panelFlags & ~ImGuiWindowFlags_NoScrollbar);
    drawSceneListButtons_();
    state_->tree.draw();
    drawPanelEdge({width - UI::px(1), top}, {width, split});
    UI::endWindow();

    beginPanel("Information", toRect(split, bottom), panelFlags & ~ImGuiWindowFlags_NoScrollbar);
    state_->information.draw();
    drawCustomSelectionInformation_(state_->information.selected());
    drawPanelEdge({0, split}, {width, split + UI::px(1)});
    drawPanelEdge({width - UI::px(1), split}, {width, bottom});
    UI::endWindow();
}

void ImGuiMenu::drawStatusLine_()
{
    const PixelSize size = state_->viewer.framebufferSize();
    const float top = static_cast<float>(size.height) - UI::px(statusHeight);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(12), UI::px(4)));
    beginPanel("Status Line", {0, static_cast<int>(top), size.width, static_cast<int>(UI::px(statusHeight))},
               panelFlags | ImGuiWindowFlags_NoScrollWithMouse);
    ImGui::PopStyleVar();
    state_->statusLine.draw();
    drawPanelEdge({0, top}, {static_cast<float>(size.width), top + UI::px(1)});
    UI::endWindow();
}

void ImGuiMenu::drawSceneListButtons_() {}

void ImGuiMenu::drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>&) {}

void ImGuiMenu::sceneContextAppeared_() {}

bool ImGuiMenu::renameInSceneList(const std::shared_ptr<Object>& object)
{
    if (leftPanelWidth() <= 0)
        return false;
    state_->tree.rename(object);
    return true;
}

void ImGuiMenu::drawEmptySceneHint_()
{
    const PixelRect& area = state_->viewer.view().area();
    const ImVec2 center(static_cast<float>(area.x) + static_cast<float>(area.width) / 2,
                        static_cast<float>(area.y) + static_cast<float>(area.height) / 2);
    ImGui::SetNextWindowPos(center, ImGuiCond_Always, {0.5F, 0.5F});
    UI::beginWindow("Hint", panelFlags | ImGuiWindowFlags_NoBackground | ImGuiWindowFlags_AlwaysAutoResize |
                                ImGuiWindowFlags_NoInputs);
    const std::string title = tr("Open a file or drop it here");
    std::string formats;
    for (const std::string& extension : state_->viewer.fileOpening().readableExtensions())
        formats += (formats.empty() ? "" : "  ") + extension;
    const float formatsWidth = ImGui::CalcTextSize(formats.c_str()).x;
    const float titleWidth = UI::font(UI::Font::Headline)
                                 ->CalcTextSizeA(UI::font(UI::Font::Headline)->FontSize, FLT_MAX, 0, title.c_str())
                                 .x;
    const float start = ImGui::GetCursorPosX();
    const float width = std::max(titleWidth, formatsWidth);
    ImGui::SetCursorPosX(start + std::round((width - titleWidth) / 2));
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        UI::text(title);
    }
    ImGui::SetCursorPosX(start + std::round((width - formatsWidth) / 2));
    UI::secondaryText(formats);
    UI::endWindow();
}

void ImGuiMenu::drawAdditionalWindows()
{
    draw_helpers();
}

void ImGuiMenu::draw_helpers()
{
    drawScaleIndicator(state_->viewer.view());
    if (state_->contextMenu.draw() && state_->isListMenu)
        sceneContextAppeared_();
    if (!state_->messages.isEmpty())
        state_->messages.draw();
    else if (state_->files.isAsking())
        state_->files.drawQuestion();
    else if (state_->dialog.isOpen())
        state_->dialog.draw();
    else
        state_->progress.draw();
}

void ImGuiMenu::showModalMessage(const std::string& message, NotificationType type)
{
    if (!state_)
        return;
    state_->messages.add(message, type);
    state_->viewer.incrementForceRedrawFrames(2);
}

void ImGuiMenu::chooseFilesToOpen()
{
    FileDialogRequest request;
    request.title = tr("Open Files");
    request.filters = state_->viewer.fileOpening().dialogFilters();
    state_->dialog.show(std::move(request),
                        [viewer = &state_->viewer](const auto& paths) { viewer->openFiles(paths); });
}

SceneFiles& ImGuiMenu::sceneFiles() const
{
    return state_->files;
}

void ImGuiMenu::askToClose()
{
    if (state_->viewer.window())
        state_->viewer.window()->requestClose(true);
}

bool ImGuiMenu::mayClose()
{
    return !state_ || state_->files.mayClose();
}

} // namespace VX
