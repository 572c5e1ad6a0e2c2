#include "render/ScenePrograms.h"

#include "render/Shaders.h"

#include <string>

namespace VX
{

namespace
{

std::string meshDefines(unsigned flavor)
{
    std::string defines;
    if ((flavor & MeshFlavor::flat) != 0)
        defines += "#define FLAT\n";
    if ((flavor & MeshFlavor::vertexColors) != 0)
        defines += "#define VERTEX_COLORS\n";
    if ((flavor & MeshFlavor::faceColors) != 0)
        defines += "#define FACE_COLORS\n";
    return defines;
}

std::string pointDefines(unsigned flavor)
{
    std::string defines;
    if ((flavor & PointFlavor::normals) != 0)
        defines += "#define NORMALS\n";
    if ((flavor & PointFlavor::vertexColors) != 0)
        defines += "#define VERTEX_COLORS\n";
    return defines;
}

} // namespace

MeshProgram::MeshProgram(unsigned flavor)
    : program(meshDefines(flavor), Shaders::meshVertex, Shaders::meshFragment)
    , toClip(program.location("toClip"))
    , toCamera(program.location("toCamera"))
    , normalToCamera(program.location("normalToCamera"))
    , viewRay(program.location("viewRay"))
    , color(program.location("color"))
    , highlight(program.location("highlight"))
    , firstTriangle(program.location("firstTriangle"))
{
}

PointProgram::PointProgram(unsigned flavor)
    : program(pointDefines(flavor), Shaders::pointVertex, Shaders::pointFragment)
    , toClip(program.location("toClip"))
    , normalToCamera(program.location("normalToCamera"))
    , size(program.location("size"))
    , color(program.location("color"))
    , highlight(program.location("highlight"))
{
}

LineProgram::LineProgram()
    : program("", Shaders::lineVertex, Shaders::lineFragment)
    , toClip(program.location("toClip"))
    , halfViewport(program.location("halfViewport"))
    , halfWidth(program.location("halfWidth"))
    , towardsViewer(program.location("towardsViewer"))
    , color(program.location("color"))
{
    program.use();
    ShaderProgram::set(program.location("points"), 0);
    ShaderProgram::set(program.location("segments"), 1);
}

BackgroundProgram::BackgroundProgram()
    : program("", Shaders::backgroundVertex, Shaders::backgroundFragment)
    , top(program.location("top"))
    , bottom(program.location("bottom"))
{
}

} // namespace VX
