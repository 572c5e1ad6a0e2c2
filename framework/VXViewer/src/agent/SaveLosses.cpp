#include "SaveLosses.h"

#include <VXMesh/ObjectLines.h>
#include <VXMesh/ObjectMesh.h>
#include <VXMesh/ObjectPoints.h>

#include <fmt/format.h>

#include <cstddef>

namespace VX
{

namespace
{

/// What a kind of file keeps.
struct Kept
{
    bool triangles = true;
    bool clouds = true;
    bool lines = false;
    bool objects = false; ///< else all become one
    bool colors = false;  ///< of objects
};

Kept keptBy(const std::string& extension)
{
    if (extension == ".stl")
        return {.clouds = false};
    if (extension == ".ply")
        return {.colors = true};
    if (extension == ".obj")
        return {.lines = true, .objects = true};
    return {.triangles = extension == ".off"};
}

/// What is in a tree of objects.
struct Content
{
    std::size_t meshes = 0;
    std::size_t clouds = 0;
    std::size_t lines = 0;
    std::size_t colored = 0; ///< in another colour than objects have at first
    std::size_t groups = 0;  ///< objects without geometry of their own, with some of others below that shows
    std::size_t hidden = 0;  ///< which do not count as any of the others
};

/// @return whether some geometry shows
bool count(const Object& object, bool shown, Content& content)
{
    shown = shown && object.isVisible();
    const auto* visual = dynamic_cast<const VisualObject*>(&object);
    const bool isShownGeometry = visual && shown;
    if (visual && !shown)
        ++content.hidden;
    if (isShownGeometry && dynamic_cast<const ObjectMesh*>(visual))
        ++content.meshes;
    if (isShownGeometry && dynamic_cast<const ObjectPoints*>(visual))
        ++content.clouds;
    if (isShownGeometry && dynamic_cast<const ObjectLines*>(visual))
        ++content.lines;
    if (isShownGeometry && visual->color() != ObjectMesh().color())
        ++content.colored;
    bool showsBelow = false;
    for (const std::shared_ptr<Object>& child : object.children())
        showsBelow |= count(*child, shown, content);
    if (!visual && showsBelow && object.parent())
        ++content.groups;
    return isShownGeometry || showsBelow;
}

std::string leftOut(std::size_t number, const char* one, const char* several, const std::string& why)
{
    return fmt::format("{} {} left out: {}", number,
                       number == 1 ? std::string(one) + " was" : std::string(several) + " were", why);
}

} // namespace

std::vector<std::string> saveLosses(const Object& root, const std::string& extension)
{
    std::vector<std::string> losses;
    if (extension == ".vxu")
        return losses;
    Content content;
    count(root, true, content);
    const Kept kept = keptBy(extension);
    const std::string holds = fmt::format("{} files hold none.", extension);
    if (content.hidden > 0)
        losses.push_back(leftOut(content.hidden, "hidden object", "hidden objects",
                                 "only \".vxu\" keeps them. Show them, or name their ids."));
    if (content.clouds > 0 && !kept.clouds)
        losses.push_back(leftOut(content.clouds, "point cloud", "point clouds", holds));
    if (content.lines > 0 && !kept.lines)
        losses.push_back(leftOut(content.lines, "object of lines", "objects of lines", holds));
    if (content.meshes > 0 && !kept.triangles)
        losses.push_back(fmt::format("The triangles of meshes were left out, and their points kept: {}", holds));
    if (content.meshes + content.clouds > 1 && !kept.objects)
        losses.push_back(fmt::format(
            "The objects became one, without their names and groups: {} files hold one object.", extension));
    if (content.groups > 0 && kept.objects)
        losses.push_back(
            leftOut(content.groups, "group", "groups", "the objects in groups were kept, without the groups."));
    if (content.colored > 0 && !kept.colors)
        losses.push_back(fmt::format("The colours of objects were left out: {}", holds));
    return losses;
}

} // namespace VX
