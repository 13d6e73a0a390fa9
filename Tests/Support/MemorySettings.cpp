#include "Support/MemorySettings.h"

#include <stdexcept>

namespace quillorn {

namespace {

std::optional<Json> lookUp(const Json::Object& values, std::string_view key) {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

} // namespace

std::optional<Json> MemorySettings::value(std::string_view key) const {
    const std::lock_guard lock(m_mutex);
    return lookUp(m_values.contains(key) ? m_values : m_defaults, key);
}

std::optional<Json> MemorySettings::storedValue(std::string_view key) const {
    const std::lock_guard lock(m_mutex);
    return lookUp(m_values, key);
}

void MemorySettings::set(std::string_view key, Json value) {
    (void)value.text(); // refuses what JSON can't say, as a file does
    throwIfFailing();
    const std::lock_guard lock(m_mutex);
    m_values.insert_or_assign(std::string(key), std::move(value));
}

void MemorySettings::remove(std::string_view key) {
    throwIfFailing();
    const std::lock_guard lock(m_mutex);
    m_values.erase(std::string(key));
}

void MemorySettings::registerDefaults(const Json::Object& defaults) {
    const std::lock_guard lock(m_mutex);
    for (const auto& [key, value] : defaults)
        m_defaults.insert_or_assign(key, value);
}

void MemorySettings::throwIfFailing() const {
    if (failsToWrite)
        throw std::runtime_error("Can't write the settings file: No space left on device");
}

} // namespace quillorn
