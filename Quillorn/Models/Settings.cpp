#include "Models/Settings.h"

#include "Platform/Date.h"
#include "Platform/Paths.h"
#include "Platform/SettingsStore.h"
#include "Platform/Terminal.h"
#include "Platform/Text.h"

#include <algorithm>
#include <charconv>
#include <fmt/core.h>

namespace quillorn {

namespace {

Json defaultOf(const Setting& setting) {
    if (const auto* flag = std::get_if<bool>(&setting.defaultValue))
        return *flag;
    if (const auto* number = std::get_if<std::int64_t>(&setting.defaultValue))
        return *number;
    if (const auto* text = std::get_if<std::string_view>(&setting.defaultValue))
        return *text;
    return {};
}

bool isBase64(std::string_view text) {
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    const std::string_view digits = text.substr(0, text.size() - padding);
    const auto isDigit = [](char byte) {
        return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
               byte == '+' || byte == '/';
    };
    return text.size() % 4 == 0 && std::all_of(digits.begin(), digits.end(), isDigit);
}

std::optional<Json> parseBoolean(std::string_view text) {
    if (text == "true" || text == "yes" || text == "on" || text == "1")
        return Json(true);
    if (text == "false" || text == "no" || text == "off" || text == "0")
        return Json(false);
    return std::nullopt;
}

std::optional<Json> parseInteger(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return Json(number);
}

/// A text of a wrong form is read as it stands, for its reader to refuse: none at all would mean something else, such
/// as that there is no key.
bool isReadable(const Json& value, const Setting& setting) {
    const std::int64_t* number = value.asInteger();
    return isOfType(value, setting.type) &&
           (number == nullptr || (*number >= setting.least && *number <= setting.most));
}

} // namespace

std::vector<std::string> settingKeys() {
    std::vector<std::string> keys;
    for (const Setting& setting : settingsCatalogue)
        if (setting.kind == SettingKind::user)
            keys.emplace_back(setting.key);
    return keys;
}

Json Settings::value(const Setting& setting) const {
    const std::optional<Json> known = m_store.value(setting.key);
    if (known && isReadable(*known, setting))
        return *known;
    return defaultOf(setting);
}

bool Settings::boolean(const Setting& setting) const {
    const Json found = value(setting);
    return found.asBool() != nullptr && *found.asBool();
}

std::int64_t Settings::integer(const Setting& setting) const {
    const Json found = value(setting);
    return found.asInteger() != nullptr ? *found.asInteger() : 0;
}

std::string Settings::text(const Setting& setting) const {
    const Json found = value(setting);
    return found.asString() != nullptr ? *found.asString() : std::string();
}

bool Settings::isStored(const Setting& setting) const {
    const std::optional<Json> stored = m_store.storedValue(setting.key);
    return stored && isReadable(*stored, setting);
}

void Settings::set(const Setting& setting, Json value) {
    m_store.set(setting.key, std::move(value));
}

void Settings::reset(const Setting& setting) {
    m_store.remove(setting.key);
}

bool isOfType(const Json& value, SettingType type) {
    const std::string* text = value.asString();
    switch (type) {
    case SettingType::text:
        return text != nullptr;
    case SettingType::integer:
        return value.asInteger() != nullptr;
    case SettingType::boolean:
        return value.asBool() != nullptr;
    case SettingType::date:
        return text != nullptr && parseISO8601(*text).has_value();
    case SettingType::data:
        return text != nullptr && isBase64(*text);
    case SettingType::textList: {
        const Json::Array* list = value.asArray();
        const auto isText = [](const Json& item) { return item.asString() != nullptr; };
        return list != nullptr && std::all_of(list->begin(), list->end(), isText);
    }
    }
    return false;
}

bool isFit(const Json& value, const Setting& setting) {
    if (!isReadable(value, setting))
        return false;
    const std::string* text = value.asString();
    switch (setting.form) {
    case SettingForm::any:
        return true;
    case SettingForm::absoluteFolder:
        return text->empty() || std::filesystem::path(*text).is_absolute();
    case SettingForm::headerText:
        return escapeControls(*text) == *text && trimWhitespaceAndNewlines(*text) == *text;
    }
    return false;
}

std::optional<Json> parseSetting(std::string_view text, SettingType type) {
    switch (type) {
    case SettingType::boolean:
        return parseBoolean(text);
    case SettingType::integer:
        return parseInteger(text);
    case SettingType::textList:
        try {
            if (Json list = Json::parse(text); isOfType(list, type))
                return list;
        } catch (const JsonError&) {
            return std::nullopt;
        }
        return std::nullopt;
    default:
        if (Json value(text); isOfType(value, type))
            return value;
        return std::nullopt;
    }
}

std::string settingText(const Json& value) {
    if (value.isNull())
        return {};
    if (const std::string* text = value.asString())
        return *text;
    return value.text();
}

std::string describe(const Setting& setting) {
    switch (setting.type) {
    case SettingType::text:
        return setting.form == SettingForm::absoluteFolder ? "a folder by its whole path, from / on"
               : setting.form == SettingForm::headerText
                   ? "a text without control characters, and without blanks at its ends"
                   : "a text";
    case SettingType::integer:
        return setting.most == std::numeric_limits<std::int64_t>::max()
                   ? "a whole number"
                   : fmt::format("a whole number from {} to {}", setting.least, setting.most);
    case SettingType::boolean:
        return "true or false";
    case SettingType::date:
        return "a date such as 2026-01-31T09:05:00Z";
    case SettingType::data:
        return "data in base64";
    case SettingType::textList:
        return "a JSON list of texts";
    }
    return "a value";
}

std::filesystem::path settingsFile(const Paths& paths) {
    return paths.configuration() / "Quillorn" / "settings.json";
}

void registerNotificationDefaults(SettingsStore& store) {
    Json::Object defaults;
    for (const Setting* each :
         {&setting("notificationsEnabled"), &setting("notificationHour"), &setting("notificationMinute")})
        defaults.emplace(each->key, defaultOf(*each));
    store.registerDefaults(defaults);
}

} // namespace quillorn
