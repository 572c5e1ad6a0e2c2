#include "../menu/Translate.h"
#include "ImGuiInput.h"
#include "MaskedPasswords.h"
#include "UiDrawing.h"

#include <VXViewer/UI.h>

#include <fmt/format.h>
#include <imgui_internal.h>
#include <imgui_stdlib.h>

#include <algorithm>
#include <cmath>

namespace VX::UI
{

namespace
{

/// A small arrow down at the right end of a combo.
void drawChevron(ImVec2 min, ImVec2 max)
{
    const float r = px(4);
    const ImVec2 center(max.x - px(14), (min.y + max.y) / 2);
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const ImVec2 tip(center.x, center.y + r / 2);
    draw->AddLine({center.x - r, center.y - r / 2}, tip, color(Color::SecondaryText), scale() * 1.5F);
    draw->AddLine(tip, {center.x + r, center.y - r / 2}, color(Color::SecondaryText), scale() * 1.5F);
}

/// The border that tells what one types into from what is behind it.
class ScopedInputFrame
{
public:
    ScopedInputFrame() { ImGui::PushStyleVar(ImGuiStyleVar_FrameBorderSize, px(1)); }

    ~ScopedInputFrame() { ImGui::PopStyleVar(); }

    ScopedInputFrame(const ScopedInputFrame&) = delete;
    ScopedInputFrame& operator=(const ScopedInputFrame&) = delete;
};

/// Keeps what is typed meanwhile from the clipboard.
class ScopedNoCopying
{
public:
    explicit ScopedNoCopying(bool active)
        : copy_(ImGui::GetIO().SetClipboardTextFn)
    {
        if (active)
            ImGui::GetIO().SetClipboardTextFn = nullptr;
    }

    ~ScopedNoCopying() { ImGui::GetIO().SetClipboardTextFn = copy_; }

    ScopedNoCopying(const ScopedNoCopying&) = delete;
    ScopedNoCopying& operator=(const ScopedNoCopying&) = delete;

private:
    decltype(ImGuiIO::SetClipboardTextFn) copy_;
};

/// Overwrites the memory of `vector` before it is freed.
template <typename T>
void wipe(ImVector<T>& vector)
{
    // Volatile: the compiler would leave out what nobody reads again.
    auto* const bytes = reinterpret_cast<volatile char*>(vector.Data);
    for (std::size_t i = 0; i < static_cast<std::size_t>(vector.Capacity) * sizeof(T); ++i)
        bytes[i] = 0;
    vector.clear();
}

std::size_t countCharacters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c)
                                                  { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// The first `limit` characters of UTF-8.
void cutTo(std::string& text, std::size_t limit)
{
    while (countCharacters(text) > limit)
    {
        while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U)
            text.pop_back();
        text.pop_back();
    }
}

/// Takes no more characters than fit, while one types or pastes.
int refuseOverLimit(ImGuiInputTextCallbackData* data)
{
    const auto limit = *static_cast<const std::size_t*>(data->UserData);
    // A copy that is not needed would be one more of a secret.
    if (countCharacters({data->Buf, static_cast<std::size_t>(data->BufTextLen)}) <= limit)
        return 0;
    std::string text(data->Buf, static_cast<std::size_t>(data->BufTextLen));
    cutTo(text, limit);
    const int cursor = std::min(data->CursorPos, static_cast<int>(text.size()));
    data->DeleteChars(0, data->BufTextLen);
    data->InsertChars(0, text.c_str());
    data->CursorPos = cursor;
    return 0;
}

/// The format of printf for a number and its unit.
std::string printfFormat(int decimals, const std::string& unit)
{
    std::string format = decimals < 0 ? std::string("%d") : fmt::format("%.{}f", decimals);
    if (unit.empty())
        return format;
    // A degree sign stands at its number.
    if (unit != "°")
        format += ' ';
    for (const char c : unit)
        format.append(c == '%' ? 2 : 1, c);
    return format;
}

std::string shownNumber(float value, const NumberFormat& format)
{
    const std::string space = format.unit.empty() || format.unit == "°" ? "" : " ";
    return fmt::format("{:.{}f}{}{}", value, std::max(0, format.decimals), space, format.unit);
}

/// The part of a slider left of its value, in the place of the next item.
void drawSliderFill(float share)
{
    const ImVec2 min = ImGui::GetCursorScreenPos();
    const ImVec2 max(min.x + ImGui::CalcItemWidth(), min.y + ImGui::GetFrameHeight());
    ImDrawList* draw = ImGui::GetWindowDrawList();
    const float rounding = ImGui::GetStyle().FrameRounding;
    const float x = std::round(min.x + (max.x - min.x) * std::clamp(share, 0.0F, 1.0F));
    draw->AddRectFilled(min, max, ImGui::GetColorU32(ImGuiCol_FrameBg), rounding);
    draw->PushClipRect(min, {x, max.y}, true);
    draw->AddRectFilled(min, max, ImGui::GetColorU32(colorVec(Color::Selection)), rounding);
    draw->PopClipRect();
    const float handle = std::clamp(x, min.x + px(1), max.x - px(1));
    draw->AddRectFilled({handle - px(1), min.y + px(2)}, {handle + px(1), max.y - px(2)},
                        ImGui::GetColorU32(colorVec(Color::Accent)), px(1));
}

/// Leaves the drawing of the bar to `drawSliderFill`.
class ScopedClearSlider
{
public:
    ScopedClearSlider()
    {
        for (const ImGuiCol part : {ImGuiCol_FrameBg, ImGuiCol_FrameBgHovered, ImGuiCol_FrameBgActive,
                                    ImGuiCol_SliderGrab, ImGuiCol_SliderGrabActive})
            ImGui::PushStyleColor(part, 0);
        // The value is where the mouse is, not beside it by a part of a handle that is not drawn.
        ImGui::PushStyleVar(ImGuiStyleVar_GrabMinSize, px(2));
    }

    ~ScopedClearSlider()
    {
        ImGui::PopStyleVar();
        ImGui::PopStyleColor(5);
    }

    ScopedClearSlider(const ScopedClearSlider&) = delete;
    ScopedClearSlider& operator=(const ScopedClearSlider&) = delete;
};

} // namespace

bool inputText(const std::string& label, std::string& text, const InputTextOptions& options)
{
    const ScopedInputFrame frame;
    const float width = ImGui::CalcItemWidth();
    ImGuiInputTextFlags flags = options.flags;
    std::size_t limit = options.limit;
    if (options.password && (!options.revealed || ScopedMaskedPasswords::isActive()))
        flags |= ImGuiInputTextFlags_Password;
    if (limit > 0)
        flags |= ImGuiInputTextFlags_CallbackEdit;
    const ScopedNoCopying noCopying(options.password);
    const bool changed =
        ImGui::InputTextWithHint(label.c_str(), options.hint.c_str(), &text, flags, refuseOverLimit, &limit);
    if (ImGui::IsItemActive())
    {
        const ImVec2 min = ImGui::GetItemRectMin();
        ImGui::GetWindowDrawList()->AddRect(min, {min.x + width, ImGui::GetItemRectMax().y}, color(Color::Accent),
                                            ImGui::GetStyle().FrameRounding, 0, px(1));
    }
    const bool isSecret = options.password || (flags & ImGuiInputTextFlags_Password) != 0;
    recordField(UiKind::TextInput, label, width, isSecret ? std::string() : text);
    return changed;
}

void wipeTypedText()
{
    ImGuiContext* const context = ImGui::GetCurrentContext();
    if (!context)
        return;
    ImGuiInputTextState& typed = context->InputTextState;
    if (typed.ID != 0 && context->ActiveId == typed.ID)
        ImGui::ClearActiveID();
    typed.ID = 0;
    typed.CurLenW = typed.CurLenA = 0;
    typed.TextAIsValid = false;
    typed.CursorClamp();
    wipe(typed.TextW);
    wipe(typed.TextA);
    wipe(typed.InitialTextA);
    context->InputTextDeactivatedState.ID = 0;
    wipe(context->InputTextDeactivatedState.TextA);
    std::ranges::fill(typed.Stb.undostate.undo_char, ImWchar(0));
    ImGuiInput::wipePasted();
}

bool combo(const std::string& label, int& current, const std::vector<std::string>& choices)
{
    const bool known = current >= 0 && current < static_cast<int>(choices.size());
    const std::string shown = known ? choices[static_cast<std::size_t>(current)] : tr("Not selected");
    const float width = ImGui::CalcItemWidth();
    bool open = false;
    {
        const ScopedInputFrame frame;
        open = ImGui::BeginCombo(label.c_str(), shown.c_str(), ImGuiComboFlags_NoArrowButton);
    }
    if (!open)
    {
        recordField(UiKind::Combo, label, width, shown);
        const ImVec2 min = ImGui::GetItemRectMin();
        drawChevron(min, {min.x + width, ImGui::GetItemRectMax().y});
        return false;
    }
    bool changed = false;
    for (int i = 0; i < static_cast<int>(choices.size()); ++i)
    {
        ImGui::PushID(i);
        if (listRow(choices[static_cast<std::size_t>(i)], i == current))
        {
            changed = i != current;
            current = i;
        }
        ImGui::PopID();
    }
    ImGui::EndCombo();
    return changed;
}

bool slider(const std::string& label, float& value, float min, float max, const NumberFormat& format)
{
    const float width = ImGui::CalcItemWidth();
    drawSliderFill(max > min ? (value - min) / (max - min) : 0);
    const ScopedInputFrame frame;
    const ScopedClearSlider clear;
    const bool changed =
        ImGui::SliderFloat(label.c_str(), &value, min, max, printfFormat(format.decimals, format.unit).c_str(),
                           ImGuiSliderFlags_AlwaysClamp);
    recordField(UiKind::Slider, label, width, shownNumber(value, format));
    return changed;
}

bool sliderInt(const std::string& label, int& value, int min, int max, const std::string& unit)
{
    const float width = ImGui::CalcItemWidth();
    drawSliderFill(max > min ? static_cast<float>(value - min) / static_cast<float>(max - min) : 0);
    const ScopedInputFrame frame;
    const ScopedClearSlider clear;
    const bool changed =
        ImGui::SliderInt(label.c_str(), &value, min, max, printfFormat(-1, unit).c_str(), ImGuiSliderFlags_AlwaysClamp);
    recordField(UiKind::Slider, label, width, shownNumber(static_cast<float>(value), {unit, 0}));
    return changed;
}

bool drag(const std::string& label, float& value, float speed, float min, float max, const NumberFormat& format)
{
    const ScopedInputFrame frame;
    const float width = ImGui::CalcItemWidth();
    const bool changed =
        ImGui::DragFloat(label.c_str(), &value, speed, min, max, printfFormat(format.decimals, format.unit).c_str(),
                         ImGuiSliderFlags_AlwaysClamp);
    if (ImGui::IsItemHovered() || ImGui::IsItemActive())
        ImGui::SetMouseCursor(ImGuiMouseCursor_ResizeEW);
    recordField(UiKind::Drag, label, width, shownNumber(value, format));
    return changed;
}

} // namespace VX::UI
