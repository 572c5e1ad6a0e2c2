#include "StepObjects.h"

namespace VX
{

void StepObjects::add(const std::shared_ptr<Object>& object)
{
    if (known_.insert(object.get()).second)
        objects_.push_back(object);
}

void StepObjects::add(const Objects& objects)
{
    for (const std::shared_ptr<Object>& object : objects)
        add(object);
}

bool StepObjects::addDifference(const Objects& before, const Objects& after)
{
    const bool hasNew = addMissing_(after, before);
    return addMissing_(before, after) || hasNew;
}

/// Adds those of `objects` that `from` misses.
bool StepObjects::addMissing_(const Objects& objects, const Objects& from)
{
    const std::unordered_set<std::shared_ptr<Object>> present(from.begin(), from.end());
    bool any = false;
    for (const std::shared_ptr<Object>& object : objects)
    {
        if (present.contains(object))
            continue;
        add(object);
        any = true;
    }
    return any;
}

} // namespace VX
