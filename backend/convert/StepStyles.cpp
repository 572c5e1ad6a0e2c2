#include "StepStyles.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace VX
{

namespace
{

/// Usages may be made of usages; a file may do so in a circle.
constexpr int maxUsageDepth = 16;
/// From a presentation style down to its colour.
constexpr int maxStyleDepth = 8;

std::optional<std::uint8_t> channel(std::optional<double> value)
{
    if (!value)
        return std::nullopt;
    return static_cast<std::uint8_t>(std::lround(std::clamp(*value, 0.0, 1.0) * 255));
}

std::optional<Color> rgbColor(const StepRecord& record)
{
    const auto r = channel(stepNumber(record[1]));
    const auto g = channel(stepNumber(record[2]));
    const auto b = channel(stepNumber(record[3]));
    return r && g && b ? std::optional(Color{*r, *g, *b}) : std::nullopt;
}

std::optional<Color> predefinedColor(const std::string& name)
{
    struct Named
    {
        std::string_view name;
        Color color;
    };

    static constexpr std::array<Named, 8> colors{{{"red", {255, 0, 0}},
                                                  {"green", {0, 255, 0}},
                                                  {"blue", {0, 0, 255}},
                                                  {"yellow", {255, 255, 0}},
                                                  {"magenta", {255, 0, 255}},
                                                  {"cyan", {0, 255, 255}},
                                                  {"black", {0, 0, 0}},
                                                  {"white", {255, 255, 255}}}};
    const auto found = std::ranges::find(colors, std::string_view(name), &Named::name);
    return found == colors.end() ? std::nullopt : std::optional(found->color);
}

/// Instances that a search has been to: each is looked at once, however often and in whatever circles it is referred
/// to.
using Seen = std::unordered_set<StepIndex>;

/// Follows the surface styles below `style` to their colour; styles of curves and points are not looked at.
std::optional<Color> surfaceColor(const StepFile& file, StepIndex style, Seen& seen, int depth = 0)
{
    if (depth > maxStyleDepth || !seen.insert(style).second)
        return std::nullopt;
    const StepRecord record = file.record(style);
    const auto firstOf = [&](std::string_view argument) -> std::optional<Color>
    {
        for (const StepIndex next : file.references(argument))
            if (const std::optional<Color> color = surfaceColor(file, next, seen, depth + 1))
                return color;
        return std::nullopt;
    };
    switch (file.type(style))
    {
    case "COLOUR_RGB"_step:
        return rgbColor(record);
    case "DRAUGHTING_PRE_DEFINED_COLOUR"_step:
    case "PRE_DEFINED_COLOUR"_step:
        return predefinedColor(stepString(record[0]));
    case "PRESENTATION_STYLE_ASSIGNMENT"_step:
    case "PRESENTATION_STYLE_BY_CONTEXT"_step:
    case "SURFACE_STYLE_FILL_AREA"_step:
        return firstOf(record[0]);
    case "SURFACE_STYLE_USAGE"_step:
    case "SURFACE_SIDE_STYLE"_step:
    case "FILL_AREA_STYLE"_step:
    case "FILL_AREA_STYLE_COLOUR"_step:
    case "SURFACE_STYLE_RENDERING"_step:
    case "SURFACE_STYLE_RENDERING_WITH_PROPERTIES"_step:
        return firstOf(record[1]);
    default:
        return std::nullopt;
    }
}

/// The transparency that surface styles below `style` give, 0 opaque to 1.
std::optional<double> transparency(const StepFile& file, StepIndex style, Seen& seen, int depth = 0)
{
    if (depth > maxStyleDepth || !seen.insert(style).second)
        return std::nullopt;
    const StepRecord record = file.record(style);
    std::string_view next;
    switch (file.type(style))
    {
    case "SURFACE_STYLE_TRANSPARENT"_step:
        return stepNumber(record[0]);
    case "PRESENTATION_STYLE_ASSIGNMENT"_step:
    case "PRESENTATION_STYLE_BY_CONTEXT"_step:
        next = record[0];
        break;
    case "SURFACE_STYLE_USAGE"_step:
    case "SURFACE_SIDE_STYLE"_step:
        next = record[1];
        break;
    case "SURFACE_STYLE_RENDERING_WITH_PROPERTIES"_step:
        next = record[2];
        break;
    default:
        return std::nullopt;
    }
    for (const StepIndex index : file.references(next))
        if (const std::optional<double> found = transparency(file, index, seen, depth + 1))
            return found;
    return std::nullopt;
}

bool isFace(StepType type)
{
    return type == "ADVANCED_FACE"_step || type == "FACE_SURFACE"_step || type == "TRIANGULATED_FACE"_step ||
           type == "COMPLEX_TRIANGULATED_FACE"_step;
}

/// What stands between an item and its faces.
bool isFaceSet(StepType type)
{
    static constexpr std::array sets{
        "CLOSED_SHELL"_step,       "OPEN_SHELL"_step,    "ORIENTED_CLOSED_SHELL"_step, "ORIENTED_OPEN_SHELL"_step,
        "CONNECTED_FACE_SET"_step, "ORIENTED_FACE"_step, "TESSELLATED_SHELL"_step};
    return std::ranges::find(sets, type) != sets.end();
}

bool isUsage(StepType type)
{
    return type == "NEXT_ASSEMBLY_USAGE_OCCURRENCE"_step || type == "SPECIFIED_HIGHER_USAGE_OCCURRENCE"_step;
}

} // namespace

StepStyles::StepStyles(const StepFile& file)
    : file_(file)
{
    for (const StepIndex index : file_.all("SHAPE_DEFINITION_REPRESENTATION"_step))
    {
        const StepRecord record = file_.record(index);
        const StepIndex usage = file_.reference(file_.record(file_.reference(record[0]))[2]);
        if (isUsage(file_.type(usage)))
            shapeUsages_.emplace(file_.reference(record[1]), usage);
    }
    for (const StepType type :
         {"STYLED_ITEM"_step, "OVER_RIDING_STYLED_ITEM"_step, "CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM"_step})
        for (const StepIndex index : file_.all(type))
            style_(index);
    readHidden_();
}

std::optional<Color> StepStyles::colorOf(StepIndex item) const
{
    const auto found = colors_.find(item);
    return found == colors_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<Color> StepStyles::colorOf(StepIndex item, StepIndex representation) const
{
    const std::optional<Color> own = colorOf(item);
    return own ? own : colorOf(representation);
}

std::vector<std::pair<StepIndex, Color>> StepStyles::faceColorsOf(StepIndex item) const
{
    std::vector<std::pair<StepIndex, Color>> faces;
    if (colors_.empty() || item == noStepInstance)
        return faces;
    std::vector<std::pair<StepIndex, std::optional<Color>>> open{{item, std::nullopt}};
    std::unordered_set<StepIndex> seen;
    while (!open.empty())
    {
        const auto [above, inherited] = open.back();
        open.pop_back();
        for (const StepIndex index : file_.references(file_[above].text))
        {
            const StepType type = file_.type(index);
            if ((!isFace(type) && !isFaceSet(type)) || !seen.insert(index).second)
                continue;
            const std::optional<Color> own = colorOf(index);
            const std::optional<Color> color = own ? own : inherited;
            if (!isFace(type))
                open.emplace_back(index, color);
            else if (color)
                faces.emplace_back(index, *color);
        }
    }
    return faces;
}

void StepStyles::style_(StepIndex styledItem)
{
    const StepRecord record = file_.record(styledItem);
    const StepIndex item = file_.reference(record[2]);
    std::optional<Color> color;
    for (const StepIndex style : file_.references(record[1]))
        if (!color)
            color = styleColor_(style);
    if (item == noStepInstance || !color)
        return;

    std::vector<StepIndex> usages;
    Seen seen;
    for (const StepIndex context : styleContexts_(record))
        addUsages_(context, seen, usages, 0);
    if (usages.empty())
        colors_.insert_or_assign(item, *color);
    else
        instanceColors_.push_back({item, std::move(usages), *color});
}

std::vector<StepIndex> StepStyles::styleContexts_(const StepRecord& styledItem) const
{
    std::vector<StepIndex> contexts = file_.references(styledItem[4]);
    for (const StepIndex style : file_.references(styledItem[1]))
        if (file_.type(style) == "PRESENTATION_STYLE_BY_CONTEXT"_step)
            if (const StepIndex context = file_.reference(file_.record(style)[1]); context != noStepInstance)
                contexts.push_back(context);
    return contexts;
}

void StepStyles::addUsages_(StepIndex context, std::unordered_set<StepIndex>& seen, std::vector<StepIndex>& usages,
                            int depth) const
{
    if (context == noStepInstance || depth > maxUsageDepth || !seen.insert(context).second)
        return;
    const StepRecord record = file_.record(context);
    const auto follow = [&](StepIndex next) { addUsages_(next, seen, usages, depth + 1); };
    switch (file_.type(context))
    {
    case "NEXT_ASSEMBLY_USAGE_OCCURRENCE"_step:
        return usages.push_back(context);
    case "SPECIFIED_HIGHER_USAGE_OCCURRENCE"_step:
        follow(file_.reference(record[6]));
        return follow(file_.reference(record[7]));
    case "PRODUCT_DEFINITION_SHAPE"_step:
        return follow(file_.reference(record[2]));
    case "CONTEXT_DEPENDENT_SHAPE_REPRESENTATION"_step:
        return follow(file_.reference(record[1]));
    default:
        break;
    }
    if (const auto found = shapeUsages_.find(context); found != shapeUsages_.end())
        follow(found->second);
}

std::optional<Color> StepStyles::styleColor_(StepIndex style)
{
    const auto [found, isNew] = styles_.try_emplace(style);
    if (isNew)
    {
        Seen seen;
        std::optional<Color>& color = found->second;
        color = surfaceColor(file_, style, seen);
        seen.clear();
        if (color)
            color->a = channel(1 - transparency(file_, style, seen).value_or(0)).value_or(255);
    }
    return found->second;
}

void StepStyles::readHidden_()
{
    for (const StepIndex index : file_.all("INVISIBILITY"_step))
        for (const StepIndex hidden : file_.references(file_.record(index)[0]))
        {
            const StepRecord record = file_.record(hidden);
            switch (file_.type(hidden))
            {
            case "STYLED_ITEM"_step:
            case "OVER_RIDING_STYLED_ITEM"_step:
                hidden_.insert(file_.reference(record[2]));
                break;
            case "PRESENTATION_LAYER_ASSIGNMENT"_step:
                for (const StepIndex item : file_.references(record[2]))
                    hidden_.insert(item);
                break;
            default:
                break;
            }
        }
}

} // namespace VX
