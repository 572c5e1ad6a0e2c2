#pragma once

#include <VXMesh/Object.h>

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace VX
{

/// Those of `objects` that none of the others is above, in their order.
/// @threads the UI thread
[[nodiscard]] std::vector<std::shared_ptr<Object>> topmostOf(const std::vector<std::shared_ptr<Object>>& objects);

/// A scene of chosen objects alone, with what is below them, where they stand; they show even where they are hidden. It
/// is made of copies that share the geometry. A chosen object below a hidden one that was not chosen stands beside it.
/// @threads the UI thread
class ChosenScene
{
public:
    explicit ChosenScene(const std::vector<std::shared_ptr<Object>>& objects);

    [[nodiscard]] std::shared_ptr<const Object> root() const { return root_; }

    /// What `copy`, an object of this scene, is a copy of; null: it is gone, or `copy` is no object of this scene.
    [[nodiscard]] std::shared_ptr<Object> originalOf(const Object* copy) const;

private:
    using Chosen = std::unordered_set<const Object*>;
    using Lifted = std::vector<std::shared_ptr<Object>>;

    void add_(const std::shared_ptr<Object>& original, Object& copy, const Chosen& chosen, bool isCovered,
              Lifted& lifted);

    std::shared_ptr<Object> root_ = std::make_shared<Object>();
    std::unordered_map<const Object*, std::weak_ptr<Object>> originals_;
};

} // namespace VX
