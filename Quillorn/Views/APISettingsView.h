#pragma once

#include "Platform/Task.h"
#include "Views/SettingsPane.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class APIServer;
class RandomSource;

/// Where the user starts the local server, chooses who gets in, and copies what agents need. Belongs to the main
/// thread.
class APISettingsView : public SettingsPane {
  public:
    static constexpr std::string_view httpTitle = "HTTP Server";
    static constexpr std::string_view mcpTitle = "MCP Server";
    static constexpr std::string_view statusLabel = "Status";
    static constexpr std::string_view portLabel = "Port";
    static constexpr std::string_view keyLabel = "API Key";
    static constexpr std::string_view endpointLabel = "Endpoint";
    static constexpr std::string_view autoStartLabel = "Start server automatically on launch";
    static constexpr std::string_view externalLabel = "Allow external network access";
    static constexpr std::string_view requireAuthLabel = "Require API key for local connections";
    static constexpr std::string_view generateButton = "Generate";
    static constexpr std::string_view copyDirectiveButton = "Copy CLAUDE.md Directive";
    static constexpr std::string_view httpContents = "CRUD for clients, projects, tasks, time, notes";
    static constexpr std::string_view mcpContents = "17 Tools · 5 Resources · Overview, today, overdue, timers, notes";
    static constexpr std::string_view showKeyButton = "Show";
    static constexpr std::string_view hideKeyButton = "Hide";
    static constexpr std::string_view keyIsMissing = "An API key is required when authentication is enabled";
    static constexpr std::string_view portIsWrong = "Port must be between 1 and 65535";
    /// How long a button says that it has copied.
    static constexpr std::chrono::milliseconds copiedTime{2000};

    /// Referred to, not owned.
    struct Environment {
        APIServer& server;
        SettingsStore& settings;
        RandomSource& random;
        MainQueue& mainQueue;
    };
    /// `machineName` is the one by which other machines know this one.
    APISettingsView(Environment environment, std::string machineName);

    // Setters keep the value at once; they throw std::runtime_error where it can't be kept. A server that runs takes it
    // up at its next start.
    bool startsAtLaunch() const;
    void setStartsAtLaunch(bool starts);
    bool allowsExternalAccess() const;
    void setAllowsExternalAccess(bool allows);
    bool requiresAuthLocal() const;
    void setRequiresAuthLocal(bool isRequired);
    /// As it was typed last, so that what is no port can be shown and refused.
    const std::string& port() const { return m_port; }
    /// Keeps it where it is one.
    void setPort(std::string text);
    std::string key() const;
    void setKey(const std::string& key);
    /// A new one of 256 random bits.
    void generateKey();
    /// Below the key, while it is missing and somebody would be asked for it.
    std::optional<std::string_view> keyWarning() const;

    /// "Running" or "Stopped".
    std::string_view status() const;
    bool isRunning() const;
    /// "Stop" or "Start".
    std::string_view toggleButton() const { return isRunning() ? "Stop" : "Start"; }
    /// Starts or stops the server; why it doesn't come up is told by lastError().
    void toggle();
    std::optional<std::string> lastError() const;
    std::string endpoint() const;
    std::string mcpEndpoint() const { return endpoint() + "/mcp"; }

    /// For the pasteboard; the button says for a moment that it was copied.
    std::string copyConfig();
    std::string_view copyConfigButton() const { return m_hasCopied ? "Copied!" : "Copy Config for Claude Code"; }
    static std::string_view copyDirective();

  private:
    static Task<> forgetCopied(APISettingsView& view);
    /// Of the text; absent where it is none.
    std::optional<std::uint16_t> portNumber() const;
    bool needsKey() const { return allowsExternalAccess() || requiresAuthLocal(); }

    APIServer& m_server;
    RandomSource& m_random;
    MainQueue& m_queue;
    std::string m_machineName;
    std::string m_port;
    std::string m_keptPort;
    bool m_hasCopied = false;
    Observation m_serverChanges;
    Observation m_portChanges;
    TaskScope m_copied;
};

} // namespace quillorn
