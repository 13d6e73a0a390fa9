#pragma once

#include "Models/Settings.h"
#include "Platform/UUID.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace quillorn {

using IdSet = std::unordered_set<UUID>;

/// The values of one window, those of kind `scene` in the catalogue of settings. A value of another type counts as
/// none. Belongs to the main thread.
class SceneStorage {
  public:
    virtual ~SceneStorage() = default;

    std::string text(const Setting& setting) const;
    bool boolean(const Setting& setting) const;
    IdSet ids(const Setting& setting) const;
    /// Does nothing when the value is stored already.
    void set(const Setting& setting, const Json& value);
    void set(const Setting& setting, const IdSet& ids);

  protected:
    virtual std::optional<Json> stored(std::string_view key) const = 0;
    virtual void store(std::string_view key, Json value) = 0;

  private:
    Json value(const Setting& setting) const;
};

/// Values that go with the window.
class MemorySceneStorage final : public SceneStorage {
  protected:
    std::optional<Json> stored(std::string_view key) const override;
    void store(std::string_view key, Json value) override;

  private:
    Json::Object m_values;
};

/// One value of each key for the whole program, where only one window needs them. What can't be written is dropped:
/// it is no more than how a window looked.
class GlobalSceneStorage final : public SceneStorage {
  public:
    explicit GlobalSceneStorage(SettingsStore& settings) : m_settings(settings) {}

  protected:
    std::optional<Json> stored(std::string_view key) const override;
    void store(std::string_view key, Json value) override;

  private:
    SettingsStore& m_settings;
};

} // namespace quillorn
