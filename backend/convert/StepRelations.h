#pragma once

#include "StepFile.h"

#include <VXMesh/Geometry.h>

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace VX
{

/// A representation's attributes.
struct StepRepresentation
{
    std::string name;
    std::string_view items;
    StepIndex context = noStepInstance;
};

/// One use of a product in another: a NEXT_ASSEMBLY_USAGE_OCCURRENCE.
struct StepUsage
{
    StepIndex usage = noStepInstance;
    StepIndex assembly = noStepInstance;  ///< product definition
    StepIndex component = noStepInstance; ///< product definition
};

/// A representation that holds further geometry of another.
struct StepNeighbour
{
    StepIndex representation = noStepInstance;
    Transform toNeighboured = Transform::Identity(); ///< millimetres
    bool isPlaced = false;                           ///< false: the same coordinates
};

/// The relations between product definitions and representations, gathered from the whole file once.
/// @threads any, never changed, `placedBy` apart: that remembers what it read
class StepRelations
{
public:
    explicit StepRelations(const StepFile& file);

    /// In file order.
    [[nodiscard]] const std::vector<StepIndex>& products() const { return products_; }

    [[nodiscard]] const std::vector<StepUsage>& usages() const { return usages_; }

    /// The representations of a product definition's shape.
    [[nodiscard]] const std::vector<StepIndex>& representationsOf(StepIndex product) const;

    /// The product definition whose shape a representation is, or `noStepInstance`.
    [[nodiscard]] StepIndex ownerOf(StepIndex representation) const;

    [[nodiscard]] const std::vector<StepNeighbour>& neighboursOf(StepIndex representation) const;

    /// From the coordinates of the component to those of the assembly, in millimetres; nothing where the file has none.
    [[nodiscard]] std::optional<Transform> placedBy(const StepUsage& usage);

    /// The name, else the identifier, of the product that a product definition is of.
    [[nodiscard]] std::string productName(StepIndex product) const;

    /// Nothing where the instance is no representation. Complex instances count too.
    [[nodiscard]] std::optional<StepRepresentation> representation(StepIndex index) const;

    /// What the property definition (such as a product definition shape) `index` is the property of.
    [[nodiscard]] StepIndex definedBy(StepIndex index) const;

    /// The usage that a CONTEXT_DEPENDENT_SHAPE_REPRESENTATION places, or `noStepInstance`.
    [[nodiscard]] StepIndex usagePlacedBy(StepIndex contextDependent) const;

private:
    struct Relation
    {
        StepIndex first = noStepInstance;
        StepIndex second = noStepInstance;
        StepIndex transformation = noStepInstance;
    };

    void readShapes_();
    void readUsages_();
    void readRelations_();
    [[nodiscard]] Relation relation_(StepIndex index) const;
    [[nodiscard]] bool isDrawing_(StepIndex representation) const;
    [[nodiscard]] const std::unordered_set<StepIndex>& itemsOf_(StepIndex representation);
    [[nodiscard]] std::optional<Transform> transform_(const Relation& relation);

    const StepFile& file_;
    std::vector<StepIndex> products_;
    std::vector<StepUsage> usages_;
    std::unordered_map<StepIndex, std::vector<StepIndex>> representations_;
    std::unordered_map<StepIndex, StepIndex> owners_;
    std::unordered_map<StepIndex, StepIndex> placements_; ///< usage to the relationship of representations
    std::unordered_map<StepIndex, std::vector<StepNeighbour>> neighbours_;
    std::unordered_map<StepIndex, std::unordered_set<StepIndex>> items_;
};

} // namespace VX
