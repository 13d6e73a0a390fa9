#include "API/RequestHelpers.h"

#include <algorithm>
#include <charconv>

namespace quillorn {

UUID pathUUID(const HttpRequest& request, const std::string& name) {
    const auto param = request.params.find(name.starts_with(':') ? name : ":" + name);
    if (param == request.params.end())
        throw APIError::badRequest("Missing path parameter: " + name);
    const auto id = UUID::parse(param->second);
    if (!id)
        throw APIError::invalidUUID(param->second);
    return *id;
}

std::optional<std::string> queryValue(const HttpRequest& request, std::string_view name) {
    const auto found = std::find_if(request.queryParams.begin(), request.queryParams.end(),
                                    [&](const auto& param) { return param.first == name; });
    return found == request.queryParams.end() ? std::nullopt : std::optional(found->second);
}

std::optional<bool> queryBool(const HttpRequest& request, std::string_view name) {
    auto value = queryValue(request, name);
    if (!value)
        return std::nullopt;
    for (char& c : *value)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return *value == "true" || *value == "1" || *value == "yes";
}

std::optional<std::int64_t> queryInt(const HttpRequest& request, std::string_view name) {
    const auto value = queryValue(request, name);
    if (!value)
        return std::nullopt;
    std::string_view digits = *value;
    if (digits.starts_with('+') && !digits.starts_with("+-"))
        digits.remove_prefix(1);
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc{} || end != digits.data() + digits.size())
        return std::nullopt;
    return number;
}

std::optional<UUID> queryUUID(const HttpRequest& request, std::string_view name) {
    const auto value = queryValue(request, name);
    return value ? UUID::parse(*value) : std::nullopt;
}

void decodeBody(const HttpRequest& request, const RecordType& type, void* record) {
    Json body;
    try {
        body = Json::parse(request.body);
    } catch (const JsonError&) {
        throw APIError::invalidJSON();
    }
    if (!readRecord(body, type, record))
        throw APIError::invalidJSON();
}

void throwIfAny(std::vector<std::string> faults) {
    if (!faults.empty())
        throw APIError::badRequest("Validation failed", std::move(faults));
}

} // namespace quillorn
