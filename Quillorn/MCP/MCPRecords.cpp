#include "MCP/MCPRecords.h"

#include <utility>

namespace quillorn {

void WireForm<MCPToolContent>::write(JsonWriter& writer, const MCPToolContent& content) {
    const auto member = [&](std::string_view name, std::string_view value) {
        writer.key(name);
        writer.string(value);
    };
    writer.beginObject();
    if (const auto* image = std::get_if<MCPToolContent::Image>(&content.value)) {
        member("data", image->data);
        member("mimeType", image->mimeType);
        member("type", "image");
    } else {
        member("text", std::get<MCPToolContent::Text>(content.value).text);
        member("type", "text");
    }
    writer.endObject();
}

MCPToolResult MCPToolResult::text(std::string text, bool isError) {
    MCPToolResult result{.content = {}, .isError = isError};
    result.content.push_back({MCPToolContent::Text{std::move(text)}});
    return result;
}

const RecordType& MCPServerInfo::recordType() {
    static constexpr auto fields = wireFields<MCPServerInfo>(wireField<&MCPServerInfo::name>("name"),
                                                             wireField<&MCPServerInfo::version>("version"));
    static constexpr RecordType type{"MCPServerInfo", fields};
    return type;
}

const RecordType& MCPToolsCapability::recordType() {
    static constexpr auto fields =
        wireFields<MCPToolsCapability>(wireField<&MCPToolsCapability::listChanged>("listChanged"));
    static constexpr RecordType type{"MCPToolsCapability", fields};
    return type;
}

const RecordType& MCPResourcesCapability::recordType() {
    static constexpr auto fields =
        wireFields<MCPResourcesCapability>(wireField<&MCPResourcesCapability::subscribe>("subscribe"),
                                           wireField<&MCPResourcesCapability::listChanged>("listChanged"));
    static constexpr RecordType type{"MCPResourcesCapability", fields};
    return type;
}

const RecordType& MCPServerCapabilities::recordType() {
    static constexpr auto fields = wireFields<MCPServerCapabilities>(
        wireField<&MCPServerCapabilities::tools>("tools"), wireField<&MCPServerCapabilities::resources>("resources"));
    static constexpr RecordType type{"MCPServerCapabilities", fields};
    return type;
}

const RecordType& MCPInitializeResult::recordType() {
    static constexpr auto fields =
        wireFields<MCPInitializeResult>(wireField<&MCPInitializeResult::protocolVersion>("protocolVersion"),
                                        wireField<&MCPInitializeResult::serverInfo>("serverInfo"),
                                        wireField<&MCPInitializeResult::capabilities>("capabilities"),
                                        wireField<&MCPInitializeResult::instructions>("instructions"));
    static constexpr RecordType type{"MCPInitializeResult", fields};
    return type;
}

const RecordType& MCPToolDefinition::recordType() {
    static constexpr auto fields = wireFields<MCPToolDefinition>(
        wireField<&MCPToolDefinition::name>("name"), wireField<&MCPToolDefinition::description>("description"),
        wireField<&MCPToolDefinition::inputSchema>("inputSchema"));
    static constexpr RecordType type{"MCPToolDefinition", fields};
    return type;
}

const RecordType& MCPToolsListResult::recordType() {
    static constexpr auto fields = wireFields<MCPToolsListResult>(wireField<&MCPToolsListResult::tools>("tools"));
    static constexpr RecordType type{"MCPToolsListResult", fields};
    return type;
}

const RecordType& MCPToolResult::recordType() {
    static constexpr auto fields = wireFields<MCPToolResult>(wireField<&MCPToolResult::content>("content"),
                                                             wireField<&MCPToolResult::isError>("isError"));
    static constexpr RecordType type{"MCPToolResult", fields};
    return type;
}

const RecordType& MCPResourceDefinition::recordType() {
    static constexpr auto fields = wireFields<MCPResourceDefinition>(
        wireField<&MCPResourceDefinition::uri>("uri"), wireField<&MCPResourceDefinition::name>("name"),
        wireField<&MCPResourceDefinition::description>("description"),
        wireField<&MCPResourceDefinition::mimeType>("mimeType"));
    static constexpr RecordType type{"MCPResourceDefinition", fields};
    return type;
}

const RecordType& MCPResourcesListResult::recordType() {
    static constexpr auto fields =
        wireFields<MCPResourcesListResult>(wireField<&MCPResourcesListResult::resources>("resources"));
    static constexpr RecordType type{"MCPResourcesListResult", fields};
    return type;
}

const RecordType& MCPResourceTemplate::recordType() {
    static constexpr auto fields = wireFields<MCPResourceTemplate>(
        wireField<&MCPResourceTemplate::uriTemplate>("uriTemplate"), wireField<&MCPResourceTemplate::name>("name"),
        wireField<&MCPResourceTemplate::description>("description"),
        wireField<&MCPResourceTemplate::mimeType>("mimeType"));
    static constexpr RecordType type{"MCPResourceTemplate", fields};
    return type;
}

const RecordType& MCPResourceTemplatesListResult::recordType() {
    static constexpr auto fields = wireFields<MCPResourceTemplatesListResult>(
        wireField<&MCPResourceTemplatesListResult::resourceTemplates>("resourceTemplates"));
    static constexpr RecordType type{"MCPResourceTemplatesListResult", fields};
    return type;
}

const RecordType& MCPResourceContent::recordType() {
    static constexpr auto fields = wireFields<MCPResourceContent>(
        wireField<&MCPResourceContent::uri>("uri"), wireField<&MCPResourceContent::mimeType>("mimeType"),
        wireField<&MCPResourceContent::text>("text"), wireField<&MCPResourceContent::blob>("blob"));
    static constexpr RecordType type{"MCPResourceContent", fields};
    return type;
}

const RecordType& MCPResourceReadResult::recordType() {
    static constexpr auto fields =
        wireFields<MCPResourceReadResult>(wireField<&MCPResourceReadResult::contents>("contents"));
    static constexpr RecordType type{"MCPResourceReadResult", fields};
    return type;
}

} // namespace quillorn
