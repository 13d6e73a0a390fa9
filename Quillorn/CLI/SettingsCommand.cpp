#include "CLI/Commands.h"
#include "CLI/KeyInput.h"
#include "CLI/Output.h"
#include "CLI/Suggestion.h"
#include "Models/Settings.h"
#include "Platform/Crypto.h"
#include "Platform/Paths.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"

#include <cstdio>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// The settings of the user who runs the command.
struct UserSettings {
    StandardErrorLog log;
    FileSettings store{settingsFile(*systemPaths()), log};
    Settings settings{store};
};

std::string noSetting(const std::string& key) {
    const std::string nearest = suggestion(key, settingKeys());
    return fmt::format("there is no setting \"{}\"{}", key,
                       nearest.empty() ? "; \"quillorn settings list --all\" shows all of them" : nearest);
}

const Setting& known(const std::string& key) {
    const Setting* found = findSetting(key);
    if (found == nullptr)
        throw std::runtime_error(noSetting(key));
    return *found;
}

std::string_view kindName(SettingKind kind) {
    switch (kind) {
    case SettingKind::user:
        return "user";
    case SettingKind::bookkeeping:
        return "bookkeeping";
    case SettingKind::scene:
        return "scene";
    }
    return "";
}

void printTable(const std::vector<const Setting*>& settings, const Settings& values, bool showKeys) {
    for (const Setting* each : settings) {
        std::string value = settingText(values.value(*each));
        if (each->isSecret && !showKeys && !value.empty())
            value = "(hidden)";
        fmt::print("{:<36} {:<24} {}\n", each->key, value.empty() ? "-" : shown(value),
                   values.isStored(*each) ? "" : "(default)");
        fmt::print("    {}\n", each->summary);
    }
}

void printList(const std::vector<const Setting*>& settings, const Settings& values, bool showKeys) {
    Json::Object object;
    for (const Setting* each : settings) {
        const bool isHidden = each->isSecret && !showKeys;
        object.emplace(each->key, Json::Object{{"value", isHidden ? Json() : values.value(*each)},
                                               {"isHidden", isHidden},
                                               {"isDefault", !values.isStored(*each)},
                                               {"kind", kindName(each->kind)},
                                               {"summary", each->summary}});
    }
    printJson(std::move(object));
}

void printWhenItHolds(const Setting& setting) {
    if (setting.isReadAtStart)
        fmt::print("A server that runs takes up {} at its next start\n", setting.key);
}

} // namespace

ExitStatus listSettings(const SettingsOptions& options) {
    const UserSettings user;
    std::vector<const Setting*> chosen;
    for (const Setting& each : settingsCatalogue)
        if (options.all || each.kind == SettingKind::user)
            chosen.push_back(&each);
    if (options.json)
        printList(chosen, user.settings, options.showKeys);
    else
        printTable(chosen, user.settings, options.showKeys);
    return ExitStatus::success;
}

ExitStatus getSetting(const std::string& key, const SettingsOptions& options) {
    const UserSettings user;
    const Json value = user.settings.value(known(key));
    fmt::print("{}\n", shown(options.json ? value.text() : settingText(value)));
    return ExitStatus::success;
}

ExitStatus setSetting(const std::string& key, const std::string& value) {
    UserSettings user;
    const Setting& setting = known(key);
    std::optional<Json> parsed = parseSetting(value, setting.type);
    if (!parsed || !isFit(*parsed, setting))
        throw std::runtime_error(fmt::format("{} must be {}{}", key, describe(setting),
                                             setting.isSecret ? "" : fmt::format(", not \"{}\"", value)));
    user.settings.set(setting, std::move(*parsed));
    printWhenItHolds(setting);
    return ExitStatus::success;
}

ExitStatus readSetting(const std::string& key) {
    return setSetting(std::string(known(key).key), readValue("-", key));
}

ExitStatus generateSetting(const std::string& key) {
    if (key != setting("apiAuthKey").key)
        throw std::runtime_error("only apiAuthKey can be made");
    std::array<std::uint8_t, 32> bytes{};
    SystemRandom().fill(bytes);
    return setSetting(key, hexString(bytes));
}

ExitStatus resetSetting(const std::string& key) {
    UserSettings user;
    if (findSetting(key) == nullptr && user.store.storedValue(key)) {
        user.store.remove(key); // one that nobody reads
        return ExitStatus::success;
    }
    const Setting& setting = known(key);
    user.settings.reset(setting);
    printWhenItHolds(setting);
    return ExitStatus::success;
}

} // namespace quillorn
