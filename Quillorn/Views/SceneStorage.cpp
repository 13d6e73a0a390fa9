#include "Views/SceneStorage.h"

#include "Platform/SettingsStore.h"

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace quillorn {

namespace {

/// The digits of an id without the strokes.
constexpr std::size_t digitCount = 32;

std::string digitsOf(const UUID& id) {
    std::string digits = id.string();
    std::erase(digits, '-');
    return digits;
}

std::optional<UUID> idOf(std::string_view digits) {
    std::string text(digits);
    for (const std::size_t stroke : {8, 13, 18, 23})
        text.insert(stroke, "-");
    return UUID::parse(text);
}

} // namespace

Json SceneStorage::value(const Setting& setting) const {
    auto found = stored(setting.key);
    if (found && isOfType(*found, setting.type))
        return std::move(*found);
    if (const auto* flag = std::get_if<bool>(&setting.defaultValue))
        return *flag;
    const auto* text = std::get_if<std::string_view>(&setting.defaultValue);
    return text != nullptr ? Json(*text) : Json();
}

std::string SceneStorage::text(const Setting& setting) const {
    const Json found = value(setting);
    return found.asString() != nullptr ? *found.asString() : std::string();
}

bool SceneStorage::boolean(const Setting& setting) const {
    const Json found = value(setting);
    return found.asBool() != nullptr && *found.asBool();
}

/// Data is the digits of the ids, one after the other.
IdSet SceneStorage::ids(const Setting& setting) const {
    const std::string digits = text(setting);
    IdSet ids;
    for (std::size_t at = 0; at + digitCount <= digits.size(); at += digitCount)
        if (const auto id = idOf(std::string_view(digits).substr(at, digitCount)))
            ids.insert(*id);
    return ids;
}

void SceneStorage::set(const Setting& setting, const Json& value) {
    if (stored(setting.key) != value)
        store(setting.key, value);
}

void SceneStorage::set(const Setting& setting, const IdSet& ids) {
    std::vector<UUID> sorted(ids.begin(), ids.end());
    std::ranges::sort(sorted);
    std::string digits;
    for (const UUID& id : sorted)
        digits += digitsOf(id);
    set(setting, Json(std::move(digits)));
}

std::optional<Json> MemorySceneStorage::stored(std::string_view key) const {
    const auto found = m_values.find(key);
    return found != m_values.end() ? std::optional(found->second) : std::nullopt;
}

void MemorySceneStorage::store(std::string_view key, Json value) {
    m_values.insert_or_assign(std::string(key), std::move(value));
}

std::optional<Json> GlobalSceneStorage::stored(std::string_view key) const {
    return m_settings.storedValue(key);
}

void GlobalSceneStorage::store(std::string_view key, Json value) {
    try {
        m_settings.set(key, std::move(value));
    } catch (const std::runtime_error&) {
        return;
    }
}

} // namespace quillorn
