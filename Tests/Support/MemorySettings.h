#pragma once

#include "Platform/SettingsStore.h"

#include <atomic>
#include <mutex>

namespace quillorn {

/// Settings that live as long as the object.
class MemorySettings final : public SettingsStore {
  public:
    MemorySettings() = default;
    explicit MemorySettings(Json::Object stored) : m_values(std::move(stored)) {}

    std::optional<Json> value(std::string_view key) const override;
    std::optional<Json> storedValue(std::string_view key) const override;
    void set(std::string_view key, Json value) override;
    void remove(std::string_view key) override;
    void registerDefaults(const Json::Object& defaults) override;

    /// While it is set, changes throw as those to a full disk do.
    std::atomic<bool> failsToWrite = false;

  private:
    void throwIfFailing() const;

    mutable std::mutex m_mutex;
    Json::Object m_values;
    Json::Object m_defaults;
};

} // namespace quillorn
