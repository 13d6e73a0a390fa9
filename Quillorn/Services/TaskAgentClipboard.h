#pragma once

#include "Platform/Date.h"

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

/// Texts for coding agents.
namespace TaskAgentClipboard {

/// All about one task, and how to work on it through REST and MCP, as Markdown. It shows the key where the server asks
/// for it.
std::string brief(const ProjectTask& task, const APIConfig& config, Date now, const Calendar& calendar);

/// The entry for a client's list of MCP servers, as JSON; with the key where the server asks for it.
std::string briefSnippet(const APIConfig& config);
/// The same with the key wherever there is one.
std::string settingsSnippet(const APIConfig& config);

/// What a project's notes for an agent say of Quillorn, with the two names left to fill in.
std::string_view directive();

} // namespace TaskAgentClipboard

} // namespace quillorn
