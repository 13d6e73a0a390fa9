#include "Views/SettingsPane.h"

#include "Models/Settings.h"
#include "Platform/SettingsStore.h"

#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

SettingsPane::SettingsPane(SettingsStore& settings, MainQueue& queue)
    : m_settings(settings),
      m_changes(settings.observe(queue, [this] { tell(); })) {}

void SettingsPane::keep(const Setting& key, Json value) {
    if (!isFit(value, key))
        throw std::runtime_error(fmt::format("{} must be {}", key.summary, describe(key)));
    Settings values(m_settings);
    if (values.value(key) == value)
        return;
    values.set(key, std::move(value));
    tell();
}

} // namespace quillorn
