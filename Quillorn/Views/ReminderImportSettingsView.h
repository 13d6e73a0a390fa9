#pragma once

#include "Platform/Observers.h"
#include "Platform/Task.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Clock;
class ReminderImportService;
class SettingsStore;

/// Where the user chooses what is imported, and when, and sees what came of it. Belongs to the main thread.
class ReminderImportSettingsView {
  public:
    struct Interval {
        std::int64_t minutes;
        std::string_view label;
    };
    static constexpr std::array<Interval, 5> intervals = {{{15, "Every 15 minutes"},
                                                           {30, "Every 30 minutes"},
                                                           {60, "Every hour"},
                                                           {240, "Every 4 hours"},
                                                           {1440, "Once a day"}}};

    static constexpr std::string_view listsTitle = "Lists to import from";
    static constexpr std::string_view scheduleTitle = "Schedule";
    static constexpr std::string_view activityTitle = "Activity";
    static constexpr std::string_view recentTitle = "Recently imported";
    static constexpr std::string_view noAccessSymbol = "lock.fill";
    static constexpr std::string_view noAccess =
        "Quillorn can't read Reminders. Allow it in System Settings → Privacy & Security → Reminders.";
    static constexpr std::string_view notConfigured = "Set an AI endpoint and model in the AI tab first.";
    static constexpr std::string_view automaticLabel = "Import automatically";
    static constexpr std::string_view completesLabel = "Mark imported reminders complete";
    static constexpr std::string_view runLabel = "Run Now";
    static constexpr std::string_view reviewLabel = "Review & Import…";
    static constexpr std::string_view recheckLabel = "Re-check Skipped";
    static constexpr std::string_view recheckHelp =
        "Send previously skipped reminders to the AI again on the next run (e.g. after adding a project)";

    ReminderImportSettingsView(ReminderImportService& service, SettingsStore& settings, const Clock& clock);

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// The screen comes up: asks for access, and reads the lists.
    void appear();

    /// Absent until it is known.
    std::optional<bool> hasAccess() const { return m_hasAccess; }
    struct List {
        std::string name;
        bool isChosen;

        bool operator==(const List&) const = default;
    };
    /// All lists, and those that are chosen though they are not there.
    std::vector<List> lists() const;
    // Setters throw std::runtime_error where a choice can't be kept.
    void setChosen(const std::string& list, bool isChosen);

    bool isAutomatic() const;
    void setAutomatic(bool isAutomatic);
    std::int64_t intervalMinutes() const;
    void setIntervalMinutes(std::int64_t minutes);
    bool completesReminders() const;
    void setCompletesReminders(bool completes);
    static std::string explanation();
    bool isConfigured() const;

    bool isRunning() const;
    /// "5 minutes ago", "Never", or what is going on.
    std::string lastRun() const;
    const std::optional<std::string>& lastResult() const;
    /// Absent while nothing is scheduled.
    std::optional<std::string> nextRun() const;
    std::vector<std::string> recent() const;
    /// Absent when there is nothing to check again.
    std::optional<std::string> skipped() const;
    void runNow();
    void recheckSkipped();

  private:
    static Task<> load(ReminderImportSettingsView& view);

    ReminderImportService& m_service;
    SettingsStore& m_settings;
    const Clock& m_clock;
    std::optional<bool> m_hasAccess;
    std::vector<std::string> m_names;
    Observers<> m_observers;
    Observation m_ofService;
    TaskScope m_loading;
    TaskScope m_rechecking;
};

} // namespace quillorn
