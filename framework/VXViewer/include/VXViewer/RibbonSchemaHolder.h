#pragma once

#include <VXViewer/Export.h>
#include <VXViewer/RibbonSchema.h>

#include <tl/expected.hpp>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace VX
{

/// The one schema of the process.
///
/// A file of it is one JSON object. Everything but names may be left out; a text that is shown is English.
///
///     {
///       "items": [ { "name": "Undo", "caption": "Undo", "tooltip": "Takes the last step back",
///                    "icon": "arrow-back-up", "keywords": ["revert"] } ],
///       "tabs": [ { "name": "Home", "forType": "ObjectMesh", "groups": [ { "name": "Edit", "items": [
///                    "Undo",
///                    { "name": "Redo", "size": "small" },
///                    { "dropDown": "Views", "icon": "cube", "tooltip": "Look from a side", "size": "large",
///                      "items": ["View Front", "View Top"] } ] } ] } ],
///       "quickAccess": ["Undo"],
///       "toolbar": ["Undo"],
///       "toolbarVersion": 3
///     }
///
/// @threads the UI thread
class VXVIEWER_API RibbonSchemaHolder
{
public:
    RibbonSchemaHolder() = delete;

    /// Whoever changes it by hand calls `markChanged`.
    [[nodiscard]] static RibbonSchema& schema();

    /// Makes `item` known by its name, in place of another of that name. A file that names it gives it its look,
    /// before or after.
    static void addItem(std::shared_ptr<RibbonMenuItem> item);

    /// Adds what the file `path` describes: tabs and groups of a name that is there already get more items at their
    /// end, and an item described twice looks as described last.
    /// @return what `deserializeJsonValue` says; `The ribbon file "NAME" is damaged: WHAT.`, and nothing is added
    [[nodiscard]] static tl::expected<void, std::string> addFile(const std::filesystem::path& path);

    /// Adds all files that are installed with the program, in the order of their names.
    /// @return the first error; `Cannot find the layout of the ribbon in "FOLDER".`
    [[nodiscard]] static tl::expected<void, std::string> addInstalledFiles();

    /// The name and looks of the item `name`; null where there is no item.
    [[nodiscard]] static const RibbonItemInfo* find(std::string_view name);

    /// Empties it.
    static void reset();

    /// Tells those who show the schema to look again.
    static void markChanged();

    /// Grows with every change.
    [[nodiscard]] static std::uint64_t revision();
};

} // namespace VX
