#include "SceneRows.h"

#include "FuzzyMatch.h"

#include <VXMesh/Object.h>

#include <algorithm>
#include <utility>

namespace VX
{

namespace
{

/// A group with more children than this starts folded.
constexpr std::size_t maxChildrenExpanded = 40;

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

} // namespace

void SceneRows::setFilter(std::string filter)
{
    if (filter == filter_)
        return;
    filter_ = std::move(filter);
    foldedFilter_ = foldedText(filter_);
    outdated_ = true;
}

bool SceneRows::update(const Object& scene)
{
    if (!outdated_ && revision_ == scene.revision())
        return false;
    revision_ = scene.revision();
    outdated_ = false;
    for (const std::shared_ptr<Object>& child : scene.children())
    {
        const std::size_t below = child->children().size();
        if (below > 0 && known_.insert(child->id()).second && below <= maxChildrenExpanded)
            expanded_.insert(child->id());
    }
    rows_.clear();
    hasGroups_ = false;
    if (foldedFilter_.empty())
        collect_(scene, 0);
    else
        collectMatches_(scene, 0);
    return true;
}

void SceneRows::collect_(const Object& parent, int depth)
{
    for (const std::shared_ptr<Object>& child : parent.children())
    {
        rows_.push_back({child.get(), depth});
        if (child->children().empty())
            continue;
        hasGroups_ = true;
        if (expanded_.contains(child->id()))
            collect_(*child, depth + 1);
    }
}

/// @return true when something below `parent` matched
bool SceneRows::collectMatches_(const Object& parent, int depth)
{
    bool any = false;
    for (const std::shared_ptr<Object>& child : parent.children())
    {
        const std::size_t line = rows_.size();
        rows_.push_back({child.get(), depth});
        const bool below = collectMatches_(*child, depth + 1);
        if (!below && !matches_(*child))
        {
            rows_.resize(line);
            continue;
        }
        any = true;
        hasGroups_ = hasGroups_ || below;
    }
    return any;
}

bool SceneRows::matches_(const Object& object) const
{
    const std::string& name = object.name();
    // Most names need no memory of their own to be compared.
    if (isAscii(filter_) && isAscii(name))
        return std::search(name.begin(), name.end(), filter_.begin(), filter_.end(),
                           [](char a, char b) { return lower(a) == lower(b); }) != name.end();
    return foldedText(name).find(foldedFilter_) != std::u32string::npos;
}

std::optional<std::size_t> SceneRows::find(std::uint64_t id) const
{
    const auto found =
        std::find_if(rows_.begin(), rows_.end(), [&](const SceneRow& row) { return row.object->id() == id; });
    return found != rows_.end() ? std::optional(static_cast<std::size_t>(found - rows_.begin())) : std::nullopt;
}

bool SceneRows::isExpanded(const Object& object) const
{
    return !foldedFilter_.empty() || expanded_.contains(object.id());
}

void SceneRows::setExpanded(const Object& object, bool expanded)
{
    if (expanded)
        expanded_.insert(object.id());
    else
        expanded_.erase(object.id());
    outdated_ = true;
}

void SceneRows::expandTo(const Object& object)
{
    for (const Object* above = object.parent(); above; above = above->parent())
        outdated_ = expanded_.insert(above->id()).second || outdated_;
}

} // namespace VX
