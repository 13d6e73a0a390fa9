#include "API/OpenApiDocument.h"

#include "Platform/Date.h"
#include "Platform/UUID.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace quillorn {

namespace {

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

bool isOfType(const Json& value, const std::string& type) {
    if (type == "object")
        return value.asObject() != nullptr;
    if (type == "array")
        return value.asArray() != nullptr;
    if (type == "string")
        return value.asString() != nullptr;
    if (type == "boolean")
        return value.asBool() != nullptr;
    if (type == "integer")
        return value.asInteger() != nullptr;
    if (type == "number")
        return value.asInteger() != nullptr || value.asDouble() != nullptr;
    throw std::logic_error("a type that this check doesn't know: " + type);
}

bool hasFormat(const std::string& text, const std::string& format) {
    if (format == "uuid")
        return UUID::parse(text).has_value();
    if (format == "date-time")
        return parseISO8601(text).has_value();
    throw std::logic_error("a format that this check doesn't know: " + format);
}

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
    for (const auto& [pattern, item] : *m_root.find("paths")->asObject()) {
        std::string path = pattern;
        for (auto at = path.find('{'); at != std::string::npos; at = path.find('{', at))
            path.replace(at, 1, ":");
        std::erase(path, '}');
        for (std::string method : {"get", "put", "post", "delete", "options", "head", "patch", "trace"}) {
            if (item.find(method) == nullptr)
                continue;
            std::ranges::transform(method, method.begin(), [](char c) { return static_cast<char>(c - 'a' + 'A'); });
            operations.push_back(method + " " + path);
        }
    }
    std::ranges::sort(operations);
    return operations;
}

const Json* OpenApiDocument::operation(const std::string& method, const std::string& path) const {
    std::string key = method;
    std::ranges::transform(key, key.begin(), [](char c) { return static_cast<char>(c - 'A' + 'a'); });
    for (const auto& [pattern, item] : *m_root.find("paths")->asObject())
        if (matches(pattern, path))
            return item.find(key);
    return nullptr;
}

std::vector<std::string> OpenApiDocument::faultsOfAnswer(const std::string& method, const std::string& path, int status,
                                                         const std::string& body) const {
    const Json* described = operation(method, path);
    if (described == nullptr && (status == 401 || status == 403))
        return faultsOf(Json::parse(body), schema("GuardErrorResponse"));
    if (described == nullptr)
        return status == 404 && body.empty() ? std::vector<std::string>{} : std::vector<std::string>{"not described"};
    const Json* response = described->find("responses")->find(std::to_string(status));
    if (response == nullptr)
        return {"status " + std::to_string(status) + " is not described"};
    const Json* content = resolve(*response).find("content");
    if (content == nullptr)
        return body.empty() ? std::vector<std::string>{} : std::vector<std::string>{"a body that is not described"};
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
    if (!isOfType(value, *type->asString()))
        return {place + " is no " + *type->asString()};
    std::vector<std::string> faults;
    const auto add = [&](const std::vector<std::string>& more) {
        faults.insert(faults.end(), more.begin(), more.end());
    };
    if (const Json* format = schema.find("format");
        format != nullptr && !hasFormat(*value.asString(), *format->asString()))
        faults.push_back(place + " has another format");
    if (const Json* values = schema.find("enum"); values != nullptr && !std::ranges::count(*values->asArray(), value))
        faults.push_back(place + " has an unknown value");
    if (const Json* only = schema.find("const"); only != nullptr && *only != value)
        faults.push_back(place + " has another value");
    if (!isWithin(value, schema))
        faults.push_back(place + " is out of range");
    if (const Json::Array* elements = value.asArray())
        for (const Json& element : *elements)
            add(faultsOf(element, *schema.find("items"), place + "[]"));
    const Json* properties = schema.find("properties");
    if (value.asObject() == nullptr || properties == nullptr)
        return faults;
    for (const auto& [name, member] : *value.asObject()) {
        if (const Json* property = properties->find(name))
            add(faultsOf(member, *property, place + "." + name));
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
