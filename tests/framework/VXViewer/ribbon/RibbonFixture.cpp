#include "RibbonFixture.h"

#include <algorithm>

namespace VX::Test
{

namespace
{

constexpr const char* schemaFile = R"({
    "items": [
        { "name": "Open It", "tooltip": "Opens something", "icon": "folder-open", "keywords": ["load"] },
        { "name": "Save It", "icon": "device-floppy" },
        { "name": "Close It", "caption": "Shut" },
        { "name": "Not There" }
    ],
    "tabs": [
        { "name": "Home", "groups": [
            { "name": "File", "items": [
                "Open It", { "name": "Save It", "size": "small" }, { "name": "Close It", "size": "small" },
                "Not There" ] },
            { "name": "Tools", "items": [
                "Measure", { "dropDown": "Sides", "items": ["From Front", "From Top"] },
                { "name": "Tool A", "size": "small" }, { "name": "Tool B", "size": "small" } ] },
            { "name": "Nothing", "items": ["Not There"] } ] },
        { "name": "Second", "groups": [ { "name": "Other", "items": ["Other Thing"] } ] },
        { "name": "Mesh", "forType": "ObjectMesh", "groups": [ { "name": "Repair", "items": ["Repair It"] } ] }
    ],
    "quickAccess": ["Save It"],
    "toolbar": ["Measure"],
    "toolbarVersion": 1
})";

} // namespace

RibbonFixture::RibbonFixture(PixelSize size)
    : session_(menu_, size)
{
}

RibbonFixture::~RibbonFixture()
{
    RibbonSchemaHolder::reset();
}

std::vector<std::shared_ptr<CountingItem>> RibbonFixture::makeItems_()
{
    RibbonSchemaHolder::reset();
    std::vector<std::shared_ptr<CountingItem>> items;
    for (const char* name : {"Open It", "Save It", "Close It", "Measure", "From Front", "From Top", "Other Thing",
                             "Repair It", "Tool A", "Tool B", "Unplaced"})
    {
        items.push_back(std::make_shared<CountingItem>(name));
        RibbonSchemaHolder::addItem(items.back());
    }
    items[3]->tool = true;
    const auto added = RibbonSchemaHolder::addFile(folder_.write("test.json", schemaFile));
    EXPECT_TRUE(added) << added.error();
    return items;
}

CountingItem& RibbonFixture::item_(const std::string& name) const
{
    return **std::find_if(items_.begin(), items_.end(), [&](const auto& item) { return item->name() == name; });
}

} // namespace VX::Test
