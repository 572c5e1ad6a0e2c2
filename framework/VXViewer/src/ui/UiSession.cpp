#include "../icons/IconStore.h"
#include "ImGuiInput.h"
#include "UiInputQueue.h"
#include "UiNavigation.h"
#include "UiState.h"
#include "UiStyle.h"

#include <VXViewer/Clock.h>
#include <VXViewer/UI.h>
#include <VXViewer/UiSession.h>
#include <VXViewer/UiTree.h>

#define GLFW_INCLUDE_NONE
#include <GLFW/glfw3.h>
#include <imgui.h>
#include <imgui_impl_opengl3.h>
#include <imgui_internal.h>

#include <epoxy/gl.h>

#include <algorithm>
#include <utility>

namespace VX
{

struct UiSession::State
{
    UiFonts fonts;
    UiNavigation navigation;
    UiInputQueue input;
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
    io.ConfigFlags |= ImGuiConfigFlags_NavEnableKeyboard;
    // Instead of the switching of windows that shows their internal names.
    ImGui::GetCurrentContext()->ConfigNavWindowingKeyNext = 0;
    ImGui::GetCurrentContext()->ConfigNavWindowingKeyPrev = 0;
    ImGuiInput::connect(window_);
    ImGui_ImplOpenGL3_Init("#version 330 core");
    UiState::instance().fonts = &state_->fonts;
    setScale_(wantedScale_());
}

UiSession::~UiSession()
{
    UiState::instance().fonts = nullptr;
    UiTree::instance().clear();
    IconStore::instance().clear();
    ImGui_ImplOpenGL3_Shutdown();
    ImGui::DestroyContext();
}

float UiSession::wantedScale_() const
{
    return window_.contentScale() * UI::userScale();
}

void UiSession::setScale_(float scale)
{
    state_->scale = scale;
    UI::setScale(scale);
    applyUiStyle();
    loadFonts_();
}

void UiSession::loadFonts_()
{
    state_->fonts.load(state_->scale, UiState::instance().fontPaths);
    ImGui_ImplOpenGL3_DestroyDeviceObjects();
}

void UiSession::feed(const InputEvent& event)
{
    const auto* key = std::get_if<KeyEvent>(&event);
    const bool isStray = key && key->action != KeyEvent::Action::Release && UiNavigation::isStray(*key);
    if (!isStray)
        state_->input.add(event);
}

bool UiSession::isOverUi(const Vector2f& position) const
{
    return ImGuiInput::isOverUi(position);
}

bool UiSession::takesKeyboard() const
{
    // As the last frame left it: what the context tells to others is a frame older.
    return ImGui::GetCurrentContext()->WantTextInputNextFrame > 0 ||
           ImGui::IsPopupOpen(nullptr, ImGuiPopupFlags_AnyPopupId | ImGuiPopupFlags_AnyPopupLevel);
}

bool UiSession::navigatesBy(const KeyEvent& event) const
{
    return UiNavigation::takes(event) || (event.key == GLFW_KEY_ESCAPE && UiState::instance().escapeTaken);
}

bool UiSession::beginNavigation(const KeyEvent& event)
{
    return state_->navigation.begin(event);
}

bool UiSession::hasQueuedInput() const
{
    return ImGuiInput::hasQueuedEvents() || !state_->input.isEmpty();
}

void UiSession::beginFrame()
{
    if (wantedScale_() != state_->scale)
        setScale_(wantedScale_());
    else if (state_->fonts.isOutdated())
        loadFonts_();
    if (std::exchange(UiState::instance().styleOutdated, false))
        applyUiStyle();
    UiState::instance().escapeTaken = false;
    const PixelSize size = window_.framebufferSize();
    ImGuiIO& io = ImGui::GetIO();
    io.DisplaySize = {static_cast<float>(size.width), static_cast<float>(size.height)};
    const double now = monotonicSeconds();
    io.DeltaTime = std::max(1e-4F, static_cast<float>(now - state_->lastFrameTime));
    state_->lastFrameTime = now;
    ImGui_ImplOpenGL3_NewFrame();
    ImGui::NewFrame();
    // What lies behind a modal window is dim at once: growing dim would take frames that nothing else asks for.
    ImGui::GetCurrentContext()->DimBgRatio = ImGui::GetTopMostPopupModal() ? 1.0F : 0.0F;
    state_->input.frameBegan();
    state_->navigation.applyRequest();
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
    if (state_->fonts.isOutdated())
        return true;
    const ImVector<ImGuiWindow*>& windows = ImGui::GetCurrentContext()->Windows;
    return std::any_of(windows.begin(), windows.end(),
                       [](const ImGuiWindow* window)
                       {
                           // Scroll bars and tabs show in its second frame.
                           if (window->Active && window->Appearing)
                               return true;
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
