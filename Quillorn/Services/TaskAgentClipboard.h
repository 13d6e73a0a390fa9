#pragma once

#include "Platform/Date.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class Calendar;
class ProjectTask;
class SettingsStore;

/// How a coding agent reaches the local server, by the settings.
struct APIConfig {
    std::int64_t port = 18080;
    /// Whether a server answers there.
    bool isRunning = false;
    bool isExternal = false;
    bool requiresAuthLocal = false;
    std::string key{};
    /// By which other machines know this one.
    std::string machineName = "localhost";

    static APIConfig fromSettings(SettingsStore& store, std::string machineName, bool isRunning);

    std::string host() const { return isExternal ? machineName : "localhost"; }
    std::string baseURL() const;
    bool authRequired() const { return (isExternal || requiresAuthLocal) && !key.empty(); }
};

/// The clients whose configuration is known; "generic" is what most of the others take.
inline constexpr std::array<std::string_view, 6> agentClients{"generic", "claude-code", "vscode",
                                                              "cursor",  "gemini-cli",  "codex"};

/// Texts for coding agents.
struct TaskAgentClipboard {
    TaskAgentClipboard() = delete;

    /// All about one task, and how to work on it through REST and MCP, as Markdown. It shows the key where the server
    /// asks for it.
    static std::string brief(const ProjectTask& task, const APIConfig& config, Date now, const Calendar& calendar);

    /// The entry for a client's list of MCP servers, as JSON; with the key where the server asks for it.
    static std::string briefSnippet(const APIConfig& config);
    /// The same with the key wherever there is one.
    static std::string settingsSnippet(const APIConfig& config);

    /// The server as one of agentClients wants it in its file, with the key where the server asks for it.
    static std::string clientConfig(std::string_view client, const APIConfig& config);

    /// What a project's notes for an agent say of Quillorn, with the two names left to fill in.
    static std::string_view directive();
};

} // namespace quillorn
