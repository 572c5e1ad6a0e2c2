#pragma once

#include "render/ShaderProgram.h"

#include <array>
#include <optional>

namespace VX
{

/// What the shader of triangles is switched to; bits.
struct MeshFlavor
{
    static constexpr unsigned flat = 1;
    static constexpr unsigned vertexColors = 2;
    static constexpr unsigned faceColors = 4;
    static constexpr unsigned selectedFaces = 8;   ///< told by a set of faces
    static constexpr unsigned selectedPoints = 16; ///< told by marks of their points, as those of a stand-in
    static constexpr unsigned wire = 32;
    static constexpr unsigned count = 64;
};

/// What the shader of points is switched to; bits.
struct PointFlavor
{
    static constexpr unsigned normals = 1;
    static constexpr unsigned vertexColors = 2;
    static constexpr unsigned count = 4;
};

/// Where the shader of triangles reads from.
struct MeshTextureUnit
{
    static constexpr int faceColors = 0;
    static constexpr int selectedFaces = 1;
    static constexpr int points = 2;
    static constexpr int corners = 3;
};

struct MeshProgram
{
    explicit MeshProgram(unsigned flavor);

    ShaderProgram program;
    GLint toClip;
    GLint toCamera;
    GLint normalToCamera;
    GLint viewRay;
    GLint color;
    GLint highlight;
    GLint opacity;
    GLint firstTriangle;
    GLint selectionColor;
    GLint halfViewport;
    GLint halfWireWidth;
};

struct PointProgram
{
    explicit PointProgram(unsigned flavor);

    ShaderProgram program;
    GLint toClip;
    GLint normalToCamera;
    GLint size;
    GLint color;
    GLint opacity;
    GLint highlight;
};

struct LineProgram
{
    LineProgram();

    ShaderProgram program;
    GLint toClip;
    GLint halfViewport;
    GLint halfWidth;
    GLint towardsViewer;
    GLint color;
    GLint opacity;
};

struct BackgroundProgram
{
    BackgroundProgram();

    ShaderProgram program;
    GLint top;
    GLint bottom;
};

/// The programs of the scene, each compiled when it is needed first: compiling costs more than drawing a small scene.
class ScenePrograms
{
public:
    const MeshProgram& mesh(unsigned flavor) { return made_(meshes_.at(flavor), flavor); }

    const PointProgram& points(unsigned flavor) { return made_(points_.at(flavor), flavor); }

    const LineProgram& lines() { return made_(lines_); }

    const BackgroundProgram& background() { return made_(background_); }

private:
    template <class Program, class... Args>
    static const Program& made_(std::optional<Program>& slot, Args... args)
    {
        if (!slot)
            slot.emplace(args...);
        return *slot;
    }

    std::array<std::optional<MeshProgram>, MeshFlavor::count> meshes_;
    std::array<std::optional<PointProgram>, PointFlavor::count> points_;
    std::optional<LineProgram> lines_;
    std::optional<BackgroundProgram> background_;
};

} // namespace VX
