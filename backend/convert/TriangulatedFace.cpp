#include "TriangulatedFace.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace VX
{

namespace
{

/// An index of a point, from 1; 0 for what is none.
using Number = std::uint32_t;
using Corners = std::array<Number, 3>;

Number toNumber(std::string_view digits)
{
    const std::optional<StepId> value = parseStepId(digits);
    return value && *value < ~Number{0} ? static_cast<Number>(*value) : 0;
}

/// Calls `visit` with each list of numbers in a list of lists.
template <typename Visit>
void forEachList(std::string_view argument, Visit visit)
{
    std::vector<Number> numbers;
    StepTokenizer tokens(argument);
    for (StepToken token = tokens.next(); token.kind != StepTokenKind::End; token = tokens.next())
        if (token.kind == StepTokenKind::Number)
            numbers.push_back(toNumber(token.text));
        else if (token.kind != StepTokenKind::Comma)
        {
            visit(numbers);
            numbers.clear();
        }
}

std::vector<Number> readNumbers(std::string_view argument)
{
    std::vector<Number> all;
    forEachList(argument, [&](const std::vector<Number>& list) { all.insert(all.end(), list.begin(), list.end()); });
    return all;
}

void addTriangles(std::string_view argument, std::vector<Corners>& triangles)
{
    forEachList(argument,
                [&](const std::vector<Number>& corners)
                {
                    if (corners.size() == 3)
                        triangles.push_back({corners[0], corners[1], corners[2]});
                });
}

void addStrips(std::string_view argument, std::vector<Corners>& triangles)
{
    forEachList(argument,
                [&](const std::vector<Number>& strip)
                {
                    for (std::size_t k = 2; k < strip.size(); ++k)
                        if (k % 2 == 0)
                            triangles.push_back({strip[k - 2], strip[k - 1], strip[k]});
                        else
                            triangles.push_back({strip[k - 1], strip[k - 2], strip[k]});
                });
}

void addFans(std::string_view argument, std::vector<Corners>& triangles)
{
    forEachList(argument,
                [&](const std::vector<Number>& fan)
                {
                    for (std::size_t k = 2; k < fan.size(); ++k)
                        triangles.push_back({fan[0], fan[k - 1], fan[k]});
                });
}

/// Finds the coordinates and normals of a face's points.
class FacePoints
{
public:
    FacePoints(const StepRecord& face, const std::vector<Vector3d>& coordinates)
        : coordinates_(coordinates)
        , indices_(readNumbers(face[5]))
        , normals_(stepNumbers(face[3]))
    {
    }

    [[nodiscard]] bool contains(Number number) const { return coordinateIndex_(number) < coordinates_.size(); }

    [[nodiscard]] const Vector3d& point(Number number) const { return coordinates_[coordinateIndex_(number)]; }

    /// Zero where there is none. One normal for all is that of a plane.
    [[nodiscard]] Vector3f normal(Number number) const
    {
        const std::size_t begin = normals_.size() == 3 ? 0 : (std::size_t{number} - 1) * 3;
        if (begin + 3 > normals_.size())
            return Vector3f::Zero();
        const Vector3d normal(normals_[begin], normals_[begin + 1], normals_[begin + 2]);
        const double length = normal.norm();
        return length > 0 && std::isfinite(length) ? Vector3f((normal / length).cast<float>())
                                                   : Vector3f(Vector3f::Zero());
    }

    [[nodiscard]] bool hasNormals() const { return normals_.size() >= 3; }

private:
    [[nodiscard]] std::size_t coordinateIndex_(Number number) const
    {
        if (indices_.empty())
            return std::size_t{number} - 1;
        return number - 1 < indices_.size() && number > 0 ? std::size_t{indices_[number - 1]} - 1 : coordinates_.size();
    }

    const std::vector<Vector3d>& coordinates_;
    std::vector<Number> indices_; ///< into the coordinates, from 1; empty: the face numbers all of them
    std::vector<double> normals_;
};

bool isTriangle(const Corners& corners, const FacePoints& points)
{
    return corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0] &&
           std::ranges::all_of(corners, [&](Number number) { return points.contains(number); });
}

/// Vertices whose normal the file leaves out get that of their triangles.
void completeNormals(TriangulatedFace& face)
{
    if (std::ranges::none_of(face.normals, [](const Vector3f& normal) { return normal.isZero(); }))
        return;
    std::vector<Vector3d> sums(face.points.size(), Vector3d::Zero());
    for (const Triangle& triangle : face.triangles)
    {
        const Vector3d& first = face.points[triangle[0]];
        const Vector3d normal = (face.points[triangle[1]] - first).cross(face.points[triangle[2]] - first);
        for (const std::uint32_t corner : {triangle[0], triangle[1], triangle[2]})
            sums[corner] += normal;
    }
    for (std::size_t k = 0; k < face.normals.size(); ++k)
        if (face.normals[k].isZero())
            face.normals[k] = sums[k].norm() > 0 && sums[k].allFinite() ? Vector3f(sums[k].normalized().cast<float>())
                                                                        : Vector3f(Vector3f::UnitZ());
}

} // namespace

bool isTriangulatedFace(StepType type)
{
    return type == "TRIANGULATED_FACE"_step || type == "COMPLEX_TRIANGULATED_FACE"_step;
}

StepIndex coordinatesListOf(const StepFile& file, StepIndex face)
{
    const StepIndex list = file.reference(file.record(face)[1]);
    return file.type(list) == "COORDINATES_LIST"_step ? list : noStepInstance;
}

std::vector<Vector3d> readCoordinatesList(const StepFile& file, StepIndex list)
{
    const std::vector<double> numbers = stepNumbers(file.record(list)[2]);
    std::vector<Vector3d> points(numbers.size() / 3);
    for (std::size_t k = 0; k < points.size(); ++k)
        points[k] = {numbers[3 * k], numbers[3 * k + 1], numbers[3 * k + 2]};
    return points;
}

TriangulatedFace readTriangulatedFace(const StepFile& file, StepIndex index, const std::vector<Vector3d>& coordinates)
{
    const StepRecord record = file.record(index);
    std::vector<Corners> triangles;
    if (file.type(index) == "TRIANGULATED_FACE"_step)
        addTriangles(record[6], triangles);
    else
    {
        addStrips(record[6], triangles);
        addFans(record[7], triangles);
    }
    const FacePoints points(record, coordinates);
    std::erase_if(triangles, [&](const Corners& corners) { return !isTriangle(corners, points); });

    std::vector<Number> used;
    for (const Corners& corners : triangles)
        used.insert(used.end(), corners.begin(), corners.end());
    std::ranges::sort(used);
    used.erase(std::unique(used.begin(), used.end()), used.end());

    TriangulatedFace face;
    for (const Number number : used)
    {
        face.points.push_back(points.point(number));
        if (points.hasNormals())
            face.normals.push_back(points.normal(number));
    }
    const auto vertex = [&](Number number)
    { return static_cast<std::uint32_t>(std::ranges::lower_bound(used, number) - used.begin()); };
    for (const Corners& corners : triangles)
        face.triangles.emplace_back(vertex(corners[0]), vertex(corners[1]), vertex(corners[2]));
    completeNormals(face);
    return face;
}

} // namespace VX
