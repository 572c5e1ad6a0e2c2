#pragma once

#include "render/GlObjects.h"

#include <VXMesh/FaceSet.h>
#include <VXMesh/Geometry.h>

namespace VX
{

/// A set of faces in the graphics memory.
class GpuFaceSet
{
public:
    explicit GpuFaceSet(const FaceSet& faces);

    /// 32 faces a texel.
    [[nodiscard]] const Gl::Texture& texture() const { return texture_; }

    /// A byte for each point of the mesh: 255 where one of the faces uses it, else 0. A triangle of a stand-in counts
    /// as selected when its three points are marked. Made at the first call.
    /// @param mesh  the one that `faces`, the set this was made of, belongs to
    [[nodiscard]] const Gl::Buffer& pointMarks(const Mesh& mesh, const FaceSet& faces);

private:
    Gl::Buffer words_;
    Gl::Texture texture_;
    Gl::Buffer marks_;
};

} // namespace VX
