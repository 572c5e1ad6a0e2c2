#include "render/GpuFaceSet.h"

#include "render/GpuUpload.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdint>
#include <memory>

namespace VX
{

static_assert(std::endian::native == std::endian::little, "the shader reads words of 64 bits as two of 32");

GpuFaceSet::GpuFaceSet(const FaceSet& faces)
    : words_(makeBuffer<FaceSet::Word>(GL_TEXTURE_BUFFER, faces.words().size(),
                                       [&](FaceSet::Word* words) { std::ranges::copy(faces.words(), words); }))
    , texture_(makeBufferTexture(words_, GL_R32UI))
{
}

const Gl::Buffer& GpuFaceSet::pointMarks(const Mesh& mesh, const FaceSet& faces)
{
    if (marks_)
        return marks_;
    const std::size_t count = mesh.points.size();
    const auto marks = std::make_unique<std::atomic<std::uint8_t>[]>(count);
    forEachIndex(mesh.triangles.size(),
                 [&](std::size_t face)
                 {
                     if (!faces.test(face))
                         return;
                     for (const std::uint32_t point : mesh.triangles[face])
                         marks[point].store(255, std::memory_order_relaxed);
                 });
    marks_ = makeBuffer<std::uint8_t>(GL_ARRAY_BUFFER, count,
                                      [&](std::uint8_t* bytes)
                                      {
                                          for (std::size_t i = 0; i < count; ++i)
                                              bytes[i] = marks[i].load(std::memory_order_relaxed);
                                      });
    return marks_;
}

} // namespace VX
