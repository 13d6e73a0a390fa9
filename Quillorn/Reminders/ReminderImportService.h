#pragma once

#include "AI/AIService.h"
#include "Platform/Date.h"
#include "Platform/MainQueue.h"
#include "Platform/Observers.h"
#include "Platform/Task.h"
#include "Reminders/ReminderReading.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace quillorn {

class Background;
class Calendar;
class Clock;
class HttpClient;
class ModelContainer;
class ReminderStore;
class SettingsStore;
class SystemLog;

/// What the service needs of the outside world. Referred to, not owned.
struct ReminderImportEnvironment {
    const Clock& clock;
    const Calendar& calendar;
    SettingsStore& settings;
    MainQueue& mainQueue;
    Background& background;
    SystemLog& log;
    HttpClient& httpClient;
    ReminderStore& reminders;
};

/// What a review begins with.
struct ReminderScan {
    /// The lists that were read, ascending.
    std::vector<std::string> lists;
    /// Those to be included first, each part by the title of the reminder.
    std::vector<ReminderImportRow> rows;
    /// Of all open reminders that were not imported before.
    std::set<std::string> openIDs;
};

/// Makes tasks of the user's open reminders, without ever deleting one or importing one twice. Belongs to the main
/// thread; all that waits for a disk happens elsewhere. Several processes may have one; they import one at a time.
class ReminderImportService {
  public:
    static constexpr std::chrono::seconds tickPeriod{60};

    /// Without a container a pass does nothing. With `schedule` it looks each minute whether one is due.
    ReminderImportService(ReminderImportEnvironment environment, std::filesystem::path recordsFile,
                          ModelContainer* container, bool schedule);
    ~ReminderImportService();
    ReminderImportService(const ReminderImportService&) = delete;
    ReminderImportService& operator=(const ReminderImportService&) = delete;

    /// In place of the reminders of the system, and of the AI.
    std::optional<std::vector<ReminderItem>> demoReminders;
    using Decide = std::function<std::vector<ReminderDecision>(const std::vector<ReminderItem>&,
                                                               const std::vector<ReminderImportProject>&)>;
    Decide demoDecide;

    /// Progress words of what is under way.
    const std::optional<std::string>& phase() const { return m_phase; }
    bool isRunning() const { return m_isRunning; }
    /// The end of the last pass, whatever came of it.
    const std::optional<Date>& lastRunDate() const { return m_lastRunDate; }
    const std::optional<std::string>& lastResult() const { return m_lastResult; }
    /// Whether the last pass of this object failed, or met problems.
    bool hasProblems() const { return m_hasProblems; }
    /// What was imported lately, newest first.
    std::vector<std::string> recent() const;
    std::size_t skippedCount() const { return m_skippedCount; }
    /// Absent while nothing is scheduled.
    std::optional<Date> nextRunDate() const;
    /// The lists that the user has chosen.
    std::vector<std::string> chosenLists() const;
    bool completesReminders() const;
    /// Told of each change of the above.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// One pass; its outcome is lastResult(). Throws nothing.
    Task<> runImport();
    /// The same, on its own.
    void startImport();
    Task<bool> ensureAccess();
    /// The titles of all lists, each one once.
    Task<std::vector<std::string>> listNames();
    /// The open reminders of those lists that were not imported before.
    Task<std::vector<ReminderItem>> openReminders(std::vector<std::string> lists);
    /// What there is to review in those lists; nothing is written. Throws what the reminders or the AI throw.
    Task<ReminderScan> scan(std::vector<std::string> lists);
    /// Imports the included rows of a scan, and remembers the others as decided against.
    Task<ApplyResult> import(std::vector<ReminderImportRow> rows, bool complete, ReminderScan scan);
    /// Lets the AI look again at what was decided against.
    Task<> recheckSkipped();
    /// Reads skippedCount() anew.
    Task<> refresh();

  private:
    class Run;

    void tick();
    /// The result in words; absent when another process imports.
    Task<std::optional<std::string>> pass();
    Task<GatheredReminders> gather(std::vector<std::string> lists);
    Task<std::vector<ReminderDecision>> decide(std::vector<ReminderItem> items,
                                               std::vector<ReminderImportProject> projects);
    Task<ApplyResult> applyAndRemember(std::vector<ReminderImportRow> rows, bool complete, ReminderScan scan);
    void finishRun(std::string words);
    void setPhase(std::optional<std::string> words);
    void setSkippedCount(std::size_t count);
    ReminderReading reading() const { return {m_container, m_memory, m_environment.reminders, demoReminders}; }
    std::filesystem::path lockFile() const { return m_memory->file().string() + "-import"; }

    const ReminderImportEnvironment m_environment;
    ModelContainer* const m_container;
    /// Shared with work that goes on when nobody waits for it any more.
    const std::shared_ptr<ReminderMemory> m_memory;
    AIService m_ai;
    std::optional<std::string> m_phase;
    bool m_isRunning = false;
    std::optional<Date> m_lastRunDate;
    std::optional<std::string> m_lastResult;
    bool m_hasProblems = false;
    std::size_t m_skippedCount = 0;
    Observers<> m_observers;
    std::optional<MainQueue::TimerId> m_timer;
    std::optional<MainQueue::TimerId> m_firstLook;
    TaskScope m_tasks; // go first
};

} // namespace quillorn
