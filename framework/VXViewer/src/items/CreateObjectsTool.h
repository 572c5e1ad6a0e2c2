#pragma once

#include "SceneTool.h"
#include "SimpleShape.h"

#include <VXMesh/Geometry.h>

#include <memory>
#include <vector>

namespace VX
{

class ObjectMesh;

/// Makes an object of a simple shape. It is shown in the scene while its dimensions and its place are chosen, and
/// becomes a part of the scene with the press of a button, as one step.
/// @threads the UI thread
class CreateObjectsTool final : public SceneTool
{
public:
    explicit CreateObjectsTool(Viewer& viewer);

protected:
    void drawContent_() override;
    void began_() override;
    void ended_() override;

private:
    void updateShape_();
    void updatePlace_();
    void place_();

    float size_ = 1; ///< of the shapes at first
    std::vector<SimpleShape> shapes_;
    int current_ = 0;
    Vector3f position_ = Vector3f::Zero();
    std::shared_ptr<ObjectMesh> preview_;
};

} // namespace VX
