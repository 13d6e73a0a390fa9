#include "Desktop/AISettingsScreen.h"

#include <algorithm>

namespace quillorn {

AISettingsScreen::AISettingsScreen(HttpClient& client, SettingsStore& settings)
    : m_view(client, settings),
      m_changes(m_view.observe(telling())) {}

int AISettingsScreen::reasoning() const {
    const auto& levels = AISettingsView::reasoningLevels;
    const auto found = std::ranges::find(levels, m_view.reasoningEffort(), &AISettingsView::ReasoningLevel::value);
    return found == levels.end() ? -1 : static_cast<int>(found - levels.begin());
}

void AISettingsScreen::setReasoning(int level) {
    const auto& levels = AISettingsView::reasoningLevels;
    if (level >= 0 && level < static_cast<int>(levels.size()))
        attempt([&] { m_view.setReasoningEffort(std::string(levels[static_cast<std::size_t>(level)].value)); });
}

QStringList AISettingsScreen::reasoningLabels() {
    QStringList labels;
    for (const AISettingsView::ReasoningLevel& level : AISettingsView::reasoningLevels)
        labels.append(toQString(level.label));
    return labels;
}

QStringList AISettingsScreen::modelRows() const {
    QStringList rows;
    for (const std::string& row : m_view.modelRows())
        rows.append(toQString(row));
    return rows;
}

QVariantMap AISettingsScreen::words() {
    return {{"endpointPrompt", toVariant(AISettingsView::endpointPrompt)},
            {"vibeProxyHelp", toVariant(AISettingsView::vibeProxyHelp)},
            {"modelPrompt", toVariant(AISettingsView::modelPrompt)},
            {"refreshHelp", toVariant(AISettingsView::refreshHelp)},
            {"reasoningHelp", toVariant(AISettingsView::reasoningHelp)},
            {"apiKeyPrompt", toVariant(AISettingsView::apiKeyPrompt)},
            {"apiKeyHelp", toVariant(AISettingsView::apiKeyHelp)}};
}

} // namespace quillorn
