#include "ImGuiInput.h"
#include "UiState.h"
#include "UiStyle.h"

#include <VXViewer/Clock.h>
#include <VXViewer/UI.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/UiTree.h>

#include <imgui.h>
#include <imgui_impl_opengl3.h>
#include <imgui_internal.h>

#include <epoxy/gl.h>

#include <algorithm>

namespace VX
{

struct UiSession::State
{
    UiFonts fonts;
    float scale = 0;
    double lastFrameTime = monotonicSeconds();
};

UiSession::UiSession(Window& window)
    : window_(window)
    , state_(std::make_unique<State>())
{
    IMGUI_CHECKVERSION();
    ImGui::CreateContext();
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;
    io.LogFilename = nullptr;
    // A blinking cursor would draw frames while nothing happens.
    io.ConfigInputTextCursorBlink = false;
    io.BackendPlatformName = "VXViewer";
    ImGuiInput::connect(window_);
    ImGui_ImplOpenGL3_Init("#version 330 core");
    UiState::instance().fonts = &state_->fonts;
    setScale_(window_.contentScale());
}

UiSession::~UiSession()
{
    UiState::instance().fonts = nullptr;
    UiTree::instance().clear();
    ImGui_ImplOpenGL3_Shutdown();
    ImGui::DestroyContext();
}

void UiSession::setScale_(float scale)
{
    state_->scale = scale;
    UI::setScale(scale);
    applyUiStyle();
    state_->fonts.load(scale);
    ImGui_ImplOpenGL3_DestroyDeviceObjects();
}

void UiSession::feed(const InputEvent& event)
{
    ImGuiInput::feed(event);
}

bool UiSession::isOverUi(const Vector2f& position) const
{
    return ImGuiInput::isOverUi(position);
}

bool UiSession::takesKeyboard() const
{
    return ImGui::GetIO().WantTextInput ||
           ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
}

bool UiSession::hasQueuedInput() const
{
    return ImGuiInput::hasQueuedEvents();
}

void UiSession::beginFrame()
{
    if (window_.contentScale() != state_->scale)
        setScale_(window_.contentScale());
    const PixelSize size = window_.framebufferSize();
    ImGuiIO& io = ImGui::GetIO();
    io.DisplaySize = {static_cast<float>(size.width), static_cast<float>(size.height)};
    const double now = monotonicSeconds();
    io.DeltaTime = std::max(1e-4F, static_cast<float>(now - state_->lastFrameTime));
    state_->lastFrameTime = now;
    ImGui_ImplOpenGL3_NewFrame();
    ImGui::NewFrame();
    UiTree::instance().beginFrame();
}

void UiSession::endFrame()
{
    ImGui::Render();
    UiTree::instance().endFrame();
    ImGuiInput::updateCursor(window_);
}

bool UiSession::wantsAnotherFrame() const
{
    const ImVector<ImGuiWindow*>& windows = ImGui::GetCurrentContext()->Windows;
    return std::any_of(windows.begin(), windows.end(),
                       [](const ImGuiWindow* window)
                       {
                           // A child that is clipped away stays hidden; its window tells what is to come.
                           if ((window->Flags & ImGuiWindowFlags_ChildWindow) != 0)
                               return false;
                           // A window that sizes itself every frame is ready once it shows.
                           const bool sizesItself = (window->Flags & ImGuiWindowFlags_AlwaysAutoResize) != 0;
                           const bool fits = !sizesItself && (window->AutoFitFramesX > 0 || window->AutoFitFramesY > 0);
                           return window->Active && (window->HiddenFramesCanSkipItems > 0 ||
                                                     window->HiddenFramesCannotSkipItems > 0 || fits);
                       });
}

void UiSession::draw()
{
    glBindFramebuffer(GL_FRAMEBUFFER, window_.defaultFramebuffer());
    ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
}

} // namespace VX
