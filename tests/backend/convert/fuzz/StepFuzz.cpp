#include <VXMesh/ObjectMesh.h>

#include <backend/convert/SceneBuilder.h>
#include <backend/convert/StepExcerpt.h>
#include <backend/convert/StepGrammar.h>
#include <backend/convert/StepScanner.h>
#include <backend/convert/StepStructure.h>
#include <backend/convert/StepStyles.h>
#include <backend/convert/TessellatedGeometry.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace VX
{

namespace
{

void check(bool holds)
{
    if (!holds)
        std::abort();
}

/// The excerpt is a file that the scanner takes, and every item in it is there.
void checkExcerpt(const StepFile& file, const StepNode& node)
{
    const StepExcerpt excerpt = makeStepExcerpt(file, node.solids);
    check(excerpt.items.size() == node.solids.size());
    if (excerpt.text.empty())
        return;
    const auto again = scanStepFile(excerpt.text);
    check(again.has_value());
    check(again->size() == static_cast<StepIndex>(excerpt.size));
    for (StepIndex index = 0; index < again->size(); ++index)
        check(isWellFormedStepInstance((*again)[index].text));
    for (const StepExcerpt::Item& item : excerpt.items)
        check(item.item == 0 || again->find(static_cast<StepId>(item.item)) != noStepInstance);
}

void checkMesh(const BodyGeometry& body)
{
    const Mesh& mesh = *body.mesh;
    check(!mesh.triangles.empty());
    check(mesh.normals.empty() || mesh.normals.size() == mesh.points.size());
    check(mesh.faceColors.empty() || mesh.faceColors.size() == mesh.triangles.size());
    for (const Vector3f& point : mesh.points)
        check(point.allFinite());
    for (const Vector3f& normal : mesh.normals)
        check(std::abs(normal.norm() - 1) < 1e-3F);
    for (const Triangle& triangle : mesh.triangles)
        check(triangle.maxCoeff() < mesh.points.size());
}

} // namespace

// Whatever the bytes: a sentence, or a structure without circles whose parts and texts are sound.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto file = scanStepFile(text);
    if (!file)
    {
        check(file.error().ends_with('.'));
        return 0;
    }
    const StepStructure structure = readStepStructure(*file);
    const StepStyles styles(*file);
    std::vector<std::vector<NodeBody>> bodies(structure.nodes.size());
    for (std::size_t index = 0; index < structure.nodes.size(); ++index)
    {
        const StepNode& node = structure.nodes[index];
        checkExcerpt(*file, node);
        for (const StepItem& item : node.solids)
            static_cast<void>(styles.faceColorsOf(item.item));
        if (node.tessellated.empty())
            continue;
        if (auto body = readTessellatedBody(*file, styles, node.tessellated))
        {
            checkMesh(*body);
            bodies[index].push_back({"", node.tessellated, std::move(*body), false});
        }
    }
    const auto scene = buildScene(structure, styles, bodies);
    check(scene || scene.error().ends_with('.'));
    return 0;
}

} // namespace VX
