#include "Records/ToolParameters.h"

#include "Platform/Text.h"

namespace quillorn {

namespace {

template <class Value>
bool reads(const Json* given, Value& value) {
    return given != nullptr && WireForm<Value>::read(*given, value);
}

} // namespace

Json::Object schemaOf(const WireShape& shape, const std::string& description, Json::Object more) {
    Json::Object schema{{"type", shape.type}};
    if (!shape.format.empty())
        schema["format"] = shape.format;
    if (shape.items != nullptr)
        schema["items"] = schemaOf(*shape.items, "", {});
    if (!description.empty())
        schema["description"] = description;
    schema.merge(more);
    return schema;
}

Json::Object objectSchema(Json::Object properties, Json::Array required) {
    Json::Object schema{{"type", "object"}, {"properties", std::move(properties)}};
    if (!required.empty())
        schema["required"] = std::move(required);
    return schema;
}

Json::Object zeroToThree() {
    return {{"enum", Json::Array{0, 1, 2, 3}}};
}

Json::Object zeroToThree(std::int64_t defaultValue) {
    auto schema = zeroToThree();
    schema["default"] = defaultValue;
    return schema;
}

Json::Object hexColor() {
    return {{"pattern", "^#[0-9A-Fa-f]{6}$"}};
}

Json::Object hexColor(const std::string& defaultValue) {
    auto schema = hexColor();
    schema["default"] = defaultValue;
    return schema;
}

void readRequired(const std::string& name, const Json* given, UUID& value) {
    if (!reads(given, value))
        throw ToolError(name + " is required and must be a valid UUID");
}

void readRequired(const std::string& name, const Json* given, Date& value) {
    if (!reads(given, value))
        throw ToolError(name + " is required and must be a valid ISO8601 date");
}

void readRequired(const std::string& name, const Json* given, std::string& value) {
    if (!reads(given, value) || trimBlanks(value).empty())
        throw ToolError(name + " is required and cannot be empty");
}

void readRequired(const std::string& name, const Json* given, std::vector<UUID>& value) {
    const Json::Array* elements = given != nullptr ? given->asArray() : nullptr;
    if (elements == nullptr || elements->empty())
        throw ToolError(name + " is required and cannot be empty");
    if (!reads(given, value))
        throw ToolError("All " + name + " must be valid UUIDs");
}

} // namespace quillorn
