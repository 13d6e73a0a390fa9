#include "MCP/MCPServer.h"

#include "Platform/Crypto.h"

#include <utility>

namespace quillorn {

namespace {

constexpr const char* instructions =
    "Quillorn is a project management app for freelancers and solo professionals. It organizes work into a hierarchy: "
    "Clients → Projects → Tasks, with support for time tracking, notes, and tags. Tasks have status (todo, inProgress, "
    "review, done), priority (low, medium, high, urgent), and optional due dates. Time entries can be started/stopped "
    "as timers or logged with explicit start/end times. Notes are free-text and can be pinned for quick access. Tags "
    "are colored labels that can be assigned to tasks for cross-project categorization. Use these tools to help users "
    "manage their clients, plan projects, track tasks, log time, and take notes.";

constexpr const char* encodingFailed =
    R"({"jsonrpc":"2.0","id":null,"error":{"code":-32603,"message":"Failed to encode response"}})";

JSONRPCRequest decode(const std::string& body) {
    JSONRPCRequest request;
    try {
        if (readRecord(Json::parse(body), JSONRPCRequest::recordType(), &request))
            return request;
    } catch (const JsonError&) {
        // No JSON at all; the same to the client as JSON that is no request.
    }
    throw JSONRPCError(JSONRPCError::parseError, "Parse error");
}

HttpResponse httpResponse(const JSONRPCResponse& response, HttpResponse::Headers headers = {}) {
    try {
        std::string text = jsonText([&](JsonWriter& writer) { write(writer, response); });
        return HttpResponse::ok(HttpResponseBody::data(std::move(text), jsonType), std::move(headers));
    } catch (const JsonError&) {
        return HttpResponse::raw(500, "Internal Server Error", {{"Content-Type", jsonType}},
                                 [](HttpResponseBodyWriter& writer) { writer.write(std::string(encodingFailed)); });
    }
}

/// The text parameter of that name.
const std::string& textParam(const Json::Object& params, const std::string& name, const std::string& method) {
    const auto param = params.find(name);
    const std::string* text = param == params.end() ? nullptr : param->second.asString();
    if (text == nullptr)
        throw JSONRPCError(JSONRPCError::invalidParams, "Missing '" + name + "' in " + method + " params");
    return *text;
}

} // namespace

MCPServer::MCPServer(const MCPEnvironment& environment)
    : m_random(environment.random),
      m_tools({environment.container, environment.clock, environment.text}),
      m_resources({environment.container, environment.clock, environment.text, environment.calendar}) {}

HttpResponse MCPServer::handle(const std::string& body) {
    JSONRPCResponse response;
    try {
        const JSONRPCRequest request = decode(body);
        response.id = request.id;
        if (request.jsonrpc != "2.0")
            throw JSONRPCError(JSONRPCError::invalidRequest, "Invalid Request");
        if (request.method == "initialized" && !request.id)
            return HttpResponse::accepted();
        Reply reply = dispatch(request);
        response.result = std::move(reply.result);
        return httpResponse(response, std::move(reply.headers));
    } catch (const JSONRPCError& error) {
        response.error = error.object();
    } catch (const std::exception& error) {
        response.error = JSONRPCError(JSONRPCError::internalError, error.what()).object();
    }
    return httpResponse(response);
}

MCPServer::Reply MCPServer::dispatch(const JSONRPCRequest& request) {
    static const Json::Object none;
    const std::string& method = request.method;
    const Json::Object& params = request.params ? *request.params : none;
    if (method == "tools/call")
        return {AnyEncodable(callTool(params))};
    if (method == "resources/read")
        return {AnyEncodable(readResource(params))};
    if (method == "tools/list")
        return {AnyEncodable::reference(m_tools.allTools())};
    if (method == "resources/list")
        return {AnyEncodable::reference(m_resources.allResources())};
    if (method == "resources/templates/list")
        return {AnyEncodable::reference(m_resources.allTemplates())};
    if (method == "initialize")
        return initialize();
    if (method == "initialized" || method == "ping")
        return {AnyEncodable(Json(none))};
    throw JSONRPCError(JSONRPCError::methodNotFound, "Method not found: " + method);
}

MCPServer::Reply MCPServer::initialize() {
    const MCPInitializeResult result{
        .protocolVersion = "2025-03-26",
        .serverInfo = {.name = "Quillorn", .version = "1.0.0"},
        .capabilities = {.tools = MCPToolsCapability{}, .resources = MCPResourcesCapability{}},
        .instructions = instructions,
    };
    return {AnyEncodable(result), {{"Mcp-Session-Id", makeSession()}}};
}

std::string MCPServer::makeSession() {
    std::string session = UUID::random(m_random).string();
    const std::lock_guard lock(m_mutex);
    m_sessions.insert(session);
    return session;
}

/// Whatever goes wrong in a tool is a result for the model that called it.
MCPToolResult MCPServer::callTool(const Json::Object& params) const {
    const std::string& name = textParam(params, "name", "tools/call");
    const auto arguments = params.find("arguments");
    const Json::Object* object = arguments == params.end() ? nullptr : arguments->second.asObject();
    try {
        return m_tools.call(name, object != nullptr ? *object : Json::Object{});
    } catch (const std::exception& error) {
        return MCPToolResult::text(error.what(), true);
    }
}

MCPResourceReadResult MCPServer::readResource(const Json::Object& params) const {
    const std::string& uri = textParam(params, "uri", "resources/read");
    try {
        return {.contents = {{.uri = uri, .mimeType = jsonType, .text = m_resources.read(uri)}}};
    } catch (const MCPResourceError& error) {
        throw JSONRPCError(JSONRPCError::resourceNotFound, error.what());
    }
}

} // namespace quillorn
