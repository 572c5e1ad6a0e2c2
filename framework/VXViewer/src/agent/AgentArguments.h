#pragma once

#include <VXMesh/Geometry.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace VX
{

class Object;

/// Reads the arguments of a tool, which fit its input schema; what does not throws `Json::Exception`.
class AgentArguments
{
public:
    /// @param values  an object, which outlives this
    explicit AgentArguments(const Json::Value& values)
        : values_(values)
    {
    }

    /// Whether there are none at all.
    [[nodiscard]] bool isEmpty() const { return values_.empty(); }

    [[nodiscard]] bool has(const char* name) const { return values_.isMember(name) && !values_[name].isNull(); }

    [[nodiscard]] std::string text(const char* name, const char* defaultValue = "") const;
    [[nodiscard]] bool flag(const char* name, bool defaultValue) const;
    [[nodiscard]] int integer(const char* name, int defaultValue) const;
    [[nodiscard]] double number(const char* name, double defaultValue) const;

    /// Nothing where there is none.
    [[nodiscard]] std::optional<Vector3d> vector(const char* name) const;

    /// Empty where there are none.
    [[nodiscard]] std::vector<double> numbers(const char* name) const;
    [[nodiscard]] std::vector<std::string> texts(const char* name) const;
    [[nodiscard]] std::vector<std::uint64_t> ids(const char* name) const;

    /// The arguments below `name`, an object; nothing where there is none.
    [[nodiscard]] std::optional<AgentArguments> below(const char* name) const;

    /// The object below `root`, or `root` itself, whose id stands in `name`.
    /// @return `No object has the id N. …`
    [[nodiscard]] tl::expected<std::shared_ptr<Object>, std::string> object(const char* name, Object& root) const;

    /// The objects below `root` whose ids stand in `name`, each once, in the order of the ids; none where there is no
    /// such argument.
    /// @return the same errors; `The root of the scene is none of its objects. …` for the id of `root`
    [[nodiscard]] tl::expected<std::vector<std::shared_ptr<Object>>, std::string> objects(const char* name,
                                                                                          Object& root) const;

    /// The same of an argument that names one object at least.
    /// @return the same errors; `Name at least one object in "…".`
    [[nodiscard]] tl::expected<std::vector<std::shared_ptr<Object>>, std::string> someObjects(const char* name,
                                                                                              Object& root) const;

private:
    const Json::Value& values_;
};

} // namespace VX
