#pragma once

#include <json/value.h>

#include <initializer_list>
#include <utility>
#include <vector>

/// Makes JSON Schemas of what agents send and get. Descriptions are English and written for somebody who sees nothing
/// else.
/// @threads any
namespace VX::AgentSchema
{

using Fields = std::initializer_list<std::pair<const char*, Json::Value>>;
using Names = std::initializer_list<const char*>;

[[nodiscard]] Json::Value text(const char* description);
[[nodiscard]] Json::Value flag(const char* description);
[[nodiscard]] Json::Value number(const char* description);
[[nodiscard]] Json::Value number(const char* description, double least, double most);
[[nodiscard]] Json::Value integer(const char* description, int least, int most);

/// A number from 0 up, as a count.
[[nodiscard]] Json::Value count(const char* description);

/// One of `choices`.
[[nodiscard]] Json::Value choice(const char* description, const std::vector<const char*>& choices);

/// The id of an object.
[[nodiscard]] Json::Value objectId(const char* description);

/// One or more of them.
[[nodiscard]] Json::Value objectIds(const char* description);

/// Three numbers.
[[nodiscard]] Json::Value vector(const char* description);

/// @param most  0: any number
[[nodiscard]] Json::Value list(const char* description, Json::Value item, unsigned least = 0, unsigned most = 0);

/// An object with these fields; without others, as arguments are.
[[nodiscard]] Json::Value object(Fields fields, Names required = {});

/// An object with these fields and perhaps others, as results are.
[[nodiscard]] Json::Value result(Fields fields, Names required = {});

/// `schema` with a description.
[[nodiscard]] Json::Value described(Json::Value schema, const char* description);

/// The same, or null.
[[nodiscard]] Json::Value orNull(Json::Value schema);

/// A box: {"min": [3], "max": [3]}, or null.
[[nodiscard]] Json::Value box(const char* description);

} // namespace VX::AgentSchema
