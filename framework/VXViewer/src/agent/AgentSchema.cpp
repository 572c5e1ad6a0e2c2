#include "AgentSchema.h"

namespace VX::AgentSchema
{

namespace
{

Json::Value typed(const char* type, const char* description)
{
    Json::Value schema;
    schema["type"] = type;
    schema["description"] = description;
    return schema;
}

Json::Value fieldsOf(Fields fields, Names required)
{
    Json::Value schema;
    schema["type"] = "object";
    schema["properties"] = Json::Value(Json::objectValue);
    for (const auto& [name, field] : fields)
        schema["properties"][name] = field;
    for (const char* name : required)
        schema["required"].append(name);
    return schema;
}

} // namespace

Json::Value text(const char* description)
{
    return typed("string", description);
}

Json::Value flag(const char* description)
{
    return typed("boolean", description);
}

Json::Value number(const char* description)
{
    return typed("number", description);
}

Json::Value number(const char* description, double least, double most)
{
    Json::Value schema = number(description);
    schema["minimum"] = least;
    schema["maximum"] = most;
    return schema;
}

Json::Value integer(const char* description, int least, int most)
{
    Json::Value schema = typed("integer", description);
    schema["minimum"] = least;
    schema["maximum"] = most;
    return schema;
}

Json::Value count(const char* description)
{
    Json::Value schema = typed("integer", description);
    schema["minimum"] = 0;
    return schema;
}

Json::Value choice(const char* description, const std::vector<const char*>& choices)
{
    Json::Value schema = text(description);
    for (const char* each : choices)
        schema["enum"].append(each);
    return schema;
}

Json::Value objectId(const char* description)
{
    Json::Value schema = typed("integer", description);
    schema["minimum"] = 1;
    return schema;
}

Json::Value objectIds(const char* description)
{
    return list(description, objectId("Id of an object, as \"scene.list\" tells."), 1, 10000);
}

Json::Value vector(const char* description)
{
    Json::Value item;
    item["type"] = "number";
    return list(description, std::move(item), 3, 3);
}

Json::Value list(const char* description, Json::Value item, unsigned least, unsigned most)
{
    Json::Value schema = typed("array", description);
    schema["items"] = std::move(item);
    if (least > 0)
        schema["minItems"] = least;
    if (most > 0)
        schema["maxItems"] = most;
    return schema;
}

Json::Value object(Fields fields, Names required)
{
    Json::Value schema = fieldsOf(fields, required);
    schema["additionalProperties"] = false;
    return schema;
}

Json::Value result(Fields fields, Names required)
{
    return fieldsOf(fields, required);
}

Json::Value described(Json::Value schema, const char* description)
{
    schema["description"] = description;
    return schema;
}

Json::Value orNull(Json::Value schema)
{
    Json::Value types(Json::arrayValue);
    types.append(schema["type"]);
    types.append("null");
    schema["type"] = std::move(types);
    return schema;
}

Json::Value box(const char* description)
{
    return orNull(described(
        result({{"min", vector("Lowest coordinates.")}, {"max", vector("Highest coordinates.")}}, {"min", "max"}),
        description));
}

} // namespace VX::AgentSchema
