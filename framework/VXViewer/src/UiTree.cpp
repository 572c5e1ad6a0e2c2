#include <VXViewer/UiTree.h>

#include <algorithm>
#include <iterator>

namespace VX
{

UiTree& UiTree::instance()
{
    static UiTree tree;
    return tree;
}

std::vector<UiItem> UiTree::find(std::string_view label, std::string_view window) const
{
    std::vector<UiItem> found;
    std::copy_if(shown_.begin(), shown_.end(), std::back_inserter(found),
                 [&](const UiItem& item) { return item.label == label && (window.empty() || item.window == window); });
    return found;
}

bool UiTree::hasWindow(std::string_view name) const
{
    return std::any_of(shown_.begin(), shown_.end(),
                       [&](const UiItem& item) { return item.kind == UiKind::Window && item.label == name; });
}

void UiTree::nameDrawn(std::size_t index, const std::string& label)
{
    if (index < drawn_.size() && drawn_[index].label.empty())
        drawn_[index].label = label;
}

void UiTree::clear()
{
    drawn_.clear();
    shown_.clear();
}

} // namespace VX
