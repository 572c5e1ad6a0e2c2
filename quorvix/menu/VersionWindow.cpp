#include <quorvix/menu/CheckForUpdatesSetting.h>
#include <quorvix/menu/ReleaseVersion.h>
#include <quorvix/menu/VersionWindow.h>
#include <quorvix/menu/WebsiteLink.h>
#include <quorvix/setup/Deployment.h>
#include <quorvix/setup/Translate.h>

#include <VXMesh/Version.h>
#include <VXViewer/ColorTheme.h>
#include <VXViewer/CommandLoop.h>
#include <VXViewer/UI.h>
#include <VXViewer/Viewer.h>
#include <VXViewer/WebRequest.h>

#include <fmt/format.h>
#include <imgui.h>
#include <json/value.h>

#include <algorithm>
#include <cmath>
#include <sstream>

namespace VX
{

namespace
{

// Units of the design.
constexpr float fromRight = 320; ///< the left edge of the window
constexpr float fromTop = 120;
constexpr float rounding = 4;
constexpr ImVec2 padding{9, 8};
constexpr ImVec2 buttonSize{88, 24};
constexpr ImVec2 buttonPadding{4, 3};
constexpr float crossSize = 28;
constexpr float margin = 8; ///< to the right edge of the program's window

constexpr ImGuiWindowFlags flags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize | ImGuiWindowFlags_NoMove |
                                   ImGuiWindowFlags_NoScrollbar | ImGuiWindowFlags_NoCollapse |
                                   ImGuiWindowFlags_AlwaysAutoResize;

constexpr int statusOk = 200;

std::string message(const std::string& version)
{
    std::string text = Product::tr("Version %s is available");
    const std::size_t place = text.find("%s");
    return place == std::string::npos ? text : text.replace(place, 2, version);
}

/// `text` with line ends between its words, where a line would be wider than `width` pixels. Dear ImGui itself would
/// break a version behind its points.
std::string wordWrapped(const std::string& text, float width)
{
    std::string wrapped;
    std::string line;
    std::istringstream words(text);
    for (std::string word; words >> word;)
    {
        const std::string longer = line.empty() ? word : fmt::format("{} {}", line, word);
        if (line.empty() || ImGui::CalcTextSize(longer.c_str()).x <= width)
        {
            line = longer;
            continue;
        }
        wrapped += line + '\n';
        line = word;
    }
    return wrapped + line;
}

/// Puts the cursor where an item of this height stands in the middle of the row.
void centerInRow(float top, float rowHeight, float height)
{
    ImGui::SetCursorPosY(top + std::round((rowHeight - height) / 2));
}

} // namespace

void VersionWindow::draw(bool mayShow)
{
    request_();
    if (mayShow && !newVersion->empty())
        drawWindow_();
}

void VersionWindow::request_()
{
    if (versionRequested || !CheckForUpdatesSetting::isOn())
        return;
    versionRequested = true;
    const auto callback = [weak = std::weak_ptr(newVersion)](const Json::Value& answer)
    {
        const auto take = [weak, answer]
        {
            if (const auto version = weak.lock())
                take_(answer, *version);
        };
        if (CommandLoop::isOnUiThread())
            take();
        else
            CommandLoop::appendCommand(take);
    };
    WebRequest().send(deployment().version + "/version/latesttag", "version", callback, true);
}

void VersionWindow::take_(const Json::Value& answer, std::string& shown)
{
    if (!answer.isObject())
        return;
    const Json::Value& code = answer["code"];
    const Json::Value& text = answer["text"];
    if (!code.isInt() || code.asInt() != statusOk || !text.isString())
        return;
    const auto running = parseReleaseVersion(GetVXVersionString());
    const auto latest = parseReleaseVersion(text.asString());
    if (!running || !latest || *running >= *latest)
        return;
    shown = releaseVersionText(*latest);
    getViewerInstance().incrementForceRedrawFrames(2, true);
}

void VersionWindow::drawWindow_()
{
    const auto width = static_cast<float>(getViewerInstance().framebufferSize().width);
    ImGui::PushStyleColor(ImGuiCol_WindowBg, ColorTheme::getRibbonColor(RibbonColor::Background));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowRounding, UI::px(rounding));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowPadding, ImVec2(UI::px(padding.x), UI::px(padding.y)));
    ImGui::PushStyleVar(ImGuiStyleVar_WindowBorderSize, 0);
    ImGuiMV::SetNextWindowPosMainViewport({width - UI::px(fromRight), UI::px(fromTop)}, ImGuiCond_Always);
    UI::beginWindow("##VersionUpdateWindow", flags);
    ImGui::PopStyleVar(3);
    ImGui::PopStyleColor();
    drawContent_();
    UI::endWindow();
}

void VersionWindow::drawContent_()
{
    ImGui::PushStyleVar(ImGuiStyleVar_FramePadding, ImVec2(UI::px(buttonPadding.x), UI::px(buttonPadding.y)));
    const std::string update = Product::tr("Get Update");
    const float buttonWidth = std::max(UI::px(buttonSize.x), UI::buttonWidth(update));
    // The text takes as many lines as it needs to leave the others their places inside the program's window.
    const float space = ImGui::GetStyle().ItemSpacing.x;
    const float textWidth = UI::px(fromRight - margin - crossSize) - buttonWidth - 2 * (UI::px(padding.x) + space);
    const std::string text = message(*newVersion);
    std::string lines;
    ImVec2 textSize;
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        lines = wordWrapped(text, textWidth);
        textSize = ImGui::CalcTextSize(lines.c_str());
    }
    const float rowHeight = std::max(textSize.y, UI::px(crossSize));
    const float top = ImGui::GetCursorPosY();

    centerInRow(top, rowHeight, UI::px(crossSize));
    if (ImGui::ModalExitButton())
    {
        newVersion->clear();
        ImGui::PopStyleVar();
        return;
    }
    ImGui::SameLine();
    centerInRow(top, rowHeight, textSize.y);
    {
        const UI::ScopedFont headline(UI::Font::Headline);
        ImGui::PushStyleColor(ImGuiCol_Text, ColorTheme::getRibbonColor(RibbonColor::Text));
        ImGui::TextUnformatted(lines.c_str());
        ImGui::PopStyleColor();
    }
    UI::record(UiKind::Text, text);
    ImGui::SameLine();
    centerInRow(top, rowHeight, UI::px(buttonSize.y));
    if (UI::button(update, {buttonWidth, UI::px(buttonSize.y)}))
        openDownloadPage();
    ImGui::PopStyleVar();
}

} // namespace VX
