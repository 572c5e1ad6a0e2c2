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
    if ((flavor & MeshFlavor::selectedFaces) != 0)
        defines += "#define SELECTED_FACES\n";
    if ((flavor & MeshFlavor::selectedPoints) != 0)
        defines += "#define SELECTED_POINTS\n";
    if ((flavor & MeshFlavor::wire) != 0)
        defines += "#define WIRE\n";
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
    , opacity(program.location("opacity"))
    , firstTriangle(program.location("firstTriangle"))
    , selectionColor(program.location("selectionColor"))
    , halfViewport(program.location("halfViewport"))
    , halfWireWidth(program.location("halfWireWidth"))
{
    program.use();
    ShaderProgram::set(program.location("faceColors"), MeshTextureUnit::faceColors);
    ShaderProgram::set(program.location("selectedFaces"), MeshTextureUnit::selectedFaces);
    ShaderProgram::set(program.location("points"), MeshTextureUnit::points);
    ShaderProgram::set(program.location("corners"), MeshTextureUnit::corners);
}

PointProgram::PointProgram(unsigned flavor)
    : program(pointDefines(flavor), Shaders::pointVertex, Shaders::pointFragment)
    , toClip(program.location("toClip"))
    , normalToCamera(program.location("normalToCamera"))
    , size(program.location("size"))
    , color(program.location("color"))
    , opacity(program.location("opacity"))
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
    , opacity(program.location("opacity"))
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
