#include "AgentSchema.h"
#include "AgentToolList.h"
#include "Paging.h"
#include "UserDialogs.h"

#include <VXMesh/StringConvert.h>
#include <VXViewer/Locale.h>
#include <VXViewer/RibbonMenu.h>
#include <VXViewer/RibbonMenuItem.h>
#include <VXViewer/RibbonSchemaHolder.h>
#include <VXViewer/SceneFiles.h>
#include <VXViewer/SceneView.h>
#include <VXViewer/UiTree.h>
#include <VXViewer/Viewer.h>

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

namespace VX
{

namespace
{

namespace Schema = AgentSchema;

RibbonMenu* ribbonOf(const Viewer& viewer)
{
    return viewer.ui() ? dynamic_cast<RibbonMenu*>(viewer.getMenuPlugin().get()) : nullptr;
}

const std::string& noRibbon()
{
    static const std::string text = "The viewer has no ribbon at present. Wait until it has started.";
    return text;
}

/// What does the same as an item that would ask the user for a file or a name; empty for all others.
std::string toolInstead(const Viewer& viewer, const std::string& name)
{
    if (name == "Open files")
        return "\"scene.loadFile\"";
    if (name == "Save Scene As" || (name == "Save" && viewer.getMenuPlugin()->sceneFiles().saveAsks()))
        return "\"scene.saveFile\"";
    if (name == "Save selected")
        return "\"scene.saveFile\" with \"ids\"";
    if (name == "Rename")
        return "\"scene.rename\"";
    return {};
}

/// What the user reads on an item.
std::string captionOf(const std::string& name, const RibbonItemInfo& info)
{
    return Locale::translate(info.caption.empty() ? name : info.caption);
}

std::string tooltipOf(const RibbonItemInfo& info)
{
    return info.tooltip.empty() ? std::string() : Locale::translate(info.tooltip);
}

Json::Value itemJson(const std::string& name, const RibbonItemInfo& info)
{
    const std::string reason = info.item->unavailableReason();
    Json::Value value;
    value["name"] = name;
    value["caption"] = captionOf(name, info);
    value["tooltip"] = tooltipOf(info);
    value["active"] = info.item->isActive();
    value["available"] = reason.empty();
    if (!reason.empty())
        value["reason"] = reason;
    return value;
}

bool fits(const std::string& name, const RibbonItemInfo& info, const std::string& wanted)
{
    if (wanted.empty())
        return true;
    std::string all =
        fmt::format("{}\n{}\n{}\n{}\n{}", name, info.caption, info.tooltip, captionOf(name, info), tooltipOf(info));
    for (const std::string& keyword : info.keywords)
        all += "\n" + keyword;
    return toLower(all).find(wanted) != std::string::npos;
}

AgentResult listItems(Viewer& viewer, const AgentArguments& arguments)
{
    const RibbonMenu* ribbon = ribbonOf(viewer);
    if (!ribbon)
        return tl::unexpected(noRibbon());
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    const std::string wanted = toLower(arguments.text("search"));
    const bool availableOnly = arguments.flag("availableOnly", false);
    std::vector<Json::Value> found;
    for (const auto& [name, info] : RibbonSchemaHolder::schema().items)
    {
        if (!info.item || ribbon->isItemHidden(name) || !fits(name, info, wanted))
            continue;
        Json::Value item = itemJson(name, info);
        if (!availableOnly || item["available"].asBool())
            found.push_back(std::move(item));
    }
    Json::Value value;
    value["items"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(found.size()); i < paging->end(found.size()); ++i)
        value["items"].append(std::move(found[i]));
    paging->describe(value, found.size());
    return Mcp::ToolResult::of(std::move(value));
}

/// The item that `name` means: its name, or what is read on it alone, in English or the user's language, with letters A
/// to Z in either case.
tl::expected<std::string, std::string> itemNamed(const RibbonMenu& ribbon, const std::string& name)
{
    const RibbonItemInfo* exact = RibbonSchemaHolder::find(name);
    if (exact && exact->item && !ribbon.isItemHidden(name))
        return name;
    const std::string wanted = toLower(name);
    std::vector<std::string> meant;
    for (const auto& [each, info] : RibbonSchemaHolder::schema().items)
    {
        const bool isMeant =
            toLower(each) == wanted || toLower(info.caption) == wanted || toLower(captionOf(each, info)) == wanted;
        if (info.item && isMeant && !ribbon.isItemHidden(each))
            meant.push_back(each);
    }
    if (meant.size() == 1)
        return meant.front();
    if (meant.empty())
        return tl::unexpected(fmt::format("There is no ribbon item \"{}\". \"ribbon.items\" lists their names.", name));
    return tl::unexpected(fmt::format("\"{}\" is read on several ribbon items. Call again with one of their names: "
                                      "\"{}\".",
                                      name, fmt::join(meant, "\", \"")));
}

AgentResult press(Viewer& viewer, const AgentArguments& arguments)
{
    RibbonMenu* ribbon = ribbonOf(viewer);
    if (!ribbon)
        return tl::unexpected(noRibbon());
    const auto named = itemNamed(*ribbon, arguments.text("name"));
    if (!named)
        return tl::unexpected(named.error());
    const std::string& name = *named;
    if (const std::string tool = toolInstead(viewer, name); !tool.empty())
        return tl::unexpected(fmt::format("\"{}\" asks the user. Call {} instead.", name, tool));
    if (isUserAskedForFile(viewer))
        return tl::unexpected(fmt::format("\"{}\" waits for an answer of the user. Ask the user to close it, then call "
                                          "again.",
                                          waitingWindow(viewer)));
    // The item may change the schema.
    const RibbonItemInfo kept = *RibbonSchemaHolder::find(name);
    if (const std::string reason = kept.item->unavailableReason(); !reason.empty())
        return tl::unexpected(fmt::format("\"{}\" cannot be pressed now: {}", name, reason));
    if (!ribbon->pressItem(name))
        return tl::unexpected(
            fmt::format("\"{}\" was not accepted. \"ui.tree\" tells what the viewer shows now.", name));
    // The answer is there before the view would be.
    viewer.view().controller().finishAnimation();
    return Mcp::ToolResult::of(itemJson(name, kept));
}

const char* nameOf(UiKind kind)
{
    constexpr std::array names{"window",  "button", "checkbox",         "textInput",  "combo", "treeRow",
                               "listRow", "text",   "progressBar",      "iconButton", "icon",  "radio",
                               "slider",  "drag",   "collapsingHeader", "tab",        "table", "tableRow"};
    const auto index = static_cast<std::size_t>(kind);
    return index < names.size() ? names.at(index) : "other";
}

Json::Value widgetJson(const UiItem& item)
{
    Json::Value value;
    value["kind"] = nameOf(item.kind);
    value["window"] = item.window;
    value["label"] = item.label;
    if (!item.value.empty())
        value["value"] = item.value;
    if (!item.enabled)
        value["enabled"] = false;
    if (!item.isVisible())
        value["visible"] = false;
    const Vector2f size = item.max - item.min;
    for (const float edge : {item.min.x(), item.min.y(), size.x(), size.y()})
        value["box"].append(static_cast<int>(std::lround(edge)));
    return value;
}

/// The file dialog shows folders that agents may not know.
bool isForAgents(const UiItem& item)
{
    return !isFileDialog(item.window) || item.kind == UiKind::Window || item.kind == UiKind::Button;
}

std::set<std::string> shownWindows()
{
    std::set<std::string> names;
    for (const UiItem& item : UiTree::instance().items())
        names.insert(item.kind == UiKind::Window ? item.label : item.window);
    return names;
}

AgentResult listWidgets(Viewer& viewer, const AgentArguments& arguments)
{
    const auto paging = Paging::of(arguments);
    if (!paging)
        return tl::unexpected(paging.error());
    if (!viewer.ui())
        return tl::unexpected(noRibbon());
    const std::string window = arguments.text("window");
    if (const auto names = shownWindows(); !window.empty() && !names.contains(window))
        return tl::unexpected(
            fmt::format("No window \"{}\" is shown. These are: \"{}\".", window, fmt::join(names, "\", \"")));
    std::vector<const UiItem*> found;
    for (const UiItem& item : UiTree::instance().items())
    {
        const bool isOfWindow = item.window == window || (item.kind == UiKind::Window && item.label == window);
        if ((window.empty() || isOfWindow) && isForAgents(item))
            found.push_back(&item);
    }
    Json::Value value;
    value["widgets"] = Json::Value(Json::arrayValue);
    for (std::size_t i = paging->begin(found.size()); i < paging->end(found.size()); ++i)
        value["widgets"].append(widgetJson(*found[i]));
    paging->describe(value, found.size());
    return Mcp::ToolResult::of(std::move(value));
}

Json::Value itemSchema()
{
    return Schema::result({{"name", Schema::text("What \"ribbon.press\" takes.")},
                           {"caption", Schema::text("What the user reads on it, in the user's language.")},
                           {"tooltip", Schema::text("What it does.")},
                           {"active", Schema::flag("Whether a switch is on or a tool is in use.")},
                           {"available", Schema::flag("Whether it can be pressed now.")},
                           {"reason", Schema::text("Why it cannot be pressed now.")}},
                          {"name", "caption", "active", "available"});
}

Mcp::Tool itemsTool()
{
    Mcp::Tool tool;
    tool.name = "ribbon.items";
    tool.title = "List the commands of the ribbon";
    tool.description =
        "Lists the commands, switches and tools of the viewer's ribbon, with the reason where one cannot be "
        "pressed now.";
    tool.inputSchema =
        Schema::object({{"search", Schema::text("Only items with this in their name, caption, tooltip or keywords.")},
                        {"availableOnly", Schema::flag("Only those that can be pressed now; false if left out.")},
                        {"limit", Paging::limitSchema()},
                        {"cursor", Paging::cursorSchema()}});
    tool.outputSchema = Schema::result({{"items", Schema::list("By name.", itemSchema())},
                                        {"total", Paging::totalSchema()},
                                        {"nextCursor", Paging::nextCursorSchema()}},
                                       {"items", "total"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

Mcp::Tool pressTool()
{
    Mcp::Tool tool;
    tool.name = "ribbon.press";
    tool.title = "Press a command of the ribbon";
    tool.description =
        "Presses an item as the user would. Prefer the other tools where one does the same. Items that ask the user "
        "for a file or a name are refused, and so are all while such a question waits; one that opened a window closes "
        "it when it is pressed again.";
    tool.inputSchema = Schema::object(
        {{"name", Schema::text("As \"ribbon.items\" tells, or what the user reads on the item.")}}, {"name"});
    tool.outputSchema = itemSchema();
    tool.destructive = true;
    tool.openWorld = true;
    return tool;
}

Mcp::Tool treeTool()
{
    const Json::Value widget = Schema::result(
        {{"kind", Schema::text("button, checkbox, textInput, window and so on.")},
         {"window", Schema::text("The window that it is in.")},
         {"label", Schema::text("What the user reads on it.")},
         {"value", Schema::text("What it is set to, where it has a value.")},
         {"enabled", Schema::flag("false: it cannot be used now; true if missing.")},
         {"visible", Schema::flag("false: scrolled or cut out of sight; true if missing.")},
         {"box", Schema::list("x from the left and y from the top of the window as \"viewer.getStatus\" tells its size "
                              "(a picture of it may be smaller), width and height, in pixels.",
                              Schema::number("Pixels."), 4, 4)}},
        {"kind", "window", "label", "box"});
    Mcp::Tool tool;
    tool.name = "ui.tree";
    tool.title = "What the interface shows";
    tool.description =
        "Lists the windows and widgets of the last frame, in drawing order: what the user sees now, such as "
        "a message that waits for an answer. What a file dialog lists is left out.";
    tool.inputSchema = Schema::object({{"window", Schema::text("Only this window and what is in it, by its name.")},
                                       {"limit", Paging::limitSchema()},
                                       {"cursor", Paging::cursorSchema()}});
    tool.outputSchema = Schema::result({{"widgets", Schema::list("In drawing order.", widget)},
                                        {"total", Paging::totalSchema()},
                                        {"nextCursor", Paging::nextCursorSchema()}},
                                       {"widgets", "total"});
    tool.readOnly = true;
    tool.idempotent = true;
    return tool;
}

} // namespace

void addInterfaceTools(AgentToolList& list)
{
    list.add(itemsTool(), listItems);
    list.add(pressTool(), press);
    list.add(treeTool(), listWidgets);
}

} // namespace VX
