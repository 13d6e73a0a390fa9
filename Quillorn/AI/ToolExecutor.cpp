#include "AI/ToolExecutor.h"

#include "AI/ChatTool.h"
#include "Platform/Clock.h"
#include "Store/StoreError.h"

#include <algorithm>

namespace quillorn {

namespace {

Json definitionOf(const ChatToolParameter& parameter) {
    Json::Object definition{{"type", parameter.type}};
    if (!parameter.description.empty())
        definition["description"] = parameter.description;
    if (!parameter.words.empty())
        definition["enum"] = Json::Array(parameter.words.begin(), parameter.words.end());
    return definition;
}

Json definitionOf(const ChatTool& tool) {
    Json::Object properties;
    Json::Array required;
    for (const ChatToolParameter& parameter : tool.parameters) {
        properties[std::string(parameter.name)] = definitionOf(parameter);
        if (parameter.isRequired)
            required.emplace_back(parameter.name);
    }
    Json parameters =
        Json::Object{{"type", "object"}, {"properties", std::move(properties)}, {"required", std::move(required)}};
    Json function =
        Json::Object{{"name", tool.name}, {"description", tool.description}, {"parameters", std::move(parameters)}};
    return Json::Object{{"type", "function"}, {"function", std::move(function)}};
}

} // namespace

Json::Array ToolExecutor::definitions() {
    Json::Array definitions;
    for (const ChatTool& tool : chatTools())
        definitions.push_back(definitionOf(tool));
    return definitions;
}

std::string ToolExecutor::execute(std::string_view name, std::string_view argumentsText) const {
    try {
        const auto& tools = chatTools();
        const auto tool = std::ranges::find(tools, name, &ChatTool::name);
        if (tool == tools.end())
            return toolError("Unknown tool: " + std::string(name)).text();
        const ToolArguments arguments = ToolArguments::parse(argumentsText);
        ModelContext context(m_environment.container);
        const ChatSubject subject = ChatSubject::find(context, m_chat);
        return tool
            ->run({context, subject, m_environment.clock.now(), m_environment.calendar, m_environment.text, arguments})
            .text();
    } catch (const StoreError& error) {
        return toolError(error.what()).text();
    } catch (const JsonError&) {
        return "[]"; // a text in the store that JSON can't say
    }
}

} // namespace quillorn
