#pragma once

#include "Models/Enums.h"
#include "Platform/Date.h"
#include "Platform/Task.h"
#include "Platform/UUID.h"
#include "Reminders/SiriReminderRules.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

class Background;
class Calendar;
class Clock;
class ModelContainer;
class ModelContext;
class Project;
class ProjectTask;
class SettingsStore;
class SiriProjectRouter;
class Text;

/// A date as it is spoken: any part may be missing.
struct DateComponents {
    std::optional<std::chrono::year> year{};
    std::optional<std::chrono::month> month{};
    std::optional<std::chrono::day> day{};
    std::optional<std::chrono::hours> hour{};
    std::optional<std::chrono::minutes> minute{};

    static DateComponents of(Date date, bool hasTime, const Calendar& calendar);

    bool operator==(const DateComponents&) const = default;
};

/// A project seen as a list of reminders, or the Inbox of tasks without a project.
struct QuillornReminderList {
    UUID id{};
    std::string name{};
    std::optional<std::string> clientName{};

    static const UUID& inboxID();
    static QuillornReminderList inbox() { return {inboxID(), "Inbox", std::nullopt}; }
    /// The Inbox for a null pointer.
    static QuillornReminderList of(const Project* project);

    bool operator==(const QuillornReminderList&) const = default;
};

/// A task seen as a reminder.
struct QuillornReminder {
    UUID id{};
    std::string title{};
    std::optional<std::string> note{};
    std::vector<std::string> tags{};
    std::optional<DateComponents> dueDate{};
    bool isCompleted = false;
    bool isFlagged = false;
    Date creationDate{};
    std::optional<Date> completionDate{};
    QuillornReminderList list{};

    static QuillornReminder of(const ProjectTask& task, const Calendar& calendar);
};

/// Why an intent was not done, in the words that are spoken.
class QuillornIntentError : public std::runtime_error {
  public:
    enum class Kind {
        storeUnavailable,
        taskNotFound,
        /// A question for what is missing.
        titleMissing,
    };
    explicit QuillornIntentError(Kind kind);
    Kind kind() const { return m_kind; }

  private:
    Kind m_kind;
};

struct CreateReminderParameters {
    std::string title{};
    /// Of a list.
    std::optional<UUID> list{};
    std::optional<std::string> note{};
    std::optional<bool> isFlagged{};
    /// How many were given.
    std::size_t images = 0;
    std::vector<std::string> tags{};
    std::vector<std::string> urls{};
    std::optional<DateComponents> dueDate{};
    bool recurrence = false;
    bool locationTrigger = false;
};

struct UpdateReminderParameters {
    UUID target{};
    std::optional<std::string> title{};
    std::optional<std::string> note{};
    std::optional<std::vector<std::string>> tags{};
    std::optional<std::vector<std::string>> urls{};
    std::optional<DateComponents> dueDate{};
    bool recurrence = false;
    std::optional<bool> isCompleted{};
    std::optional<bool> isFlagged{};
    std::optional<UUID> list{};
    bool locationTrigger = false;
};

/// What an intent came to.
struct SpokenResult {
    std::string sentence;
    UUID taskId;
};

/// What the intents need. Referred to, not owned; all but the router has to outlive `background`.
struct ReminderIntentsEnvironment {
    /// Null while there is no store.
    ModelContainer* container;
    Background& background;
    const Clock& clock;
    const Calendar& calendar;
    const Text& text;
    SettingsStore& settings;
    SiriProjectRouter& router;
    /// Called on the main thread behind a save: makes the notification of a task, or makes it anew.
    std::function<void(const UUID& task)> refreshNotification = [](const UUID&) {};
    /// Takes back the pending notification of that name.
    std::function<void(const std::string& identifier)> removeNotification = [](const std::string&) {};
};

/// What voice assistants and other programs can ask for: tasks as reminders. Belongs to the main thread, while the
/// store is worked on elsewhere. What it tells of is on the disk. Throws QuillornIntentError, and StoreError for what
/// can't be read or saved.
class ReminderIntents {
  public:
    explicit ReminderIntents(ReminderIntentsEnvironment environment)
        : m_environment(std::make_shared<const ReminderIntentsEnvironment>(std::move(environment))) {}

    Task<SpokenResult> create(CreateReminderParameters parameters);
    Task<SpokenResult> update(UpdateReminderParameters parameters);

    using Lists = std::vector<QuillornReminderList>;
    /// The Inbox, and the active projects.
    Task<Lists> suggestedLists();
    Task<Lists> lists(std::string text);
    Task<Lists> lists(std::vector<UUID> ids);
    using Reminders = std::vector<QuillornReminder>;
    /// All tasks that listings show, open ones first.
    Task<Reminders> suggestedReminders() { return reminders(std::string()); }
    /// Those with a title that contains the text, which may be empty.
    Task<Reminders> reminders(std::string text);
    Task<Reminders> reminders(std::vector<UUID> ids);

  private:
    template <typename Function>
    auto inStore(Function work) const;

    /// Shared with work that goes on when nobody waits for it any more.
    const std::shared_ptr<const ReminderIntentsEnvironment> m_environment;
};

/// The date of what was spoken, and whether it has a time: without an hour the start of the day, without a day the next
/// time that it is that late. Absent for neither, and for a day that no calendar has.
struct ResolvedDate {
    Date date;
    bool hasTime = false;
};
std::optional<ResolvedDate> resolve(const DateComponents& components, const Calendar& calendar, Date now);

/// "2026-01-31", "2026-01-31T09:05", with or without seconds, "Z" or an offset; absent for anything else.
std::optional<DateComponents> parseDateComponents(std::string_view text, const Calendar& calendar);

} // namespace quillorn
