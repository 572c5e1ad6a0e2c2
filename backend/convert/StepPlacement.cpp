#include "StepPlacement.h"

namespace VX
{

namespace
{

std::optional<Vector3d> coordinates(const StepFile& file, StepIndex index, StepType type)
{
    const std::optional<StepRecord> record = file.record(index, type);
    if (!record)
        return std::nullopt;
    const std::vector<double> values = stepNumbers((*record)[1]);
    if (values.empty() || values.size() > 3)
        return std::nullopt;
    Vector3d vector = Vector3d::Zero();
    for (std::size_t k = 0; k < values.size(); ++k)
        vector[static_cast<Eigen::Index>(k)] = values[k];
    return vector;
}

/// A unit vector, `fallback` where the argument is unset or damaged.
Vector3d direction(const StepFile& file, std::string_view argument, const Vector3d& fallback)
{
    const std::optional<Vector3d> vector = coordinates(file, file.reference(argument), "DIRECTION"_step);
    return vector && vector->norm() > 0 ? vector->normalized() : fallback;
}

/// The part of `vector` across the unit vector `axis`, as a unit vector; any such where there is none.
Vector3d across(const Vector3d& vector, const Vector3d& axis)
{
    constexpr double parallel = 1e-9;
    const Vector3d rest = vector - vector.dot(axis) * axis;
    return rest.norm() > parallel ? rest.normalized() : axis.unitOrthogonal();
}

std::optional<Transform> axisPlacement(const StepFile& file, const StepRecord& record, double unit)
{
    const std::optional<Vector3d> origin = coordinates(file, file.reference(record[1]), "CARTESIAN_POINT"_step);
    if (!origin)
        return std::nullopt;
    Transform transform = Transform::Identity();
    const Vector3d z = direction(file, record[2], Vector3d::UnitZ());
    const Vector3d x = across(direction(file, record[3], Vector3d::UnitX()), z);
    transform.linear() << x, z.cross(x), z;
    transform.translation() = *origin * unit;
    return transform;
}

std::optional<Transform> transformationOperator(const StepFile& file, const StepRecord& record, double unit)
{
    // The attributes before these are inherited twice over, and writers differ in how many of them they write.
    const std::optional<Vector3d> origin = coordinates(file, file.reference(record.fromEnd(2)), "CARTESIAN_POINT"_step);
    if (!origin)
        return std::nullopt;
    const Vector3d z = direction(file, record.fromEnd(0), Vector3d::UnitZ());
    const Vector3d x = across(direction(file, record.fromEnd(4), Vector3d::UnitX()), z);
    Vector3d y = z.cross(x);
    if (direction(file, record.fromEnd(3), y).dot(y) < 0)
        y = -y;
    Transform transform = Transform::Identity();
    transform.linear() << x, y, z;
    const double scale = stepNumber(record.fromEnd(1)).value_or(1);
    if (scale > 0)
        transform.linear() *= scale;
    transform.translation() = *origin * unit;
    return transform;
}

} // namespace

std::optional<Transform> stepPlacement(const StepFile& file, StepIndex placement, double unit)
{
    if (const auto axes = file.record(placement, "AXIS2_PLACEMENT_3D"_step))
        return axisPlacement(file, *axes, unit);
    if (const auto transformation = file.record(placement, "CARTESIAN_TRANSFORMATION_OPERATOR_3D"_step))
        return transformationOperator(file, *transformation, unit);
    return std::nullopt;
}

} // namespace VX
