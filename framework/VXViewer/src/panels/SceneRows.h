#pragma once

#include <VXViewer/Export.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace VX
{

class Object;

/// A line of the scene list.
struct SceneRow
{
    Object* object = nullptr;
    int depth = 0;
};

/// The lines of the scene list, made anew only when the scene, what is unfolded, or the filter has changed.
/// @threads the UI thread
class VXVIEWER_API SceneRows
{
public:
    /// Only objects with `filter` in their names, and what they are in, are left; case and accents do not matter.
    void setFilter(std::string filter);

    /// Brings the lines up to date. The pointers in them hold until the scene changes.
    /// @return true when they changed
    bool update(const Object& scene);

    [[nodiscard]] const std::vector<SceneRow>& rows() const { return rows_; }

    /// The line of the object with this id.
    [[nodiscard]] std::optional<std::size_t> find(std::uint64_t id) const;

    /// True when some object can be folded: all lines leave room for the arrow then.
    [[nodiscard]] bool hasGroups() const { return hasGroups_; }

    [[nodiscard]] bool isExpanded(const Object& object) const;
    void setExpanded(const Object& object, bool expanded);

    /// Unfolds all that `object` is in.
    void expandTo(const Object& object);

private:
    void collect_(const Object& parent, int depth);
    bool collectMatches_(const Object& parent, int depth);
    [[nodiscard]] bool matches_(const Object& object) const;

    std::vector<SceneRow> rows_;
    std::unordered_set<std::uint64_t> expanded_;
    std::unordered_set<std::uint64_t> known_; ///< top-level groups that were expanded by themselves already
    std::string filter_;
    std::u32string foldedFilter_;
    std::uint64_t revision_ = 0;
    bool outdated_ = true;
    bool hasGroups_ = false;
};

} // namespace VX
