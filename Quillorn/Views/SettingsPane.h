#pragma once

#include "Platform/Json.h"
#include "Platform/Observers.h"

#include <functional>

namespace quillorn {

class MainQueue;
class SettingsStore;
struct Setting;

/// What the panes of the settings have in common: values are kept at once, and what others keep shows too.
class SettingsPane {
  public:
    SettingsPane(const SettingsPane&) = delete;
    SettingsPane& operator=(const SettingsPane&) = delete;

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

  protected:
    SettingsPane(SettingsStore& settings, MainQueue& queue);
    ~SettingsPane() = default;

    SettingsStore& settings() const { return m_settings; }
    /// Throws std::runtime_error, with words for the user, for a value that the setting can't hold or that can't be
    /// kept.
    void keep(const Setting& key, Json value);
    void tell() const { m_observers.tell(); }

  private:
    SettingsStore& m_settings;
    Observers<> m_observers;
    Observation m_changes;
};

} // namespace quillorn
