#include "ChosenScene.h"

#include "SceneSnapshot.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace VX
{

namespace
{

std::unordered_set<const Object*> setOf(const std::vector<std::shared_ptr<Object>>& objects)
{
    std::unordered_set<const Object*> set;
    for (const std::shared_ptr<Object>& object : objects)
        set.insert(object.get());
    return set;
}

} // namespace

std::vector<std::shared_ptr<Object>> topmostOf(const std::vector<std::shared_ptr<Object>>& objects)
{
    const std::unordered_set<const Object*> chosen = setOf(objects);
    const auto isTop = [&](const std::shared_ptr<Object>& object)
    {
        const Object* above = object->parent();
        while (above && !chosen.contains(above))
            above = above->parent();
        return !above;
    };
    std::vector<std::shared_ptr<Object>> top;
    std::ranges::copy_if(objects, std::back_inserter(top), isTop);
    return top;
}

ChosenScene::ChosenScene(const std::vector<std::shared_ptr<Object>>& objects)
{
    const std::unordered_set<const Object*> chosen = setOf(objects);
    for (const std::shared_ptr<Object>& object : topmostOf(objects))
    {
        const std::shared_ptr<Object> copy = copyTree(*object);
        copy->setTransform(object->worldTransform());
        root_->addChild(copy);
        Lifted lifted;
        add_(object, *copy, chosen, false, lifted);
        for (const std::shared_ptr<Object>& each : lifted)
        {
            const Transform place = each->worldTransform();
            each->parent()->removeChild(*each);
            root_->addChild(each);
            each->setTransform(place);
        }
    }
}

std::shared_ptr<Object> ChosenScene::originalOf(const Object* copy) const
{
    const auto found = originals_.find(copy);
    return found == originals_.end() ? nullptr : found->second.lock();
}

/// @param isCovered  a hidden object that was not chosen is between `copy` and what is chosen above
/// @param lifted  collects the copies that such an object would hide though they were chosen
void ChosenScene::add_(const std::shared_ptr<Object>& original, Object& copy, const Chosen& chosen, bool isCovered,
                       Lifted& lifted)
{
    originals_.emplace(&copy, original);
    if (chosen.contains(original.get()))
    {
        copy.setVisible(true);
        if (isCovered)
            lifted.push_back(copy.shared_from_this());
        isCovered = false;
    }
    isCovered |= !copy.isVisible();
    for (std::size_t i = 0; i < copy.children().size(); ++i)
        add_(original->children()[i], *copy.children()[i], chosen, isCovered, lifted);
}

} // namespace VX
