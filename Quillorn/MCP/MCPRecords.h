#pragma once

#include "Records/WireRecord.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

// What the server answers with, in the words of the protocol.

namespace quillorn {

struct MCPServerInfo {
    std::string name;
    std::string version;

    static const RecordType& recordType();
};

struct MCPToolsCapability {
    bool listChanged = false;

    static const RecordType& recordType();
};

struct MCPResourcesCapability {
    bool subscribe = false;
    bool listChanged = false;

    static const RecordType& recordType();
};

struct MCPServerCapabilities {
    std::optional<MCPToolsCapability> tools{};
    std::optional<MCPResourcesCapability> resources{};

    static const RecordType& recordType();
};

struct MCPInitializeResult {
    std::string protocolVersion;
    MCPServerInfo serverInfo;
    MCPServerCapabilities capabilities;
    std::optional<std::string> instructions{};

    static const RecordType& recordType();
};

struct MCPToolDefinition {
    std::string name;
    std::string description;
    /// A JSON Schema.
    Json::Object inputSchema;

    static const RecordType& recordType();
};

struct MCPToolsListResult {
    std::vector<MCPToolDefinition> tools;

    static const RecordType& recordType();
};

struct MCPToolContent {
    struct Text {
        std::string text;
    };
    struct Image {
        /// In base 64.
        std::string data;
        std::string mimeType;
    };
    std::variant<Text, Image> value;
};

template <>
struct WireForm<MCPToolContent> {
    static constexpr WireShape shape{.type = "object"};
    static void write(JsonWriter& writer, const MCPToolContent& content);
    static bool read(const Json&, MCPToolContent&) { return false; } // only ever written
};

struct MCPToolResult {
    std::vector<MCPToolContent> content;
    bool isError = false;

    static MCPToolResult text(std::string text, bool isError = false);

    static const RecordType& recordType();
};

struct MCPResourceDefinition {
    std::string uri;
    std::string name;
    std::optional<std::string> description{};
    std::optional<std::string> mimeType{};

    static const RecordType& recordType();
};

struct MCPResourcesListResult {
    std::vector<MCPResourceDefinition> resources;

    static const RecordType& recordType();
};

struct MCPResourceTemplate {
    std::string uriTemplate;
    std::string name;
    std::optional<std::string> description{};
    std::optional<std::string> mimeType{};

    static const RecordType& recordType();
};

struct MCPResourceTemplatesListResult {
    std::vector<MCPResourceTemplate> resourceTemplates;

    static const RecordType& recordType();
};

struct MCPResourceContent {
    std::string uri;
    std::optional<std::string> mimeType{};
    std::optional<std::string> text{};
    /// In base 64.
    std::optional<std::string> blob{};

    static const RecordType& recordType();
};

struct MCPResourceReadResult {
    std::vector<MCPResourceContent> contents;

    static const RecordType& recordType();
};

} // namespace quillorn
