#pragma once

#include <VXMesh/FaceSet.h>

#include <memory>

namespace VX
{

class ObjectMesh;

/// Faces of one mesh that are seen.
struct VisibleFaces
{
    const ObjectMesh* object = nullptr;
    FaceSet faces; ///< at least one
};

} // namespace VX
