#pragma once

#include "Platform/QueuedObservers.h"
#include "Platform/SettingsStore.h"

#include <atomic>
#include <mutex>
#include <stdexcept>

namespace quillorn {

/// Settings that live as long as the object.
class MemorySettings final : public SettingsStore {
  public:
    std::optional<Json> value(std::string_view key) const override {
        const auto stored = storedValue(key);
        return stored ? stored : lookUp(m_defaults, key);
    }
    std::optional<Json> storedValue(std::string_view key) const override { return lookUp(m_values, key); }
    std::string fault() const override { return {}; }
    void set(std::string_view key, Json value) override {
        (void)value.text(); // refuses what JSON can't say, as a file does
        throwIfFailing();
        const std::lock_guard lock(m_mutex);
        m_values.insert_or_assign(std::string(key), std::move(value));
        m_observers.tell();
    }
    void remove(std::string_view key) override {
        throwIfFailing();
        const std::lock_guard lock(m_mutex);
        m_values.erase(std::string(key));
        m_observers.tell();
    }
    void registerDefaults(const Json::Object& defaults) override {
        const std::lock_guard lock(m_mutex);
        for (const auto& [key, value] : defaults)
            m_defaults.insert_or_assign(key, value);
    }

    Observation observe(MainQueue& queue, std::function<void()> handler) override {
        return m_observers.add(queue, std::move(handler));
    }

    /// While it is set, changes throw as those to a full disk do.
    std::atomic<bool> failsToWrite = false;

  private:
    std::optional<Json> lookUp(const Json::Object& values, std::string_view key) const {
        const std::lock_guard lock(m_mutex);
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void throwIfFailing() const {
        if (failsToWrite)
            throw std::runtime_error("Can't write the settings file: No space left on device");
    }

    mutable std::mutex m_mutex;
    Json::Object m_values;
    Json::Object m_defaults;
    QueuedObservers m_observers;
};

} // namespace quillorn
