#include "StepUnits.h"

#include <array>

namespace VX
{

namespace
{

constexpr double millimetresPerMetre = 1000;
/// Units may be based on units that are based on others; a file may do so in a circle.
constexpr int maxUnitDepth = 8;

double prefixFactor(std::string_view prefix)
{
    struct Prefix
    {
        std::string_view name;
        double factor;
    };

    static constexpr std::array<Prefix, 16> prefixes{{{"EXA", 1e18},
                                                      {"PETA", 1e15},
                                                      {"TERA", 1e12},
                                                      {"GIGA", 1e9},
                                                      {"MEGA", 1e6},
                                                      {"KILO", 1e3},
                                                      {"HECTO", 1e2},
                                                      {"DECA", 1e1},
                                                      {"DECI", 1e-1},
                                                      {"CENTI", 1e-2},
                                                      {"MILLI", 1e-3},
                                                      {"MICRO", 1e-6},
                                                      {"NANO", 1e-9},
                                                      {"PICO", 1e-12},
                                                      {"FEMTO", 1e-15},
                                                      {"ATTO", 1e-18}}};
    for (const Prefix& candidate : prefixes)
        if (candidate.name == prefix)
            return candidate.factor;
    return 1;
}

/// The measure of a MEASURE_WITH_UNIT, on its own, as one of its subtypes, or as a part.
StepRecord measureWithUnit(const StepFile& file, StepIndex index)
{
    if (std::optional<StepRecord> part = file.record(index, "MEASURE_WITH_UNIT"_step))
        return std::move(*part);
    return file.record(index);
}

std::optional<double> unitLength(const StepFile& file, StepIndex unit, int depth)
{
    if (depth > maxUnitDepth)
        return std::nullopt;
    if (const std::optional<StepRecord> si = file.record(unit, "SI_UNIT"_step))
    {
        const StepToken prefix = StepTokenizer(si->fromEnd(1)).next();
        return millimetresPerMetre * (prefix.kind == StepTokenKind::Enumeration ? prefixFactor(prefix.text) : 1);
    }
    const std::optional<StepRecord> conversion = file.record(unit, "CONVERSION_BASED_UNIT"_step);
    if (!conversion)
        return std::nullopt;
    const StepRecord measure = measureWithUnit(file, file.reference(conversion->fromEnd(0)));
    const std::optional<double> factor = stepNumber(measure[0]);
    const std::optional<double> base = unitLength(file, file.reference(measure[1]), depth + 1);
    return factor && *factor > 0 && base ? std::optional(*factor * *base) : std::nullopt;
}

} // namespace

double stepLengthUnit(const StepFile& file, StepIndex context)
{
    const std::optional<StepRecord> assigned = file.record(context, "GLOBAL_UNIT_ASSIGNED_CONTEXT"_step);
    if (!assigned)
        return 1;
    for (const StepIndex unit : file.references(assigned->fromEnd(0)))
        if (file.is(unit, "LENGTH_UNIT"_step))
            return unitLength(file, unit, 0).value_or(1);
    return 1;
}

} // namespace VX
