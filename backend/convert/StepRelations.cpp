#include "StepRelations.h"

#include "StepPlacement.h"
#include "StepUnits.h"

#include <algorithm>
#include <array>

namespace VX
{

namespace
{

template <typename Map>
const typename Map::mapped_type& valueOr(const Map& map, StepIndex key, const typename Map::mapped_type& fallback)
{
    const auto found = map.find(key);
    return found == map.end() ? fallback : found->second;
}

} // namespace

StepRelations::StepRelations(const StepFile& file)
    : file_(file)
{
    readShapes_();
    readUsages_();
    readRelations_();
}

const std::vector<StepIndex>& StepRelations::representationsOf(StepIndex product) const
{
    static const std::vector<StepIndex> none;
    return valueOr(representations_, product, none);
}

StepIndex StepRelations::ownerOf(StepIndex representation) const
{
    return valueOr(owners_, representation, noStepInstance);
}

const std::vector<StepNeighbour>& StepRelations::neighboursOf(StepIndex representation) const
{
    static const std::vector<StepNeighbour> none;
    return valueOr(neighbours_, representation, none);
}

StepIndex StepRelations::definedBy(StepIndex index) const
{
    return file_.reference(file_.record(index)[2]);
}

StepIndex StepRelations::usagePlacedBy(StepIndex contextDependent) const
{
    return definedBy(file_.reference(file_.record(contextDependent)[1]));
}

void StepRelations::readShapes_()
{
    for (const StepType type : {"PRODUCT_DEFINITION"_step, "PRODUCT_DEFINITION_WITH_ASSOCIATED_DOCUMENTS"_step})
        for (const StepIndex product : file_.all(type))
            products_.push_back(product);
    const std::unordered_set<StepIndex> products(products_.begin(), products_.end());

    for (const StepIndex index : file_.all("SHAPE_DEFINITION_REPRESENTATION"_step))
    {
        const StepRecord record = file_.record(index);
        const StepIndex product = definedBy(file_.reference(record[0]));
        const StepIndex representation = file_.reference(record[1]);
        // The shapes of other things, such as the aspects that tolerances apply to, are no parts.
        if (representation == noStepInstance || !products.contains(product))
            continue;
        representations_[product].push_back(representation);
        owners_.emplace(representation, product);
    }
}

void StepRelations::readUsages_()
{
    for (const StepIndex index : file_.all("NEXT_ASSEMBLY_USAGE_OCCURRENCE"_step))
    {
        const StepRecord record = file_.record(index);
        const StepUsage usage{index, file_.reference(record[3]), file_.reference(record[4])};
        if (usage.assembly != noStepInstance && usage.component != noStepInstance)
            usages_.push_back(usage);
    }
    for (const StepIndex index : file_.all("CONTEXT_DEPENDENT_SHAPE_REPRESENTATION"_step))
        placements_.emplace(usagePlacedBy(index), file_.reference(file_.record(index)[0]));
}

StepRelations::Relation StepRelations::relation_(StepIndex index) const
{
    const std::optional<StepRecord> complex = file_.record(index, "REPRESENTATION_RELATIONSHIP"_step);
    const StepRecord record = complex ? *complex : file_.record(index);
    Relation relation{file_.reference(record[2]), file_.reference(record[3]), noStepInstance};
    if (const auto placed = file_.record(index, "REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION"_step))
        relation.transformation = file_.reference(placed->fromEnd(0));
    return relation;
}

bool StepRelations::isDrawing_(StepIndex representation) const
{
    static constexpr std::array drawings{"DRAUGHTING_MODEL"_step, "CONSTRUCTIVE_GEOMETRY_REPRESENTATION"_step,
                                         "MECHANICAL_DESIGN_GEOMETRIC_PRESENTATION_REPRESENTATION"_step};
    return std::ranges::any_of(drawings, [&](StepType type) { return file_.is(representation, type); });
}

void StepRelations::readRelations_()
{
    std::unordered_set<StepIndex> usedByAssemblies;
    for (const auto& [usage, relationship] : placements_)
        usedByAssemblies.insert(relationship);

    for (StepIndex index = 0; index < file_.size(); ++index)
    {
        const StepType type = file_.type(index);
        const bool isRelation = type == "SHAPE_REPRESENTATION_RELATIONSHIP"_step ||
                                type == "REPRESENTATION_RELATIONSHIP"_step ||
                                type == "REPRESENTATION_RELATIONSHIP_WITH_TRANSFORMATION"_step ||
                                (type == complexStepType && file_.is(index, "REPRESENTATION_RELATIONSHIP"_step));
        if (!isRelation || usedByAssemblies.contains(index))
            continue;
        const Relation relation = relation_(index);
        if (relation.first == noStepInstance || relation.second == noStepInstance || isDrawing_(relation.first) ||
            isDrawing_(relation.second))
            continue;
        const bool isPlaced = relation.transformation != noStepInstance;
        const Transform transform = transform_(relation).value_or(Transform::Identity());
        neighbours_[relation.second].push_back({relation.first, transform, isPlaced});
        neighbours_[relation.first].push_back({relation.second, transform.inverse(), isPlaced});
    }
}

std::optional<StepRepresentation> StepRelations::representation(StepIndex index) const
{
    if (index == noStepInstance)
        return std::nullopt;
    const bool isComplex = file_.type(index) == complexStepType;
    const std::optional<StepRecord> record =
        isComplex ? file_.record(index, "REPRESENTATION"_step) : std::optional(file_.record(index));
    if (!record || record->size() < 3)
        return std::nullopt;
    return StepRepresentation{stepString((*record)[0]), (*record)[1], file_.reference((*record)[2])};
}

const std::unordered_set<StepIndex>& StepRelations::itemsOf_(StepIndex index)
{
    const auto [found, isNew] = items_.try_emplace(index);
    if (isNew)
        if (const std::optional<StepRepresentation> shape = representation(index))
            for (const StepIndex item : file_.references(shape->items))
                found->second.insert(item);
    return found->second;
}

std::optional<Transform> StepRelations::transform_(const Relation& relation)
{
    const auto unitOf = [this](StepIndex index)
    {
        const std::optional<StepRepresentation> shape = representation(index);
        return stepLengthUnit(file_, shape ? shape->context : noStepInstance);
    };
    const std::optional<StepRecord> byItems = file_.record(relation.transformation, "ITEM_DEFINED_TRANSFORMATION"_step);
    if (!byItems)
        return stepPlacement(file_, relation.transformation, unitOf(relation.second));

    StepIndex from = file_.reference((*byItems)[2]);
    StepIndex to = file_.reference((*byItems)[3]);
    // Some writers name the two placements the other way round than the two representations.
    if (!itemsOf_(relation.first).contains(from) && itemsOf_(relation.first).contains(to) &&
        itemsOf_(relation.second).contains(from))
        std::swap(from, to);
    const std::optional<Transform> source = stepPlacement(file_, from, unitOf(relation.first));
    const std::optional<Transform> target = stepPlacement(file_, to, unitOf(relation.second));
    if (!source || !target)
        return std::nullopt;
    return *target * source->inverse();
}

std::optional<Transform> StepRelations::placedBy(const StepUsage& usage)
{
    const StepIndex relationship = valueOr(placements_, usage.usage, noStepInstance);
    if (relationship == noStepInstance)
        return std::nullopt;
    const Relation relation = relation_(relationship);
    std::optional<Transform> transform = transform_(relation);
    const bool isReversed = ownerOf(relation.second) == usage.component && ownerOf(relation.first) != usage.component;
    if (transform && isReversed)
        transform = transform->inverse();
    if (transform && !transform->matrix().allFinite())
        return std::nullopt;
    return transform;
}

std::string StepRelations::productName(StepIndex product) const
{
    const StepIndex formation = file_.reference(file_.record(product)[2]);
    const StepRecord record = file_.record(file_.reference(file_.record(formation)[2]));
    std::string name = stepString(record[1]);
    return name.empty() ? stepString(record[0]) : name;
}

} // namespace VX
