#include "StepSplines.h"

#include <algorithm>
#include <numeric>
#include <span>

namespace VX
{

namespace
{

/// The library has no higher ones.
constexpr double maxDegree = 25;

/// What of a spline has to fit; a surface has two directions.
struct SplineCounts
{
    std::vector<std::string_view> degrees;
    std::string_view points;
    std::vector<std::string_view> multiplicities; ///< none where the knots follow from the type
};

/// The arguments of a spline that is written as one entity, behind its label.
SplineCounts simpleSpline(const StepRecord& record, bool isSurface, bool hasKnots)
{
    SplineCounts counts;
    if (isSurface)
        counts = {{record[1], record[2]}, record[3], {}};
    else
        counts = {{record[1]}, record[2], {}};
    if (hasKnots && isSurface)
        counts.multiplicities = {record[8], record[9]};
    else if (hasKnots)
        counts.multiplicities = {record[6]};
    return counts;
}

std::optional<SplineCounts> complexSpline(const StepFile& file, StepIndex index)
{
    if (file[index].text.find("B_SPLINE_") == std::string_view::npos)
        return std::nullopt;
    if (const auto curve = file.record(index, "B_SPLINE_CURVE"_step))
    {
        SplineCounts counts{{(*curve)[0]}, (*curve)[1], {}};
        if (const auto knots = file.record(index, "B_SPLINE_CURVE_WITH_KNOTS"_step))
            counts.multiplicities = {(*knots)[0]};
        return counts;
    }
    if (const auto surface = file.record(index, "B_SPLINE_SURFACE"_step))
    {
        SplineCounts counts{{(*surface)[0], (*surface)[1]}, (*surface)[2], {}};
        if (const auto knots = file.record(index, "B_SPLINE_SURFACE_WITH_KNOTS"_step))
            counts.multiplicities = {(*knots)[0], (*knots)[1]};
        return counts;
    }
    return std::nullopt;
}

std::optional<SplineCounts> splineCounts(const StepFile& file, StepIndex index)
{
    switch (file.type(index))
    {
    case "B_SPLINE_CURVE_WITH_KNOTS"_step:
        return simpleSpline(file.record(index), false, true);
    case "B_SPLINE_SURFACE_WITH_KNOTS"_step:
        return simpleSpline(file.record(index), true, true);
    case "BEZIER_CURVE"_step:
    case "UNIFORM_CURVE"_step:
    case "QUASI_UNIFORM_CURVE"_step:
        return simpleSpline(file.record(index), false, false);
    case "BEZIER_SURFACE"_step:
    case "UNIFORM_SURFACE"_step:
    case "QUASI_UNIFORM_SURFACE"_step:
        return simpleSpline(file.record(index), true, false);
    case complexStepType:
        return complexSpline(file, index);
    default:
        return std::nullopt;
    }
}

/// The number of control points along each direction; empty where rows differ or there are no points.
std::vector<std::size_t> pointCounts(std::string_view points, std::size_t directions)
{
    std::vector<std::size_t> rows;
    StepTokenizer tokens(points);
    for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
        if (token.kind == StepTokenKind::Open)
            rows.push_back(0);
        else if (token.kind == StepTokenKind::Reference && !rows.empty())
            ++rows.back();
    // The first list of a surface is that of its rows.
    const std::size_t firstRow = directions - 1;
    if (rows.size() <= firstRow)
        return {};
    const std::span<const std::size_t> inner = std::span(rows).subspan(firstRow);
    if (inner.front() == 0 || std::ranges::any_of(inner, [&](std::size_t n) { return n != inner.front(); }))
        return {};
    return directions == 1 ? std::vector{inner.front()} : std::vector{inner.size(), inner.front()};
}

/// Exact files have one multiplicity for each point and for each degree and one more; others have a few too many, which
/// the library mends.
bool fits(std::string_view multiplicities, double points, double degree)
{
    const std::vector<double> values = stepNumbers(multiplicities);
    const double sum = std::accumulate(values.begin(), values.end(), 0.0);
    return !values.empty() && std::ranges::all_of(values, [](double value) { return value >= 1; }) &&
           sum <= 2 * (points + degree + 1);
}

} // namespace

bool hasFittingSplineCounts(const StepFile& file, StepIndex index)
{
    const std::optional<SplineCounts> counts = splineCounts(file, index);
    if (!counts)
        return true;
    const std::size_t directions = counts->degrees.size();
    const std::vector<std::size_t> points = pointCounts(counts->points, directions);
    if (points.empty())
        return false;
    for (std::size_t k = 0; k < directions; ++k)
    {
        const double degree = stepNumber(counts->degrees[k]).value_or(0);
        if (degree < 1 || degree > maxDegree)
            return false;
        if (!counts->multiplicities.empty() && !fits(counts->multiplicities[k], static_cast<double>(points[k]), degree))
            return false;
    }
    return true;
}

} // namespace VX
