#pragma once

#include <array>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// `data` as the data section of an ISO 10303-21 file.
[[nodiscard]] std::string stepFileText(std::string_view data);

/// Writes small STEP files for tests. Each function adds instances and returns the number of the one that stands for
/// what was added.
class StepTextBuilder
{
public:
    /// @param entity  "DIRECTION('',(0.,0.,1.))"
    int add(const std::string& entity);

    /// @param unit  "MILLI", "CENTI" or "" for metres, "INCH"
    int context(const std::string& unit = "MILLI");

    /// An AXIS2_PLACEMENT_3D with the axes of the coordinates, or turned by 90 degrees about z.
    int placement(std::array<double, 3> origin, bool isTurned = false);

    /// A TESSELLATED_SOLID with the corners (0,0,0), (size,0,0), (0,size,0), (0,0,size) and one face for each side.
    int tetrahedron(const std::string& name, double size = 1);

    /// The faces of the tetrahedron added last.
    [[nodiscard]] const std::vector<int>& faces() const { return faces_; }

    int representation(std::initializer_list<int> items, int context,
                       const std::string& type = "TESSELLATED_SHAPE_REPRESENTATION");

    /// A PRODUCT_DEFINITION of a new product whose shape is `representation`; none where that is 0.
    int product(const std::string& name, int representation);

    /// A part of one tetrahedron.
    int part(const std::string& name, double size = 1);

    /// A product without items of its own; `assemblyContext` is that of its representation.
    int assembly(const std::string& name, int assemblyContext);

    /// A NEXT_ASSEMBLY_USAGE_OCCURRENCE with its placement.
    int use(const std::string& name, int assembly, int component, std::array<double, 3> origin, bool isTurned = false);

    /// A NEXT_ASSEMBLY_USAGE_OCCURRENCE without a placement.
    int useUnplaced(const std::string& name, int assembly, int component);

    /// A PRESENTATION_STYLE_ASSIGNMENT of a surface colour, channels from 0 to 1.
    int surfaceStyle(double r, double g, double b);

    int styledItem(int style, int item);

    /// The representation that `product` was given.
    [[nodiscard]] int representationOf(int product) const;

    [[nodiscard]] std::string text() const { return stepFileText(data_); }

private:
    struct Product
    {
        int definition = 0;
        int representation = 0;
    };

    std::string data_;
    int last_ = 0;
    std::vector<int> faces_;
    std::vector<Product> products_;
};

/// "#12".
[[nodiscard]] std::string ref(int number);

/// "(#1,#2)".
[[nodiscard]] std::string refs(const std::vector<int>& numbers);

} // namespace VX::Test
