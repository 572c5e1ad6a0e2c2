#include "RibbonTabs.h"

#include <VXMesh/Object.h>
#include <VXViewer/Selection.h>

#include <algorithm>

namespace VX
{

namespace
{

const RibbonLayoutTab* find(const std::vector<const RibbonLayoutTab*>& tabs, std::string_view name)
{
    const auto found =
        std::find_if(tabs.begin(), tabs.end(), [&](const RibbonLayoutTab* tab) { return tab->name == name; });
    return found != tabs.end() ? *found : nullptr;
}

} // namespace

void RibbonTabs::update(const RibbonLayout& layout, Object& scene)
{
    findSelectedTypes_(scene);
    shown_.clear();
    for (const RibbonLayoutTab& tab : layout.tabs)
    {
        const bool isDue = tab.forType.empty() ||
                           std::find(selectedTypes_.begin(), selectedTypes_.end(), tab.forType) != selectedTypes_.end();
        if (isDue)
            shown_.push_back(&tab);
    }
    if (find(shown_, open_))
        return;
    open_ = find(shown_, openBefore_) ? openBefore_ : shown_.empty() ? std::string() : shown_.front()->name;
}

void RibbonTabs::findSelectedTypes_(Object& scene)
{
    if (sceneRevision_ == scene.revision())
        return;
    sceneRevision_ = scene.revision();
    selectedTypes_.clear();
    for (const std::shared_ptr<Object>& object : selectedObjects(scene))
    {
        if (std::find(selectedTypes_.begin(), selectedTypes_.end(), object->typeName()) == selectedTypes_.end())
            selectedTypes_.emplace_back(object->typeName());
    }
}

const RibbonLayoutTab* RibbonTabs::open() const
{
    return find(shown_, open_);
}

void RibbonTabs::open(std::string_view name)
{
    const RibbonLayoutTab* tab = find(shown_, name);
    if (!tab)
        return;
    if (const RibbonLayoutTab* before = open(); before && before->forType.empty())
        openBefore_ = open_;
    open_ = tab->name;
}

} // namespace VX
