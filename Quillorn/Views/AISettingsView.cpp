#include "Views/AISettingsView.h"

#include "Models/Settings.h"
#include "Platform/Text.h"

#include <algorithm>

namespace quillorn {

AISettingsView::AISettingsView(HttpClient& client, SettingsStore& settings)
    : m_settings(settings),
      m_service(client, settings) {}

std::string AISettingsView::text(const Setting& key) const {
    return Settings(m_settings).text(key);
}

bool AISettingsView::store(const Setting& key, const std::string& value) {
    if (text(key) == value)
        return false;
    Settings(m_settings).set(key, value);
    m_observers.tell();
    return true;
}

std::string AISettingsView::endpoint() const {
    return text(setting("aiEndpoint"));
}
void AISettingsView::setEndpoint(const std::string& endpoint) {
    if (store(setting("aiEndpoint"), endpoint))
        reloadModels();
}
std::string AISettingsView::model() const {
    return text(setting("aiModel"));
}
void AISettingsView::setModel(const std::string& model) {
    store(setting("aiModel"), model);
}
std::string AISettingsView::apiKey() const {
    return text(setting("aiApiKey"));
}
void AISettingsView::setApiKey(const std::string& key) {
    if (store(setting("aiApiKey"), key))
        reloadModels();
}
std::string AISettingsView::reasoningEffort() const {
    return text(setting("aiReasoningEffort"));
}
void AISettingsView::setReasoningEffort(const std::string& effort) {
    store(setting("aiReasoningEffort"), effort);
}

void AISettingsView::useVibeProxy() {
    store(setting("aiEndpoint"), "http://127.0.0.1:8318/v1");
    if (model().empty())
        store(setting("aiModel"), "gpt-5.4-mini");
    store(setting("aiApiKey"), "");
    reloadModels();
}

void AISettingsView::reloadModels() {
    m_loading.cancel(); // an answer that still comes would be that of another server
    m_modelLoadError.reset();
    m_isLoadingModels = !trimWhitespaceAndNewlines(endpoint()).empty();
    if (!m_isLoadingModels)
        m_availableModels.clear();
    m_observers.tell();
    if (m_isLoadingModels)
        m_loading.start(load(*this));
}

Task<> AISettingsView::load(AISettingsView& view) {
    try {
        view.m_availableModels = co_await view.m_service.fetchModels();
    } catch (const std::exception&) {
        view.m_availableModels.clear();
        view.m_modelLoadError = "Could not fetch models";
    }
    view.m_isLoadingModels = false;
    view.m_observers.tell();
}

std::vector<std::string> AISettingsView::modelRows() const {
    std::vector<std::string> rows = m_availableModels;
    const std::string chosen = model();
    if (!rows.empty() && !chosen.empty() && std::ranges::find(rows, chosen) == rows.end())
        rows.push_back(chosen);
    return rows;
}

void AISettingsView::testConnection() {
    if (m_isTesting)
        return;
    m_isTesting = true;
    m_testResult.reset();
    m_observers.tell();
    m_testing.start(test(*this));
}

Task<> AISettingsView::test(AISettingsView& view) {
    try {
        view.m_testResult = co_await view.m_service.testConnection();
    } catch (const std::exception& error) {
        view.m_testResult = error.what();
    }
    view.m_isTesting = false;
    view.m_observers.tell();
}

} // namespace quillorn
