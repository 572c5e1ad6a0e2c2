#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace VX
{

class Object;

/// Which objects below a root are selected at one moment.
/// @threads the UI thread
class SceneSelection
{
public:
    explicit SceneSelection(Object& root);

    /// Selects these objects below `root` and no others.
    void apply(Object& root) const;

    friend bool operator==(const SceneSelection&, const SceneSelection&) = default;

    /// In bytes.
    [[nodiscard]] std::size_t heapBytes() const { return ids_.capacity() * sizeof(std::uint64_t); }

private:
    std::vector<std::uint64_t> ids_; ///< sorted
};

/// The selection of a scene before and after a step that changed it.
struct SelectionChange
{
    std::shared_ptr<Object> root;
    SceneSelection before;
    SceneSelection after;
};

} // namespace VX
