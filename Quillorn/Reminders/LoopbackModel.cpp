#include "Reminders/LoopbackModel.h"

#include "AI/JsonExtraction.h"
#include "AI/JsonShapes.h"
#include "Models/Settings.h"
#include "Platform/HttpClient.h"
#include "Platform/Json.h"
#include "Platform/Text.h"
#include "Platform/URLParts.h"

#include <arpa/inet.h>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// Beyond it nobody waits for the answer any more.
constexpr std::chrono::seconds patience{5};

std::string endpointOf(SettingsStore& settings) {
    std::string endpoint(trimWhitespaceAndNewlines(Settings(settings).text(setting("voiceRoutingEndpoint"))));
    while (endpoint.ends_with('/'))
        endpoint.pop_back();
    return endpoint;
}

Json schemaOf(const OnDeviceModel::Choice& choice) {
    const Json::Array values(choice.values.begin(), choice.values.end());
    const Json value = Json::Object{
        {"type", "string"}, {"title", choice.valueName}, {"description", choice.description}, {"enum", values}};
    const Json object = Json::Object{{"type", "object"},
                                     {"properties", Json::Object{{choice.property, value}}},
                                     {"required", Json::Array{choice.property}},
                                     {"additionalProperties", false}};
    return Json::Object{{"type", "json_schema"},
                        {"json_schema", Json::Object{{"name", choice.name}, {"strict", true}, {"schema", object}}}};
}

std::optional<std::string> chosenIn(const std::string& body, const std::string& property) {
    const Json answer = Json::parse(body);
    const Json::Array* choices = objectsIn(answer, "choices");
    const Json* message = choices && !choices->empty() ? choices->front().find("message") : nullptr;
    const Json* content = message ? message->find("content") : nullptr;
    if (!content || !content->asString())
        throw std::runtime_error("Invalid response from server");
    const std::optional<Json> object = extractJsonObject(*content->asString());
    const Json* value = object ? object->find(property) : nullptr;
    return value && value->asString() ? std::optional(*value->asString()) : std::nullopt;
}

} // namespace

bool isLoopbackURL(std::string_view url) {
    const std::optional<URLParts> parts = parseURL(url);
    if (!parts || !parts->host || (parts->scheme != "http" && parts->scheme != "https"))
        return false;
    in_addr four{};
    in6_addr six{};
    if (::inet_pton(AF_INET, parts->host->c_str(), &four) == 1)
        return ntohl(four.s_addr) >> 24 == 127;
    if (::inet_pton(AF_INET6, parts->host->c_str(), &six) == 1)
        return IN6_IS_ADDR_LOOPBACK(&six) != 0;
    return *parts->host == "localhost";
}

bool LoopbackModel::isAvailable() const {
    return isLoopbackURL(endpointOf(m_settings));
}

std::optional<std::size_t> LoopbackModel::tokenCount(const std::string& text) const {
    return characterCount(text) / 4;
}

Task<std::optional<std::string>> LoopbackModel::respond(std::string prompt, Choice choice) {
    HttpCall call{.method = HttpCall::Method::post,
                  .url = endpointOf(m_settings) + "/chat/completions",
                  .headers = {{"Content-Type", "application/json"}},
                  .body = {},
                  .timeout = patience,
                  .isDirect = true};
    const Json message = Json::Object{{"role", "user"}, {"content", std::move(prompt)}};
    call.body = Json(Json::Object{{"model", Settings(m_settings).text(setting("aiModel"))},
                                  {"messages", Json::Array{message}},
                                  {"response_format", schemaOf(choice)},
                                  {"stream", false}})
                    .text();
    Completion<std::string> completion;
    auto status = std::make_shared<int>(0);
    HttpCallHandlers handlers;
    handlers.onStatus = [status](int code) { *status = code; };
    handlers.onEnd = [completion, status](const std::optional<HttpFailure>& failure, std::string body) mutable {
        if (failure)
            completion.fail(std::make_exception_ptr(*failure));
        else if (*status != 200)
            completion.fail(std::make_exception_ptr(std::runtime_error(fmt::format("HTTP error {}", *status))));
        else
            completion.succeed(std::move(body));
    };
    const HttpClient::Running running = m_client.start(std::move(call), std::move(handlers));
    const std::string body = co_await completion;
    co_return chosenIn(body, choice.property);
}

} // namespace quillorn
