#include "../SceneSnapshot.h"
#include "InformationPanel.h"
#include "ModalMessages.h"
#include "ProgressPanel.h"
#include "SceneTreePanel.h"
#include "StatusLine.h"
#include "TopBar.h"
#include "Translate.h"

#include <VXMesh/ObjectFile.h>
#include <VXMesh/StringConvert.h>
#include <VXViewer/FileDialog.h>
#include <VXViewer/FileOpening.h>
#include <VXViewer/ImGuiMenu.h>
#include <VXViewer/ProgressBar.h>
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

constexpr float topHeight = 44;
constexpr float leftWidth = 280;
constexpr float statusHeight = 28;
constexpr float informationHeight = 232;

/// A narrower window keeps its pixels for the scene.
constexpr float smallestWidthWithPanel = 560;

constexpr ImGuiWindowFlags panelFlags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                        ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoBringToFrontOnFocus |
                                        ImGuiWindowFlags_NoNavFocus;

/// A panel that fills `rect` of the window, square and without a border.
void beginPanel(const char* name, const PixelRect& rect, ImGuiWindowFlags flags)
{
    ImGui::SetNextWindowPos({static_cast<float>(rect.x), static_cast<float>(rect.y)});
    ImGui::SetNextWindowSize({static_cast<float>(rect.width), static_cast<float>(rect.height)});
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, 0);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, 0);
    ImGui::PushStyleVar(ImGuiStyleVar_WindowMinSize, ImVec2(1, 1));
    UI::beginWindow(name, flags);
    ImGui::PopStyleVar(3);
}

/// One unit of border along an edge of the current panel.
void drawEdge(ImVec2 from, ImVec2 to)
{
    ImDrawList* draw = ImGui::GetWindowDrawList();
    draw->PushClipRect(from, to);
    draw->AddRectFilled(from, to, UI::color(UI::Color::Border));
    draw->PopClipRect();
}

std::vector<FileFilter> saveFilters()
{
    std::vector<FileFilter> filters;
    for (const FileFormat& format : fileFormats())
    {
        if (format.save)
            filters.push_back({format.name, format.extensions});
    }
    return filters;
}

} // namespace

struct ImGuiMenu::State
{
    explicit State(Viewer& owner)
        : viewer(owner)
        , topBar(owner)
        , tree(owner)
        , information(owner)
        , statusLine(owner)
        , progress(owner)
        , dialog(owner)
    {
    }

    Viewer& viewer;
    TopBar topBar;
    SceneTreePanel tree;
    InformationPanel information;
    StatusLine statusLine;
    ProgressPanel progress;
    ModalMessages messages;
    FileDialog dialog;
    std::unique_ptr<ShortcutManager> shortcuts;
};

ImGuiMenu::ImGuiMenu() = default;

ImGuiMenu::~ImGuiMenu() = default;

void ImGuiMenu::init(Viewer* viewer)
{
    state_ = std::make_unique<State>(*viewer);
    setupShortcuts_();
}

void ImGuiMenu::shutdown()
{
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
    return topHeight;
}

void ImGuiMenu::setupShortcuts_()
{
    if (!state_->shortcuts)
        state_->shortcuts = std::make_unique<ShortcutManager>();
    ShortcutManager& shortcuts = *state_->shortcuts;
    const int ctrl = getGlfwModPrimaryCtrl();
    Object& scene = state_->viewer.scene();
    shortcuts.set({{GLFW_KEY_O, ctrl}, "Open files", ShortcutCategory::Scene, [this] { chooseFilesToOpen(); }});
    shortcuts.set({{GLFW_KEY_S, ctrl}, "Save Scene As", ShortcutCategory::Scene, [this] { chooseFileToSave(); }});
    shortcuts.set({{GLFW_KEY_S, ctrl | GLFW_MOD_SHIFT},
                   "Save Scene As",
                   ShortcutCategory::Scene,
                   [this] { chooseFileToSave(); }});
    shortcuts.set(
        {{GLFW_KEY_DELETE, 0}, "Delete selected objects", ShortcutCategory::Edit, [&scene] { removeSelected(scene); }});
    shortcuts.set({{GLFW_KEY_A, ctrl},
                   "Select all objects",
                   ShortcutCategory::Selection,
                   [&scene]
                   {
                       for (const std::shared_ptr<Object>& child : scene.children())
                           child->setSelected(true);
                   }});
    shortcuts.set({{GLFW_KEY_ESCAPE, 0},
                   "Select nothing",
                   ShortcutCategory::Selection,
                   [&scene] { selectOnly(scene, nullptr); }});
}

bool ImGuiMenu::handleKey(const KeyEvent& event)
{
    return state_ && state_->shortcuts && state_->shortcuts->process(event);
}

PixelRect ImGuiMenu::drawFrame()
{
    draw();
    for (const std::shared_ptr<ViewerPlugin>& plugin : state_->viewer.plugins())
        plugin->draw();
    const PixelSize size = state_->viewer.framebufferSize();
    const int left = static_cast<int>(leftPanelWidth());
    const int top = static_cast<int>(UI::px(topHeight));
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

void ImGuiMenu::drawTopPanel_()
{
    const PixelSize size = state_->viewer.framebufferSize();
    const float height = UI::px(topHeight);
    beginPanel("Top Bar", {0, 0, size.width, static_cast<int>(height)},
               panelFlags | ImGuiWindowFlags_NoScrollWithMouse);
    state_->topBar.draw(*this);
    drawEdge({0, height - UI::px(1)}, {static_cast<float>(size.width), height});
    UI::endWindow();
}

void ImGuiMenu::drawLeftPanel_()
{
    const PixelSize size = state_->viewer.framebufferSize();
    const float width = leftPanelWidth();
    const float top = UI::px(topHeight);
    const float bottom = static_cast<float>(size.height) - UI::px(statusHeight);
    const float split = std::max(top + UI::px(84), bottom - UI::px(informationHeight));
    const auto toRect = [&](float from, float to)
    { return PixelRect{0, static_cast<int>(from), static_cast<int>(width), std::max(1, static_cast<int>(to - from))}; };

    beginPanel("Scene", toRect(top, split), panelFlags & ~ImGuiWindowFlags_NoScrollbar);
    state_->tree.draw();
    drawEdge({width - UI::px(1), top}, {width, split});
    UI::endWindow();

    beginPanel("Information", toRect(split, bottom), panelFlags & ~ImGuiWindowFlags_NoScrollbar);
    state_->information.draw();
    drawCustomSelectionInformation_(selectedObjects(state_->viewer.scene()));
    drawEdge({0, split}, {width, split + UI::px(1)});
    drawEdge({width - UI::px(1), split}, {width, bottom});
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
    drawEdge({0, top}, {static_cast<float>(size.width), top + UI::px(1)});
    UI::endWindow();
}

void ImGuiMenu::drawCustomSelectionInformation_(const std::vector<std::shared_ptr<Object>>&) {}

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
    if (!state_->messages.isEmpty())
        state_->messages.draw();
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

void ImGuiMenu::chooseFileToSave()
{
    Viewer& viewer = state_->viewer;
    if (viewer.scene().children().empty())
    {
        showModalMessage(tr("There is nothing to save. Open a file first."), NotificationType::Info);
        return;
    }
    FileDialogRequest request;
    request.mode = FileDialogRequest::Mode::SaveFile;
    request.title = tr("Save Scene As");
    request.filters = saveFilters();
    request.fileName = utf8string(pathFromUtf8(viewer.sceneName()).stem());
    state_->dialog.show(std::move(request), [this](const auto& paths) { saveTo_(paths.front()); });
}

void ImGuiMenu::saveTo_(const std::filesystem::path& path)
{
    const std::string name = utf8string(path.filename());
    ProgressBar::order(
        trf("Saving {}", name),
        [path, root = copyTree(state_->viewer.scene())](const ProgressCallback& progress) -> ProgressBar::Finish
        {
            const auto saved = saveObjectToFile(*root, path, progress);
            if (saved || saved.error() == operationCanceledText())
                return {};
            return [error = saved.error()]
            {
                if (const auto& menu = getViewerInstance().getMenuPlugin())
                    menu->showModalMessage(error, NotificationType::Error);
            };
        });
}

} // namespace VX
