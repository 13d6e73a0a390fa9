#include "Crash/Surface.h"
#include "Integration/ServerProcess.h"
#include "Support/TestClient.h"

#include <algorithm>
#include <optional>

namespace quillorn {

namespace {

/// What is not called by its verb and its kind.
const std::map<std::string, std::string, std::less<>> otherNames{{"create_time_entry", "log_time"},
                                                                 {"stop_time_entry", "stop_timer"}};

class MCPSurface final : public Surface {
  public:
    explicit MCPSurface(std::uint16_t port) : m_port(port), m_rest(restSurface(port)) {
        const std::optional<Json> list = call("tools/list", {});
        if (!list)
            return; // the server has gone already
        for (const Json& tool : *list->find("tools")->asArray())
            m_schemas.emplace(*tool.find("name")->asString(), *tool.find("inputSchema"));
    }

    Answer send(const WriteRequest& request) override {
        std::string name = request.verb + "_" + request.kind;
        if (const auto other = otherNames.find(name); other != otherNames.end())
            name = other->second;
        const auto schema = m_schemas.find(name);
        if (schema == m_schemas.end())
            return m_rest->send(request);
        Json::Object arguments = request.fields;
        if (!request.id.empty())
            arguments[*schema->second.find("required")->asArray()->front().asString()] = request.id;
        return takes(schema->second, arguments) ? answerOf(name, std::move(arguments)) : m_rest->send(request);
    }

  private:
    static bool takes(const Json& schema, const Json::Object& arguments) {
        const Json::Object& known = *schema.find("properties")->asObject();
        const Json* required = schema.find("required");
        return std::all_of(arguments.begin(), arguments.end(),
                           [&](const auto& argument) { return known.contains(argument.first); }) &&
               (required == nullptr ||
                std::all_of(required->asArray()->begin(), required->asArray()->end(),
                            [&](const Json& needed) { return arguments.contains(*needed.asString()); }));
    }

    Answer answerOf(const std::string& name, Json::Object arguments) const {
        const auto result = call("tools/call", {{"name", name}, {"arguments", std::move(arguments)}});
        if (!result)
            return {.kind = Answer::Kind::cutOff};
        if (const Json* isError = result->find("isError"); isError == nullptr || *isError != Json(false))
            return {.kind = Answer::Kind::refused, .text = name + ": " + result->text()};
        Answer answer{.kind = Answer::Kind::acknowledged,
                      .text = *result->find("content")->asArray()->front().find("text")->asString(),
                      .isOverMCP = true};
        try {
            const Json record = Json::parse(answer.text);
            if (const Json* id = record.find("id"))
                answer.id = *id->asString();
        } catch (const JsonError&) {
            // words, where no record is left
        }
        return answer;
    }

    /// The result, or the error; absent when the answer did not arrive as a whole.
    std::optional<Json> call(const std::string& method, Json::Object parameters) const {
        const Json message =
            Json::Object{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", Json(std::move(parameters))}};
        try {
            const Json answer = Json::parse(bodyOf(answerTo(m_port, requestText("POST", "/mcp", message.text()))));
            const Json* result = answer.find("result");
            return result != nullptr ? *result : answer;
        } catch (const std::runtime_error&) {
            return std::nullopt;
        }
    }

    std::uint16_t m_port;
    std::unique_ptr<Surface> m_rest;
    std::map<std::string, Json, std::less<>> m_schemas; // of the arguments, by tool
};

} // namespace

std::unique_ptr<Surface> mcpSurface(std::uint16_t port) {
    return std::make_unique<MCPSurface>(port);
}

} // namespace quillorn
