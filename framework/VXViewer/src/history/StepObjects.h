#pragma once

#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

namespace VX
{

class Object;

/// Collects what a step of the history is about, each object once.
/// @threads the UI thread
class StepObjects
{
public:
    using Objects = std::vector<std::shared_ptr<Object>>;

    void add(const std::shared_ptr<Object>& object);
    void add(const Objects& objects);

    /// Those that came into a list of children or went out of it.
    /// @return false where none did
    bool addDifference(const Objects& before, const Objects& after);

    [[nodiscard]] Objects take() { return std::move(objects_); }

private:
    bool addMissing_(const Objects& objects, const Objects& from);

    Objects objects_;
    std::unordered_set<const Object*> known_;
};

} // namespace VX
