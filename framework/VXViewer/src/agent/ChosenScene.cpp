#include "ChosenScene.h"

#include "SceneSnapshot.h"

namespace VX
{

std::shared_ptr<const Object> chosenScene(const std::vector<std::shared_ptr<Object>>& objects)
{
    auto root = std::make_shared<Object>();
    for (const std::shared_ptr<Object>& object : objects)
    {
        const std::shared_ptr<Object> copy = copyTree(*object);
        copy->setTransform(object->worldTransform());
        copy->setVisible(true);
        root->addChild(copy);
    }
    return root;
}

} // namespace VX
