#pragma once

#include "AI/AIService.h"
#include "Platform/Observers.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

struct Setting;

/// Where the user chooses the model: which server, which model, with which key. Belongs to the main thread.
class AISettingsView {
  public:
    struct ReasoningLevel {
        std::string_view value, label;
    };
    static constexpr std::array<ReasoningLevel, 5> reasoningLevels = {
        {{"", "Default"}, {"low", "Low"}, {"medium", "Medium"}, {"high", "High"}, {"xhigh", "Extra High"}}};

    static constexpr std::string_view endpointPrompt = "http://localhost:1234/v1";
    static constexpr std::string_view vibeProxyHelp =
        "Prefill the local VibeProxy endpoint (127.0.0.1:8318) and a default model";
    static constexpr std::string_view modelPrompt = "qwen3-coder-next";
    static constexpr std::string_view refreshHelp = "Refresh available models";
    static constexpr std::string_view reasoningHelp =
        "Reasoning effort for models that support it (e.g. GPT via VibeProxy). Default lets the provider decide.";
    static constexpr std::string_view apiKeyPrompt = "Optional";
    static constexpr std::string_view apiKeyHelp =
        "API key is only needed for authenticated endpoints (e.g. OpenAI, OpenRouter)";

    AISettingsView(HttpClient& client, SettingsStore& settings);

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// The screen comes up.
    void appear() { reloadModels(); }

    // Setters keep the value at once; they throw std::runtime_error where it can't be kept.
    std::string endpoint() const;
    void setEndpoint(const std::string& endpoint);
    std::string model() const;
    void setModel(const std::string& model);
    std::string apiKey() const;
    void setApiKey(const std::string& key);
    std::string reasoningEffort() const;
    void setReasoningEffort(const std::string& effort);
    void useVibeProxy();

    void reloadModels();
    bool isLoadingModels() const { return m_isLoadingModels; }
    const std::optional<std::string>& modelLoadError() const { return m_modelLoadError; }
    const std::vector<std::string>& availableModels() const { return m_availableModels; }
    /// The rows to pick a model from, the stored one among them in any case; none where it has to be typed.
    std::vector<std::string> modelRows() const;

    void testConnection();
    bool isTesting() const { return m_isTesting; }
    std::string_view testButton() const { return m_isTesting ? "Testing..." : "Test Connection"; }
    const std::optional<std::string>& testResult() const { return m_testResult; }
    /// Whether the result is shown in green, else in red.
    bool isGoodResult() const { return m_testResult && m_testResult->starts_with("Connected"); }

  private:
    std::string text(const Setting& key) const;
    /// Whether that was a change.
    bool store(const Setting& key, const std::string& value);
    static Task<> load(AISettingsView& view);
    static Task<> test(AISettingsView& view);

    SettingsStore& m_settings;
    AIService m_service;
    std::optional<std::string> m_testResult;
    bool m_isTesting = false;
    std::vector<std::string> m_availableModels;
    bool m_isLoadingModels = false;
    std::optional<std::string> m_modelLoadError;
    Observers<> m_observers;
    TaskScope m_loading;
    TaskScope m_testing;
};

} // namespace quillorn
