#include "render/GpuGeometry.h"

#include "render/Creases.h"
#include "render/GpuUpload.h"

#include <tbb/parallel_reduce.h>
#include <tbb/task_group.h>

#include <algorithm>

namespace VX
{

namespace
{

static_assert(sizeof(GpuVertex) == 16 && sizeof(Color) == 4 && sizeof(Triangle) == 12 && sizeof(Segment) == 8);

constexpr GLuint positionSlot = 0;
constexpr GLuint normalSlot = 1;
constexpr GLuint colorSlot = 2;

Box3f boxOf(const std::vector<Vector3f>& points)
{
    return tbb::parallel_reduce(
        tbb::blocked_range<std::size_t>(0, points.size(), 1 << 15), Box3f(),
        [&](const tbb::blocked_range<std::size_t>& range, Box3f box)
        {
            for (std::size_t i = range.begin(); i != range.end(); ++i)
                box.extend(points[i]);
            return box;
        },
        [](const Box3f& a, const Box3f& b) { return a.merged(b); });
}

Vector3d middleOf(const Box3f& box)
{
    return box.isEmpty() ? Vector3d::Zero() : Vector3d(box.cast<double>().center().cast<float>().cast<double>());
}

/// Makes the bound vertex array read `vertices` and, where there are any, `colors`, every `step`th of them.
void setVertexPointers(const Gl::Buffer& vertices, const Gl::Buffer& colors, std::uint32_t step = 1)
{
    const auto stride = static_cast<GLsizei>(sizeof(GpuVertex) * step);
    glBindBuffer(GL_ARRAY_BUFFER, vertices.name());
    glEnableVertexAttribArray(positionSlot);
    glVertexAttribPointer(positionSlot, 3, GL_FLOAT, GL_FALSE, stride, nullptr);
    glEnableVertexAttribArray(normalSlot);
    glVertexAttribPointer(normalSlot, 2, GL_SHORT, GL_TRUE, stride,
                          reinterpret_cast<const void*>(offsetof(GpuVertex, normal)));
    if (!colors)
        return;
    glBindBuffer(GL_ARRAY_BUFFER, colors.name());
    glEnableVertexAttribArray(colorSlot);
    glVertexAttribPointer(colorSlot, 4, GL_UNSIGNED_BYTE, GL_TRUE, static_cast<GLsizei>(sizeof(Color) * step), nullptr);
}

Gl::VertexArray makeVertexArray(const Gl::Buffer& vertices, const Gl::Buffer& colors, const Gl::Buffer& indices)
{
    Gl::VertexArray array = Gl::VertexArray::create();
    glBindVertexArray(array.name());
    setVertexPointers(vertices, colors);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indices.name());
    glBindVertexArray(0);
    return array;
}

Gl::Buffer makePositions(const std::vector<Vector3f>& points, const std::vector<Vector3f>& normals,
                         const Vector3f& center)
{
    return makeBuffer<GpuVertex>(GL_ARRAY_BUFFER, points.size(),
                                 [&](GpuVertex* vertices)
                                 {
                                     forEachIndex(points.size(),
                                                  [&](std::size_t i)
                                                  {
                                                      vertices[i].position = points[i] - center;
                                                      vertices[i].normal = normals.empty() ? OctahedralNormal{}
                                                                                           : encodeNormal(normals[i]);
                                                  });
                                 });
}

/// As `makePositions`, with normals from the sums and the vertices that the creases add.
Gl::Buffer makePositions(const Mesh& mesh, const NormalSums& sums, const Creases& creases, const Vector3f& center)
{
    const std::size_t count = mesh.points.size();
    const auto fill = [&](GpuVertex* vertices)
    {
        forEachIndex(count,
                     [&](std::size_t i)
                     {
                         vertices[i].position = mesh.points[i] - center;
                         vertices[i].normal = encodeNormal(sums.sum(static_cast<std::uint32_t>(i)));
                     });
        for (const Creases::Vertex& vertex : creases.changed)
            vertices[vertex.point].normal = encodeNormal(vertex.normal);
        for (std::size_t i = 0; i < creases.added.size(); ++i)
        {
            const Creases::Vertex& vertex = creases.added[i];
            vertices[count + i] = {mesh.points[vertex.point] - center, encodeNormal(vertex.normal)};
        }
    };
    return makeBuffer<GpuVertex>(GL_ARRAY_BUFFER, count + creases.added.size(), fill);
}

Gl::Buffer makeIndices(const Mesh& mesh)
{
    const auto fill = [&](Triangle* triangles)
    { forEachIndex(mesh.triangles.size(), [&](std::size_t i) { triangles[i] = mesh.triangles[i]; }); };
    // Bound to a vertex array's place for indices only later: here any array that is bound would take it.
    return makeBuffer<Triangle>(GL_ARRAY_BUFFER, mesh.triangles.size(), fill);
}

/// Has the corners at creases take the vertices that those add.
void patchIndices(const Gl::Buffer& indices, const Mesh& mesh, const Creases& creases)
{
    if (creases.patches.empty())
        return;
    glBindBuffer(GL_ARRAY_BUFFER, indices.name());
    auto* const corners = static_cast<std::uint32_t*>(glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY));
    if (corners == nullptr)
        return;
    const auto firstAdded = static_cast<std::uint32_t>(mesh.points.size());
    for (const Creases::Patch& patch : creases.patches)
        corners[patch.corner] = firstAdded + patch.vertex;
    glUnmapBuffer(GL_ARRAY_BUFFER);
}

Gl::Buffer makeVertexColors(const Mesh& mesh, const Creases& creases)
{
    const std::size_t count = mesh.points.size();
    const auto fill = [&](Color* colors)
    {
        std::copy(mesh.vertexColors.begin(), mesh.vertexColors.end(), colors);
        for (std::size_t i = 0; i < creases.added.size(); ++i)
            colors[count + i] = mesh.vertexColors[creases.added[i].point];
    };
    return makeBuffer<Color>(GL_ARRAY_BUFFER, count + creases.added.size(), fill);
}

} // namespace

GpuSegments::GpuSegments(const Gl::Buffer& points, const std::vector<Segment>& segments)
    : count(static_cast<GLsizei>(segments.size()))
{
    if (count == 0)
        return;
    buffer = makeBuffer(GL_TEXTURE_BUFFER, segments);
    pointTexture = makeBufferTexture(points, GL_RGBA32F);
    segmentTexture = makeBufferTexture(buffer, GL_RG32UI);
}

void GpuSegments::draw() const
{
    glActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_BUFFER, segmentTexture.name());
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_BUFFER, pointTexture.name());
    glDrawArrays(GL_TRIANGLES, 0, 6 * count);
}

void GpuTriangles::draw(std::uint32_t first, std::uint32_t number) const
{
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(number * 3), GL_UNSIGNED_INT,
                   reinterpret_cast<const void*>(std::size_t{first} * sizeof(Triangle)));
}

GpuMesh::GpuMesh(const Mesh& mesh)
{
    // A software renderer clears a new buffer first, which takes one thread: the others analyse meanwhile.
    MeshAnalysis analysis;
    tbb::task_group workers;
    workers.run([&] { analysis = analyzeMesh(mesh); });
    Gl::Buffer indices = makeIndices(mesh);
    workers.wait();
    box = analysis.box;
    center = middleOf(box);
    const Vector3f origin = center.cast<float>();
    box.translate(-origin);
    solid = analysis.solid;
    if (mesh.triangles.empty())
        return;

    const Creases creases = analysis.normalSums ? findCreases(mesh, *analysis.normalSums) : Creases{};
    vertices = analysis.normalSums ? makePositions(mesh, *analysis.normalSums, creases, origin)
                                   : makePositions(mesh.points, mesh.normals, origin);
    analysis.normalSums.reset();
    hasVertexColors = !mesh.vertexColors.empty();
    if (hasVertexColors)
        vertexColors = makeVertexColors(mesh, creases);
    hasFaceColors = !mesh.faceColors.empty();
    patchIndices(indices, mesh, creases);
    addLevel_(std::move(indices), std::move(analysis.clusters), mesh.faceColors);
    edges = GpuSegments(vertices, creases.edges);
}

void GpuMesh::setStandIns(std::vector<StandIn> simplified)
{
    levels.resize(std::min<std::size_t>(levels.size(), 1));
    for (StandIn& standIn : simplified)
        addLevel_(makeBuffer(GL_ARRAY_BUFFER, standIn.triangles), std::move(standIn.clusters), standIn.faceColors);
}

const GpuSides* GpuMesh::sides()
{
    GLint most = 0;
    glGetIntegerv(GL_MAX_TEXTURE_BUFFER_SIZE, &most);
    if (std::uint64_t{levels.front().count} * 3 > static_cast<std::uint64_t>(most))
        return nullptr;
    if (!sides_.points)
        sides_ = {makeBufferTexture(vertices, GL_RGBA32F), makeBufferTexture(levels.front().indices, GL_R32UI)};
    return &sides_;
}

void GpuMesh::addLevel_(Gl::Buffer indices, std::vector<MeshCluster> clusters, const std::vector<Color>& faceColors)
{
    GpuTriangles& level = levels.emplace_back();
    level.clusters = std::move(clusters);
    for (MeshCluster& cluster : level.clusters)
    {
        cluster.box.translate(-center.cast<float>());
        level.count += cluster.triangleCount;
    }
    level.indices = std::move(indices);
    level.array = makeVertexArray(vertices, vertexColors, level.indices);
    if (faceColors.empty())
        return;
    level.faceColorBuffer = makeBuffer(GL_TEXTURE_BUFFER, faceColors);
    level.faceColors = makeBufferTexture(level.faceColorBuffer, GL_RGBA8);
}

GpuPoints::GpuPoints(const PointCloud& cloud)
    : box(boxOf(cloud.points))
    , hasNormals(!cloud.normals.empty())
    , hasColors(!cloud.colors.empty())
    , count(static_cast<std::uint32_t>(cloud.points.size()))
{
    center = middleOf(box);
    box.translate(-center.cast<float>());
    if (count == 0)
        return;
    vertices = makePositions(cloud.points, cloud.normals, center.cast<float>());
    if (hasColors)
        colors = makeBuffer(GL_ARRAY_BUFFER, cloud.colors);
    array = Gl::VertexArray::create();
}

void GpuPoints::draw(std::uint32_t step) const
{
    glBindVertexArray(array.name());
    setVertexPointers(vertices, colors, step);
    glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(count / step));
}

GpuLines::GpuLines(const Lines& lines)
    : box(boxOf(lines.points))
{
    center = middleOf(box);
    box.translate(-center.cast<float>());
    vertices = makePositions(lines.points, {}, center.cast<float>());
    segments = GpuSegments(vertices, lines.segments);
}

} // namespace VX
