#include <quorvix/converter/WebAnswer.h>

namespace VX::WebAnswer
{

const Json::Value& member(const Json::Value& value, const char* name)
{
    return value.isObject() ? value[name] : Json::Value::nullSingleton();
}

std::optional<std::string> text(const Json::Value& value, const char* name)
{
    const Json::Value& found = member(value, name);
    return found.isString() ? std::optional(found.asString()) : std::nullopt;
}

int code(const Json::Value& answer)
{
    const Json::Value& found = member(answer, "code");
    return found.isInt() ? found.asInt() : 0;
}

} // namespace VX::WebAnswer
