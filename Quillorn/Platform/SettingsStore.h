#pragma once

#include "Platform/Json.h"
#include "Platform/Observers.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class MainQueue;
class SystemLog;

/// Persisted values by key. Safe to share between threads.
class SettingsStore {
  public:
    virtual ~SettingsStore() = default;
    /// The stored value, else the one registered as default, else absent.
    virtual std::optional<Json> value(std::string_view key) const = 0;
    /// The stored value alone.
    virtual std::optional<Json> storedValue(std::string_view key) const = 0;
    /// Why the stored values can't be read, in words for the user; empty where they can. Until they can, those that
    /// were read last stay in force.
    virtual std::string fault() const = 0;
    /// Throws std::runtime_error with words for the user when the value can't be kept.
    virtual void set(std::string_view key, Json value) = 0;
    virtual void remove(std::string_view key) = 0;
    /// Values to read where none is stored; they live as long as the process and are never written.
    virtual void registerDefaults(const Json::Object& defaults) = 0;
    /// Tells, on the queue, that stored values may have changed, by this process or another.
    [[nodiscard]] virtual Observation observe(MainQueue& queue, std::function<void()> handler) = 0;
};

/// Settings in one JSON file, replaced as a whole at each change (written beside it, fsync, rename), under an
/// advisory lock, so that several processes can change different keys. Changes by others are seen at the next read.
/// A file that can't be read or is no JSON object is left as it is, with a line in the log: it can ask for a key.
class FileSettings final : public SettingsStore {
  public:
    FileSettings(std::filesystem::path file, SystemLog& log);
    ~FileSettings() override;

    std::optional<Json> value(std::string_view key) const override;
    std::optional<Json> storedValue(std::string_view key) const override;
    std::string fault() const override;
    void set(std::string_view key, Json value) override;
    void remove(std::string_view key) override;
    void registerDefaults(const Json::Object& defaults) override;
    /// By the system's word on the file; where the system can't watch, nothing is told.
    [[nodiscard]] Observation observe(MainQueue& queue, std::function<void()> handler) override;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace quillorn
