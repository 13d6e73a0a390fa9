#include "MCP/MCPToolRegistry.h"

#include "MCP/ToolLists.h"
#include "Records/Lookup.h"

#include <utility>

namespace quillorn {

namespace {

std::string wordsOf(const RecordNotFound& error) {
    const bool isTimeEntry = error.resource() == resourceWord<TimeEntry>;
    return (isTimeEntry ? "Time entry" : error.resource()) + " not found: " + error.id().string();
}

} // namespace

MCPToolRegistry::MCPToolRegistry(ToolEnvironment environment) : m_environment(environment) {
    for (const auto list : {clientTools, projectTools, taskTools, timeEntryTools, noteTools, tagTools})
        for (Tool& tool : list()) {
            m_tools.emplace(tool.name, std::move(tool.run));
            m_definitions.tools.push_back(
                {std::move(tool.name), std::move(tool.description), std::move(tool.parameters)});
        }
}

MCPToolResult MCPToolRegistry::call(const std::string& name, const Json::Object& arguments) const {
    const auto tool = m_tools.find(name);
    if (tool == m_tools.end())
        return MCPToolResult::text("Unknown tool: " + name, true);
    try {
        return MCPToolResult::text(tool->second(m_environment, arguments));
    } catch (const ToolError& error) {
        return MCPToolResult::text(error.what(), true);
    } catch (const RecordNotFound& error) {
        return MCPToolResult::text(wordsOf(error), true);
    }
}

} // namespace quillorn
