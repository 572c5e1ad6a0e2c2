#pragma once

#include <memory>
#include <unordered_map>
#include <utility>

namespace VX
{

/// What was made for the graphics from shared geometry, kept while the geometry lives. Objects that share geometry
/// share what was made of it; geometry never changes, so that its address and lifetime identify it.
/// @tparam Gpu  made from `const Source&`
template <class Source, class Gpu>
class GeometryCache
{
public:
    /// Made now where it was not there.
    Gpu& get(const std::shared_ptr<const Source>& source)
    {
        Entry& entry = entries_[source.get()];
        if (!entry.gpu || entry.source.expired())
            entry = {source, std::make_unique<Gpu>(*source)};
        return *entry.gpu;
    }

    /// Null where nothing was made or the geometry is gone.
    Gpu* find(const std::weak_ptr<const Source>& source)
    {
        const auto locked = source.lock();
        const auto found = entries_.find(locked.get());
        const bool usable = locked && found != entries_.end() && !found->second.source.expired();
        return usable ? found->second.gpu.get() : nullptr;
    }

    /// Frees what belongs to geometry that no longer exists.
    void collect()
    {
        std::erase_if(entries_, [](const auto& item) { return item.second.source.expired(); });
    }

private:
    struct Entry
    {
        std::weak_ptr<const Source> source;
        std::unique_ptr<Gpu> gpu;
    };

    std::unordered_map<const Source*, Entry> entries_;
};

} // namespace VX
