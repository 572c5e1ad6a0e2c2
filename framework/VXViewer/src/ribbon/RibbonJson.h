#pragma once

#include <VXViewer/RibbonSchema.h>

#include <json/value.h>
#include <tl/expected.hpp>

#include <optional>
#include <string>
#include <vector>

/// Reads parts of the ribbon from JSON, for the files of the schema and for the document of a deployment. Nothing here
/// throws.
/// @threads any
namespace VX::RibbonJson
{

constexpr Json::ArrayIndex maxTabs = 64;
constexpr Json::ArrayIndex maxGroups = 64;
constexpr Json::ArrayIndex maxNames = 256;
constexpr std::size_t maxNameBytes = 256;

/// The member `key` of an object; the null value where there is none or `value` is no object.
[[nodiscard]] const Json::Value& member(const Json::Value& value, const char* key);

/// A text that can be a name: not empty and at most `maxNameBytes` long.
[[nodiscard]] std::optional<std::string> name(const Json::Value& value);

/// The names of a list, without what is no name; nothing where `value` is no list.
[[nodiscard]] std::optional<std::vector<std::string>> names(const Json::Value& value);

/// The tabs of a list, without what is none.
/// @param wrong  told of everything that is left out, a few words each: `a tab without a "name"`
[[nodiscard]] std::vector<RibbonTab> tabs(const Json::Value& value, std::vector<std::string>* wrong = nullptr);

} // namespace VX::RibbonJson
