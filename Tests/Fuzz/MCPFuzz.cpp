#include "Fuzz/ApiCaller.h"
#include "Fuzz/Harness.h"
#include "Fuzz/Lines.h"
#include "Fuzz/Values.h"
#include "MCP/MCPServer.h"
#include "Platform/Calendar.h"
#include "Support/Answers.h"

#include <fmt/format.h>

using namespace quillorn;

namespace {

std::optional<Json> parsed(std::string_view text) {
    try {
        return Json::parse(text);
    } catch (const JsonError&) {
        return std::nullopt;
    }
}

/// A server as a client meets it.
struct Peer {
    FuzzStore store;
    FakeClock clock;
    Text text{"en_US"};
    Calendar calendar{"Europe/Berlin", "en_US"};
    MCPServer server{{store.container(), clock, text, calendar, store.random}};
    /// The tools themselves, for what the server makes a result of.
    MCPToolRegistry registry{{store.container(), clock, text}};

    /// The one for all inputs: it takes longer to make than to use.
    static Peer& shared() {
        static Peer peer;
        return peer;
    }
};

/// What a client is told of the server, and some records of it.
struct Catalogue {
    Json::Array tools;
    std::vector<std::string> resources;
    StoreIds ids;

    static const Catalogue& shared() {
        static const Catalogue catalogue;
        return catalogue;
    }
    const Json* schemaOf(const Json& tool) const {
        for (const Json& each : tools)
            if (member(each, "name") == tool)
                return each.find("inputSchema");
        return nullptr;
    }

  private:
    Catalogue() {
        Peer& peer = Peer::shared();
        ids = peer.store.ids();
        const auto list = [&](const char* method, const char* key) {
            const HttpResponse response =
                peer.server.handle(fmt::format(R"({{"jsonrpc": "2.0", "id": 1, "method": "{}"}})", method));
            return *member(member(Json::parse(bodyOf(response)), "result"), key).asArray();
        };
        tools = list("tools/list", "tools");
        for (const Json& resource : list("resources/list", "resources"))
            resources.push_back(*member(resource, "uri").asString());
        for (const Json& form : list("resources/templates/list", "resourceTemplates")) {
            const std::string uri = *member(form, "uriTemplate").asString();
            for (const auto& [kind, id] : ids)
                resources.push_back(uri.substr(0, uri.find('{')) + id);
        }
    }
};

std::string message(const char* method, Json::Object params) {
    return Json(Json::Object{{"jsonrpc", "2.0"}, {"id", 1}, {"method", method}, {"params", std::move(params)}}).text();
}

Values values(Dice& dice) {
    return {dice, Catalogue::shared().ids, [](const Json& schema) -> const Json& { return schema; }};
}

/// A call of that tool; JSON has no words for some texts, and then it is one without arguments.
std::string callOf(const Json& tool, Dice& dice) {
    try {
        return message("tools/call",
                       {{"name", member(tool, "name")}, {"arguments", values(dice).object(*tool.find("inputSchema"))}});
    } catch (const JsonError&) {
        return message("tools/call", {{"name", member(tool, "name")}});
    }
}

std::string makeMessage(Dice& dice) {
    const Catalogue& catalogue = Catalogue::shared();
    if (dice.chance(85))
        return callOf(catalogue.tools[dice.below(catalogue.tools.size())], dice);
    if (dice.chance(70))
        return message("resources/read", {{"uri", catalogue.resources[dice.below(catalogue.resources.size())]}});
    constexpr const char* methods[] = {"initialize", "initialized",    "ping",
                                       "tools/list", "resources/list", "resources/templates/list"};
    return message(methods[dice.below(std::size(methods))], {});
}

/// Another value for an argument or for a member of the message.
std::string changeMessage(const std::string& line, Dice& dice) {
    const auto json = parsed(line);
    const Json params = json ? member(*json, "params") : Json();
    const Json arguments = member(params, "arguments");
    const Json* schema = Catalogue::shared().schemaOf(member(params, "name"));
    if (schema == nullptr || arguments.asObject() == nullptr)
        return json && dice.chance(50) ? mutated(line, line.size() + 32) : makeMessage(dice);
    Json::Object changed = *arguments.asObject();
    values(dice).change(changed, *schema);
    Json::Object changedParams = *params.asObject();
    changedParams["arguments"] = std::move(changed);
    Json::Object whole = *json->asObject();
    whole["params"] = std::move(changedParams);
    try {
        return Json(whole).text();
    } catch (const JsonError&) {
        return line;
    }
}

/// The result of a tool: its text, and whether it tells of a fault of the client's.
void checkToolResult(const Json& result, const std::string& line) {
    const Json content = member(result, "content");
    const Json isError = member(result, "isError");
    require(content.asArray() != nullptr && content.asArray()->size() == 1 && isError.asBool() != nullptr,
            "a tool's result of another shape: " + line);
    const Json text = member(content.asArray()->front(), "text");
    require(text.asString() != nullptr && !text.asString()->empty(), "a tool's result without a text: " + line);
    require(*isError.asBool() || parsed(*text.asString()), "a tool's result is no JSON: " + line);
}

/// What a tool refuses must be of the client's making: the registry throws what is not.
void checkRefusal(const Peer& peer, const std::string& line) {
    const Json params = member(Json::parse(line), "params");
    const Json arguments = member(params, "arguments");
    try {
        (void)peer.registry.call(*member(params, "name").asString(),
                                 arguments.asObject() != nullptr ? *arguments.asObject() : Json::Object{});
    } catch (const std::exception& error) {
        require(false, fmt::format("{}: {}", error.what(), line));
    }
}

void checkAnswer(const Json& answer, const std::string& line) {
    require(member(answer, "jsonrpc") == Json("2.0"), "no JSON-RPC: " + line);
    const Json* error = answer.find("error");
    require((error == nullptr) != (answer.find("result") == nullptr), "neither or both of result and error: " + line);
    if (error != nullptr) {
        const Json code = member(*error, "code");
        require(code.asInteger() != nullptr && member(*error, "message").asString() != nullptr, "error: " + line);
        require(*code.asInteger() != -32603, "a fault of the server's: " + answer.text());
    }
    const auto request = parsed(line);
    if (!request || (error != nullptr && member(*error, "code") == Json(-32700)))
        return;
    require(member(answer, "id") == member(*request, "id"), "the answer is for another request: " + line);
    const Json method = member(*request, "method");
    const Json result = member(answer, "result");
    if (method == Json("tools/call") && error == nullptr)
        checkToolResult(result, line);
    if (method == Json("resources/read") && error == nullptr)
        require(parsed(*member(member(result, "contents").asArray()->front(), "text").asString()).has_value(),
                "a document is no JSON: " + line);
}

} // namespace

std::vector<std::string> quillorn::seeds() {
    const Catalogue& catalogue = Catalogue::shared();
    std::vector<std::string> seeds;
    Dice dice(1);
    for (const Json& tool : catalogue.tools)
        seeds.push_back(callOf(tool, dice) + "\n" + makeMessage(dice) + "\n");
    for (const std::string& uri : catalogue.resources)
        seeds.push_back(message("resources/read", {{"uri", uri}}));
    for (const char* method : {"initialize", "initialized", "ping", "tools/list", "resources/list"})
        seeds.push_back(message(method, {}));
    return seeds;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t limit, unsigned seed) {
    return mutateLines(data, size, limit, seed, {makeMessage, changeMessage});
}

/// Each line is a message. Every one gets an answer of the protocol, none meets a fault of the server's, and what is
/// refused changes nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Peer& peer = Peer::shared();
    peer.store.feed(linesOf(bytesOf(data, size)), [&](const std::string& line) {
        const HttpResponse response = peer.server.handle(line);
        const std::string body = bodyOf(response);
        if (response.statusCode() == 202) {
            require(body.empty(), "a notification is answered: " + line);
            return false;
        }
        const auto answer = parsed(body);
        require(response.statusCode() == 200 && answer, "no JSON: " + line);
        checkAnswer(*answer, line);
        const bool isRefusal = member(member(*answer, "result"), "isError") == Json(true);
        if (isRefusal)
            checkRefusal(peer, line);
        return !isRefusal && answer->find("error") == nullptr;
    });
    return 0;
}
