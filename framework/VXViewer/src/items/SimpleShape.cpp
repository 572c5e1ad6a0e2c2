#include "SimpleShape.h"

#include "menu/Translate.h"

#include <VXViewer/UI.h>

#include <algorithm>
#include <cmath>

namespace VX
{

namespace
{

constexpr float fieldWidth = 120;
constexpr float usualSize = 10; ///< of the shapes as they are made
constexpr float range = 1000;   ///< by how much a length may be smaller or larger than usual
constexpr float rim = 0.99F;    ///< how much of a length one inside of it may take up
constexpr int mostSegments = 512;

/// Scales the lengths of a shape, and draws the fields for them.
class Fields
{
public:
    explicit Fields(float size)
        : size_(size)
    {
    }

    /// @param label  in English
    void length(const char* label, float& value, float least, float most)
    {
        changed_ |= drawLengthField(tr(label), value, least, most, size_);
        // What another field's change has left no room for.
        value = std::clamp(value, least, most);
    }

    void length(const char* label, float& value) { length(label, value, size_ / range, size_ * range); }

    void lengthBelow(const char* label, float& value, float limit)
    {
        length(label, value, std::min(size_ / range, limit * rim), limit * rim);
    }

    void lengthAbove(const char* label, float& value, float limit)
    {
        length(label, value, limit / rim, std::max(size_ * range, 2 * limit));
    }

    void segments(const char* label, int& value)
    {
        ImGui::SetNextItemWidth(UI::px(fieldWidth));
        changed_ |= UI::sliderInt(tr(label), value, 3, mostSegments);
    }

    [[nodiscard]] bool changed() const { return changed_; }

private:
    float size_;
    bool changed_ = false;
};

void describe(Fields& f, CubeShape& s)
{
    f.length(translatable("Width"), s.width);
    f.length(translatable("Depth"), s.depth);
    f.length(translatable("Height"), s.height);
}

void describe(Fields& f, CylinderShape& s)
{
    f.length(translatable("Radius"), s.radius);
    f.length(translatable("Height"), s.height);
    f.segments(translatable("Segments"), s.segments);
}

void describe(Fields& f, SphereShape& s)
{
    f.length(translatable("Radius"), s.radius);
    f.segments(translatable("Segments"), s.segments);
}

void describe(Fields& f, PrismShape& s)
{
    f.length(translatable("Radius"), s.radius);
    f.length(translatable("Height"), s.height);
    f.segments(translatable("Sides"), s.sides);
}

void describe(Fields& f, TorusShape& s)
{
    f.length(translatable("Ring Radius"), s.radius);
    f.lengthBelow(translatable("Tube Radius"), s.tubeRadius, s.radius);
    f.segments(translatable("Segments"), s.segments);
    f.segments(translatable("Tube Segments"), s.tubeSegments);
}

void describe(Fields& f, ArrowShape& s)
{
    f.length(translatable("Length"), s.length);
    f.length(translatable("Shaft Radius"), s.shaftRadius);
    f.lengthBelow(translatable("Head Length"), s.headLength, s.length);
    f.lengthAbove(translatable("Head Radius"), s.headRadius, s.shaftRadius);
    f.segments(translatable("Segments"), s.segments);
}

void describe(Fields& f, ConeShape& s)
{
    f.length(translatable("Radius"), s.radius);
    f.length(translatable("Height"), s.height);
    f.segments(translatable("Segments"), s.segments);
}

void describe(Fields& f, PlaneShape& s)
{
    f.length(translatable("Width"), s.width);
    f.length(translatable("Depth"), s.depth);
}

struct ShapeName
{
    const char* operator()(const CubeShape&) const { return translatable("Cube"); }

    const char* operator()(const CylinderShape&) const { return translatable("Cylinder"); }

    const char* operator()(const SphereShape&) const { return translatable("Sphere"); }

    const char* operator()(const PrismShape&) const { return translatable("Prism"); }

    const char* operator()(const TorusShape&) const { return translatable("Torus"); }

    const char* operator()(const ArrowShape&) const { return translatable("Arrow"); }

    const char* operator()(const ConeShape&) const { return translatable("Cone"); }

    const char* operator()(const PlaneShape&) const { return translatable("Plane"); }
};

struct ShapeMesh
{
    Mesh operator()(const CubeShape& s) const { return makeCube(s); }

    Mesh operator()(const CylinderShape& s) const { return makeCylinder(s); }

    Mesh operator()(const SphereShape& s) const { return makeSphere(s); }

    Mesh operator()(const PrismShape& s) const { return makePrism(s); }

    Mesh operator()(const TorusShape& s) const { return makeTorus(s); }

    Mesh operator()(const ArrowShape& s) const { return makeArrow(s); }

    Mesh operator()(const ConeShape& s) const { return makeCone(s); }

    Mesh operator()(const PlaneShape& s) const { return makePlane(s); }
};

} // namespace

std::vector<SimpleShape> makeSimpleShapes(float size)
{
    const float f = size / usualSize;
    const CubeShape cube;
    const CylinderShape cylinder;
    const SphereShape sphere;
    const PrismShape prism;
    const TorusShape torus;
    const ArrowShape arrow;
    const ConeShape cone;
    const PlaneShape plane;
    return {
        CubeShape{cube.width * f, cube.depth * f, cube.height * f},
        CylinderShape{cylinder.radius * f, cylinder.height * f, cylinder.segments},
        SphereShape{sphere.radius * f, sphere.segments},
        PrismShape{prism.radius * f, prism.height * f, prism.sides},
        TorusShape{torus.radius * f, torus.tubeRadius * f, torus.segments, torus.tubeSegments},
        ArrowShape{arrow.length * f, arrow.shaftRadius * f, arrow.headLength * f, arrow.headRadius * f, arrow.segments},
        ConeShape{cone.radius * f, cone.height * f, cone.segments},
        PlaneShape{plane.width * f, plane.depth * f}};
}

const char* nameOf(const SimpleShape& shape)
{
    return std::visit(ShapeName(), shape);
}

Mesh meshOf(const SimpleShape& shape)
{
    return std::visit(ShapeMesh(), shape);
}

bool drawDimensions(SimpleShape& shape, float size)
{
    Fields fields(size);
    std::visit([&](auto& each) { describe(fields, each); }, shape);
    return fields.changed();
}

bool drawLengthField(const std::string& label, float& value, float least, float most, float size)
{
    constexpr float partsOfSize = 200;
    constexpr int mostDecimals = 6;
    // The size of a scene may be nothing, or more than a float holds.
    const float sound = std::clamp(size, 1e-30F, 1e30F);
    const int decimals = std::clamp(3 - static_cast<int>(std::floor(std::log10(sound))), 0, mostDecimals);
    ImGui::SetNextItemWidth(UI::px(fieldWidth));
    return UI::drag(label, value, size / partsOfSize, least, most, {"mm", decimals});
}

} // namespace VX
