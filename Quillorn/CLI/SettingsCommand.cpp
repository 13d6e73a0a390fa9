#include "CLI/Commands.h"
#include "CLI/Output.h"
#include "Models/Settings.h"
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

const Setting& known(const std::string& key) {
    const Setting* found = findSetting(key);
    if (found == nullptr)
        throw std::runtime_error(
            fmt::format("there is no setting \"{}\"; \"quillorn settings list --all\" shows all of them", key));
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

void printTable(const std::vector<const Setting*>& settings, const Settings& values) {
    for (const Setting* each : settings) {
        const std::string value = settingText(values.value(*each));
        fmt::print("{:<36} {:<24} {}\n", each->key, value.empty() ? "-" : shown(value),
                   values.isStored(*each) ? "" : "(default)");
        fmt::print("    {}\n", each->summary);
    }
}

void printList(const std::vector<const Setting*>& settings, const Settings& values) {
    Json::Object object;
    for (const Setting* each : settings) {
        object.emplace(each->key, Json::Object{{"value", values.value(*each)},
                                               {"isDefault", !values.isStored(*each)},
                                               {"kind", kindName(each->kind)},
                                               {"summary", each->summary}});
    }
    printJson(std::move(object));
}

} // namespace

ExitStatus listSettings(const SettingsOptions& options) {
    const UserSettings user;
    std::vector<const Setting*> chosen;
    for (const Setting& each : settingsCatalogue)
        if (options.all || each.kind == SettingKind::user)
            chosen.push_back(&each);
    if (options.json)
        printList(chosen, user.settings);
    else
        printTable(chosen, user.settings);
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
    if (!parsed)
        throw std::runtime_error(fmt::format("{} must be {}, not \"{}\"", key, describe(setting.type), value));
    user.settings.set(setting, std::move(*parsed));
    return ExitStatus::success;
}

ExitStatus resetSetting(const std::string& key) {
    UserSettings user;
    user.settings.reset(known(key));
    return ExitStatus::success;
}

} // namespace quillorn
