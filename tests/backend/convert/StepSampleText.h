#pragma once

#include <VXMesh/Geometry.h>

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace VX::Test
{

/// What a STEP file says about itself, read from its text with nothing of the converter, so that tests can hold its
/// scenes against the file: slow and simple, for well-formed files with product definitions.
class StepSampleText
{
public:
    explicit StepSampleText(std::string_view text);

    /// The uses of products without components, each counted as often as the assemblies above it are used.
    [[nodiscard]] std::size_t partCount() const;

    /// The names of all uses of products: the occurrence's, else the product's, else the product's identifier.
    [[nodiscard]] std::multiset<std::string> names() const;

    /// The surface colours of the styled items, "#rrggbb".
    [[nodiscard]] std::set<std::string> surfaceColors() const;

    /// The box around the vertices of all exact geometry as it is written, without the placements of assemblies.
    /// @return millimetres
    [[nodiscard]] Box3d vertexBox() const;

private:
    using Id = int;

    [[nodiscard]] bool is_(Id id, std::string_view keyword) const;
    [[nodiscard]] std::vector<Id> all_(std::string_view keyword) const;
    [[nodiscard]] std::string productName_(Id definition) const;
    [[nodiscard]] std::vector<Id> roots_() const;
    [[nodiscard]] std::vector<Id> usagesIn_(Id definition) const;
    [[nodiscard]] std::size_t partsIn_(Id definition) const;
    void addNames_(Id definition, const std::string& usageName, std::multiset<std::string>& names) const;
    void addColors_(Id style, std::set<std::string>& colors) const;
    [[nodiscard]] double millimetres_(Id unit) const;
    [[nodiscard]] double lengthUnit_() const;

    std::map<Id, std::string> instances_; ///< "KEYWORD(...)" without blanks outside strings
};

} // namespace VX::Test
