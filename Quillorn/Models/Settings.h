#pragma once

#include "Platform/Json.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillorn {

class Paths;
class SettingsStore;

enum class SettingType { text, integer, boolean, date, data, textList };

enum class SettingKind {
    /// Chosen by the user.
    user,
    /// Written by services for themselves.
    bookkeeping,
    /// The state of a window.
    scene,
};

/// What a text has to be.
enum class SettingForm {
    any,
    /// A folder by its whole path, or empty for none.
    absoluteFolder,
    /// One that a client can send in a header: without control characters, and without blanks at its ends.
    headerText,
};

/// One key of the catalogue, declared there and nowhere else.
struct Setting {
    using Default = std::variant<std::monostate, bool, std::int64_t, std::string_view>;

    std::string_view key;
    SettingKind kind;
    SettingType type;
    /// What readers take when nothing is stored; none for the types that have no literal.
    Default defaultValue;
    /// One line for people.
    std::string_view summary;

    /// The range of a number.
    std::int64_t least = std::numeric_limits<std::int64_t>::min();
    std::int64_t most = std::numeric_limits<std::int64_t>::max();
    SettingForm form = SettingForm::any;
    /// Not shown unasked.
    bool isSecret = false;
    /// A server that runs keeps the value of its start, and a wrong one keeps it from starting.
    bool isReadAtStart = false;

    constexpr Setting within(std::int64_t lowest, std::int64_t highest) const {
        Setting changed = *this;
        changed.least = lowest;
        changed.most = highest;
        return changed;
    }
    constexpr Setting ofForm(SettingForm wanted) const {
        Setting changed = *this;
        changed.form = wanted;
        return changed;
    }
    constexpr Setting secret() const {
        Setting changed = *this;
        changed.isSecret = true;
        return changed;
    }
    constexpr Setting readAtStart() const {
        Setting changed = *this;
        changed.isReadAtStart = true;
        return changed;
    }
};

/// Every setting there is.
inline constexpr std::array settingsCatalogue = [] {
    using enum SettingKind;
    using enum SettingType;
    using enum SettingForm;
    constexpr std::monostate none{};
    constexpr auto number = [](std::int64_t value) { return Setting::Default(value); };
    return std::array{
        Setting{"settingsTab", user, text, "general", "The tab that the settings window shows"},
        Setting{"defaultPriority", user, integer, number(1), "Priority of a new task, 0 (low) to 3 (urgent)"}.within(0,
                                                                                                                     3),
        Setting{"showCompletedTasks", user, boolean, false, "Show completed tasks in lists"},
        Setting{"subtaskCompletionBehavior", user, integer, number(0),
                "On completing a parent: 0 ask, 1 complete subtasks, 2 leave them, 3 block"}
            .within(0, 3),
        Setting{"thoughtkegPushEnabled", user, boolean, false, "Send completed tasks to Thoughtkeg on this machine"},
        Setting{"thoughtkegHost", user, text, "", "Kept, and without effect: Thoughtkeg is asked on this machine"},
        Setting{"apiPort", user, integer, number(18080), "Port of the local API server"}.within(1, 65535).readAtStart(),
        Setting{"apiAutoStart", user, boolean, false, "Start the API server at launch"},
        Setting{"apiExternalAccess", user, boolean, false, "Let other machines reach the API server"}.readAtStart(),
        Setting{"apiRequireAuthLocal", user, boolean, false, "Require the API key on this machine too"}.readAtStart(),
        Setting{"apiAuthKey", user, text, "", "The API key, kept in plain text"}
            .ofForm(headerText)
            .secret()
            .readAtStart(),
        Setting{"backupEnabled", user, boolean, true, "Take hourly backups"},
        Setting{"backupFolderPath", user, text, "", "Folder of the backups; empty for the one beside the store"}.ofForm(
            absoluteFolder),
        Setting{"notificationsEnabled", user, boolean, true, "Remind of due tasks"},
        Setting{"notificationHour", user, integer, number(8), "Hour of the reminder for tasks due without a time"}
            .within(0, 23),
        Setting{"notificationMinute", user, integer, number(0), "Minute of that reminder"}.within(0, 59),
        Setting{"aiEndpoint", user, text, "", "Base address of the AI service"},
        Setting{"aiModel", user, text, "", "Model to ask for"},
        Setting{"aiApiKey", user, text, "", "Key of the AI service, kept in plain text"}.ofForm(headerText).secret(),
        Setting{"aiReasoningEffort", user, text, "", "Reasoning effort to ask for"},
        Setting{"reminderImportAuto", user, boolean, false, "Import reminders on a schedule"},
        Setting{"reminderImportIntervalMinutes", user, integer, number(60), "Minutes between imports"}.within(1,
                                                                                                              525'600),
        Setting{"reminderImportCompletes", user, boolean, true, "Complete reminders that were imported"},
        Setting{"reminderImportLists", user, text, "", "Reminder lists to import from, a JSON list of names"},
        Setting{"reminderFolderPath", user, text, "",
                "Folder of the reminder lists; empty for the one that programs for to-dos share"},
        Setting{"voiceRoutingEndpoint", user, text, "",
                "Server of a language model on this machine that finds the project of a reminder; empty for none"},
        Setting{"trayKeepsRunning", user, boolean, false, "Keep running in the tray when the window is closed"},
        Setting{"quickAddShortcut", user, boolean, false, "Ask the desktop for a key that opens Quick Add"},
        Setting{"collapsedGroupIDs", user, text, "", "Project groups that are collapsed, ids joined by commas"},

        Setting{"backupLastDate", bookkeeping, date, none, "When the last backup was taken"},
        Setting{"backupFolderBookmark", bookkeeping, data, none, "Permission for the backup folder"},
        Setting{"reminderImportLastRun", bookkeeping, date, none, "When reminders were last imported"},
        Setting{"reminderImportLastResult", bookkeeping, text, none, "What the last import did"},
        Setting{"reminderImportRecent", bookkeeping, textList, none, "Titles imported lately"},
        Setting{"didMigrateFromUnsandboxedLocation", bookkeeping, boolean, none, "Older data has been taken over"},
        Setting{"didMigratePrefsFromSandboxContainer", bookkeeping, boolean, none,
                "Older settings have been taken over"},

        Setting{"sidebarSelectionKey", scene, text, "today", "Selected row of the sidebar"},
        Setting{"selectedTaskID", scene, text, "", "Selected task"},
        Setting{"selectedNoteID", scene, text, "", "Selected note"},
        Setting{"selectedTimeEntryID", scene, text, "", "Selected time entry"},
        Setting{"expandedClientIDs", scene, data, none, "Clients that are expanded"},
        Setting{"sidebarTagsExpanded", scene, boolean, false, "Section of the tags is open"},
        Setting{"sidebarSmartListsExpanded", scene, boolean, true, "Section of the smart lists is open"},
        Setting{"sidebarClientsExpanded", scene, boolean, true, "Section of the clients is open"},
        Setting{"sidebarUnassignedExpanded", scene, boolean, true, "Section of unassigned projects is open"},
        Setting{"sidebarArchivedExpanded", scene, boolean, false, "Section of the archive is open"},
        Setting{"taskListSortOrder", scene, text, "Due Date", "Order of a task list"},
        Setting{"taskGroupBy", scene, text, none, "Grouping of a task list"},
        Setting{"doneSectionExpanded", scene, boolean, false, "Section of done tasks is open"},
        Setting{"expandedTaskIDs", scene, data, none, "Tasks that are expanded"},
        Setting{"clientDetailTabs", scene, text, none, "Tab of a client"},
        Setting{"projectDetailTabs", scene, text, none, "Tab of a project"},
        Setting{"activityClientFilter", scene, text, "", "Client that the activity log shows"},
        Setting{"notePreviewMode", scene, boolean, false, "Notes show as formatted text"},
    };
}();

/// The setting of that key; a null pointer when the catalogue has none.
constexpr const Setting* findSetting(std::string_view key) {
    for (const Setting& setting : settingsCatalogue)
        if (setting.key == key)
            return &setting;
    return nullptr;
}

/// Of what users choose, in the order of the catalogue.
std::vector<std::string> settingKeys();

/// For keys that stand in the code: one that is not in the catalogue does not compile.
consteval const Setting& setting(std::string_view key) {
    // Not by findSetting: testing its result for null is no constant expression under UndefinedBehaviorSanitizer.
    for (const Setting& each : settingsCatalogue)
        if (each.key == key)
            return each;
    throw "no such setting";
}

/// Typed reading and writing of settings. A stored value of another type, and a number out of range, counts as none.
class Settings {
  public:
    explicit Settings(SettingsStore& store) : m_store(store) {}

    bool boolean(const Setting& setting) const;
    std::int64_t integer(const Setting& setting) const;
    std::string text(const Setting& setting) const;

    /// The value in force; null when there is neither a stored one nor a default.
    Json value(const Setting& setting) const;
    bool isStored(const Setting& setting) const;
    /// Throws std::runtime_error when it can't be kept.
    void set(const Setting& setting, Json value);
    void reset(const Setting& setting);

  private:
    SettingsStore& m_store;
};

/// Whether `value` is one that a setting of that type can hold.
bool isOfType(const Json& value, SettingType type);
/// Whether the setting can hold `value`: one of its type, within its range, of its form.
bool isFit(const Json& value, const Setting& setting);
/// Reads a value as people write it ("true", "18080", plain text); absent when it is none of that type.
std::optional<Json> parseSetting(std::string_view text, SettingType type);
/// The same way round: texts as they are, all else as JSON; empty for null.
std::string settingText(const Json& value);
/// What a value has to be, for messages: "a whole number from 0 to 23", "true or false" and so on.
std::string describe(const Setting& setting);

/// The file in which the user's settings stand.
std::filesystem::path settingsFile(const Paths& paths);

/// Makes the defaults of reminders known to every reader of the store, also before anybody has opened the settings.
void registerNotificationDefaults(SettingsStore& store);

} // namespace quillorn
