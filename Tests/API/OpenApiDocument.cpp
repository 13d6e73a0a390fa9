#include "API/OpenApiDocument.h"

#include "Platform/Date.h"
#include "Platform/UUID.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <map>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace quillorn {

namespace {

std::string upper(std::string method) {
    std::ranges::transform(method, method.begin(), [](unsigned char c) { return std::toupper(c); });
    return method;
}

std::vector<std::string> segmentsOf(const std::string& path) {
    std::vector<std::string> segments;
    std::istringstream stream(path);
    for (std::string segment; std::getline(stream, segment, '/');)
        segments.push_back(segment);
    return segments;
}

bool matches(const std::string& pattern, const std::string& path) {
    const auto same = [](const std::string& a, const std::string& b) { return a.starts_with('{') || a == b; };
    return std::ranges::equal(segmentsOf(pattern), segmentsOf(path), same);
}

using Check = bool (*)(const Json&);

/// Of the keywords "type" and "format".
const std::map<std::string, Check> checks{
    {"object", [](const Json& value) { return value.asObject() != nullptr; }},
    {"array", [](const Json& value) { return value.asArray() != nullptr; }},
    {"string", [](const Json& value) { return value.asString() != nullptr; }},
    {"boolean", [](const Json& value) { return value.asBool() != nullptr; }},
    {"integer", [](const Json& value) { return value.asInteger() != nullptr; }},
    {"number", [](const Json& value) { return value.asInteger() != nullptr || value.asDouble() != nullptr; }},
    {"uuid", [](const Json& value) { return UUID::parse(*value.asString()).has_value(); }},
    {"date-time", [](const Json& value) { return parseISO8601(*value.asString()).has_value(); }},
};

bool isWithin(const Json& value, const Json& schema) {
    const auto limit = [&](const char* name) { return schema.find(name) ? schema.find(name)->asInteger() : nullptr; };
    const auto* number = value.asInteger();
    return number == nullptr || ((limit("minimum") == nullptr || *number >= *limit("minimum")) &&
                                 (limit("maximum") == nullptr || *number <= *limit("maximum")));
}

} // namespace

OpenApiDocument::OpenApiDocument() : m_root(Json::parse(readFile(QUILLORN_RESOURCES "/openapi.json"))) {}

const OpenApiDocument& OpenApiDocument::shared() {
    static const OpenApiDocument document;
    return document;
}

const Json& OpenApiDocument::resolve(const Json& node) const {
    const Json* reference = node.find("$ref");
    if (reference == nullptr)
        return node;
    const Json* at = &m_root;
    for (const auto& segment : segmentsOf(reference->asString()->substr(2)))
        if (at = at->find(segment); at == nullptr)
            throw std::logic_error("a reference that leads nowhere: " + *reference->asString());
    return *at;
}

const Json& OpenApiDocument::schema(const std::string& name) const {
    return resolve(Json::Object{{"$ref", "#/components/schemas/" + name}});
}

std::vector<std::string> OpenApiDocument::operations() const {
    std::vector<std::string> operations;
    for (const auto& [pattern, item] : *m_root.find("paths")->asObject())
        for (const auto& [method, operation] : *item.asObject())
            if (method != "parameters")
                operations.push_back(upper(method) + " " +
                                     std::regex_replace(pattern, std::regex(R"(\{(\w+)\})"), ":$1"));
    std::ranges::sort(operations);
    return operations;
}

const Json* OpenApiDocument::operation(const std::string& method, const std::string& path) const {
    for (const auto& [pattern, item] : *m_root.find("paths")->asObject())
        if (matches(pattern, path))
            for (const auto& [name, operation] : *item.asObject())
                if (upper(name) == method)
                    return &operation;
    return nullptr;
}

std::vector<std::string> OpenApiDocument::faultsOfAnswer(const std::string& method, const std::string& path, int status,
                                                         const std::string& body) const {
    const Json* described = operation(method, path);
    const auto unless = [](bool holds, const std::string& words) {
        return holds ? std::vector<std::string>{} : std::vector{words};
    };
    if (described == nullptr && (status == 401 || status == 403))
        return faultsOf(Json::parse(body), schema("GuardErrorResponse"));
    if (described == nullptr)
        return unless(status == 404 && body.empty(), "not described");
    const Json* response = described->find("responses")->find(std::to_string(status));
    if (response == nullptr)
        return {"status " + std::to_string(status) + " is not described"};
    const Json* content = resolve(*response).find("content");
    if (content == nullptr)
        return unless(body.empty(), "a body that is not described");
    const Json* json = content->find("application/json");
    if (json == nullptr || path == "/openapi.json")
        return {};
    return faultsOf(Json::parse(body), *json->find("schema"));
}

std::vector<std::string> OpenApiDocument::faultsOf(const Json& value, const Json& reference,
                                                   const std::string& place) const {
    const Json& schema = resolve(reference);
    const Json* type = schema.find("type");
    if (type == nullptr)
        return {}; // any value
    if (!checks.at(*type->asString())(value))
        return {place + " is no " + *type->asString()};
    std::vector<std::string> faults;
    const auto add = [&](const Json& part, const Json& form, const std::string& where) {
        for (std::string& fault : faultsOf(part, form, where))
            faults.push_back(std::move(fault));
    };
    if (const Json* format = schema.find("format"); format != nullptr && !checks.at(*format->asString())(value))
        faults.push_back(place + " has another format");
    if (const Json* values = schema.find("enum"); values != nullptr && !std::ranges::count(*values->asArray(), value))
        faults.push_back(place + " has an unknown value");
    if (const Json* only = schema.find("const"); only != nullptr && *only != value)
        faults.push_back(place + " has another value");
    if (!isWithin(value, schema))
        faults.push_back(place + " is out of range");
    if (const Json::Array* elements = value.asArray())
        for (const Json& element : *elements)
            add(element, *schema.find("items"), place + "[]");
    const Json* properties = schema.find("properties");
    if (value.asObject() == nullptr || properties == nullptr)
        return faults;
    for (const auto& [name, member] : *value.asObject()) {
        if (const Json* property = properties->find(name))
            add(member, *property, place + "." + name);
        else
            faults.push_back(place + "." + name + " is not described");
    }
    if (const Json* required = schema.find("required"))
        for (const Json& name : *required->asArray())
            if (value.find(*name.asString()) == nullptr)
                faults.push_back(place + "." + *name.asString() + " is missing");
    return faults;
}

} // namespace quillorn
