#pragma once

#include "HeldGeometry.h"
#include "ObjectFields.h"

#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace VX
{

/// One of two sides of a change.
enum class ChangeSide
{
    Before,
    After
};

/// A field of an object before and after a step.
/// @threads the UI thread
class FieldChange
{
public:
    virtual ~FieldChange() = default;

    virtual void apply(Object& object, ChangeSide side) const = 0;

    /// Adds the geometry that it holds on `side`.
    virtual void collect(HeldGeometry& held, ChangeSide side) const = 0;

    [[nodiscard]] virtual bool isInFile() const = 0;

    /// Its own memory, in bytes, without geometry.
    [[nodiscard]] virtual std::size_t ownBytes() const = 0;
};

template <class Field>
class FieldChangeOf : public FieldChange
{
public:
    using Value = decltype(Field::get(std::declval<const Object&>()));

    FieldChangeOf(Value before, Value after)
        : before_(std::move(before))
        , after_(std::move(after))
    {
    }

    void apply(Object& object, ChangeSide side) const override { Field::set(object, value_(side)); }

    void collect(HeldGeometry& held, ChangeSide side) const override
    {
        if constexpr (requires { held.add(before_); })
            held.add(value_(side));
    }

    [[nodiscard]] bool isInFile() const override { return Field::isInFile; }

    [[nodiscard]] std::size_t ownBytes() const override { return sizeof(*this); }

private:
    [[nodiscard]] const Value& value_(ChangeSide side) const { return side == ChangeSide::Before ? before_ : after_; }

    Value before_;
    Value after_;
};

/// The fields of an object at one moment. They are compared, and set later, in the order of `Fields`.
template <class... Fields>
class ObjectStateOf
{
public:
    explicit ObjectStateOf(const Object& object)
        : values_(Fields::get(object)...)
        , children_(object.children())
    {
    }

    [[nodiscard]] const std::vector<std::shared_ptr<Object>>& children() const { return children_; }

    /// The fields that differ in `object` now, without the children.
    [[nodiscard]] std::vector<std::unique_ptr<FieldChange>> changesTo(const Object& object) const
    {
        std::vector<std::unique_ptr<FieldChange>> changes;
        std::apply([&](const auto&... before) { (compare_<Fields>(object, before, changes), ...); }, values_);
        return changes;
    }

private:
    template <class Field, class Value>
    static void compare_(const Object& object, const Value& before, std::vector<std::unique_ptr<FieldChange>>& changes)
    {
        Value after = Field::get(object);
        if (!(before == after))
            changes.push_back(std::make_unique<FieldChangeOf<Field>>(before, std::move(after)));
    }

    std::tuple<decltype(Fields::get(std::declval<const Object&>()))...> values_;
    std::vector<std::shared_ptr<Object>> children_;
};

/// A new mesh may take the selection of faces away, so the faces come behind it.
using ObjectState =
    ObjectStateOf<ObjectFields::Name, ObjectFields::LocalTransform, ObjectFields::Visibility, ObjectFields::Selection,
                  ObjectFields::ObjectColor, ObjectFields::FlatShading, ObjectFields::MeshGeometry,
                  ObjectFields::SelectedFaces, ObjectFields::PointGeometry, ObjectFields::LineGeometry>;

} // namespace VX
