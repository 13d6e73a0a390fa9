#pragma once

#include "Platform/Observers.h"
#include "Views/TimeEntryRules.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Clock;
class MainContext;
class Project;
class ProjectTask;
class Text;
class TimerService;

/// The form in which time is logged, and in which an entry is changed. Belongs to the main thread.
class TimeEntryFormSheet {
  public:
    static constexpr std::string_view projectLabel = "Project";
    static constexpr std::string_view projectPlaceholder = "Select Project";
    static constexpr std::string_view taskLabel = "Task";
    static constexpr std::string_view dateLabel = "Date";
    static constexpr std::string_view titleLabel = "Title";
    static constexpr std::string_view titlePlaceholder = "Optional label";
    static constexpr std::string_view notesLabel = "Notes";
    static constexpr std::string_view notesPlaceholder = "What did you work on?";
    static constexpr std::string_view quickLabel = "Quick:";
    static constexpr std::string_view runningLabel = "running";
    static constexpr std::string_view cancelButton = "Cancel";
    static constexpr std::string_view saveButton = "Save";

    /// What the form works on. Referred to, not owned.
    struct Environment {
        MainContext& main;
        TimerService& timer;
        const Clock& clock;
        const Calendar& calendar;
        const Text& text;
    };
    /// What a new entry begins with; a task brings its project along.
    struct Suggestion {
        std::optional<UUID> project{};
        std::optional<UUID> task{};
    };

    /// For a new entry: the hour that ends now.
    TimeEntryFormSheet(Environment environment, const Suggestion& suggestion);
    /// For an entry that there is.
    TimeEntryFormSheet(Environment environment, const TimeEntry& entry);

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }
    /// The present moment has moved on; for a running entry, each second.
    void update() { m_observers.tell(); }

    bool isNew() const { return !m_entry; }
    bool isRunning() const { return m_isRunning; }
    /// "Log Time", "Edit Time Entry" or "Edit Running Timer".
    std::string_view windowTitle() const;
    /// "Started" or "Time".
    std::string_view timeLabel() const { return m_isRunning ? "Started" : "Time"; }

    struct Choice {
        UUID id;
        std::string name;

        bool operator==(const Choice&) const = default;
    };
    /// By name; archived ones only where they are chosen.
    std::vector<Choice> projects() const;
    /// Those of the chosen project, or those without one; completed ones only where they are chosen.
    std::vector<Choice> tasks() const;
    const std::optional<UUID>& project() const { return m_project; }
    /// A task of another project is let go of.
    void setProject(std::optional<UUID> project);
    const std::optional<UUID>& task() const { return m_task; }
    /// Chooses its project too.
    void setTask(std::optional<UUID> task);

    const std::string& title() const { return m_title; }
    void setTitle(std::string title);
    const std::string& notes() const { return m_notes; }
    void setNotes(std::string notes);

    std::chrono::local_days date() const { return m_date; }
    void setDate(std::chrono::local_days date);
    /// Times of day, in wall-clock time.
    std::chrono::seconds startTime() const { return m_start; }
    void setStartTime(std::chrono::seconds time);
    std::chrono::seconds endTime() const { return m_end; }
    void setEndTime(std::chrono::seconds time);
    /// The end becomes the start plus these minutes.
    void chooseQuick(int minutes);

    /// The instants that are meant; a running entry ends now.
    Date start() const;
    Date end() const;
    /// What stands under the times; of a running entry the time since its start.
    DurationLine duration() const;
    std::optional<std::string> overlap() const;
    /// Why it can't be saved: no project and no task, equal times, a start in the future of a running entry, or an
    /// entry that is gone. Absent where it can.
    std::optional<std::string> fault() const;
    bool canSave() const { return !fault(); }
    /// Keeps what was entered; false where that can't be done. The entry that the timer runs goes through the timer.
    bool save();

  private:
    TimeEntry* entry() const;
    void takeTimes(Date start, Date end);
    void touchTimes();
    Date instant(std::chrono::seconds time) const;

    Environment m_environment;
    std::optional<UUID> m_entry; // absent for a new one
    bool m_isRunning = false;
    bool m_wasUnassigned = false;
    std::optional<UUID> m_project;
    std::optional<UUID> m_task;
    std::string m_title;
    std::string m_notes;
    std::chrono::local_days m_date;
    std::chrono::seconds m_start{0};
    std::chrono::seconds m_end{0};
    /// The times of the entry, while nobody has touched them: the form's may be coarser, and end on the next day.
    std::optional<Date> m_givenStart;
    std::optional<Date> m_givenEnd;
    Observers<> m_observers;
};

} // namespace quillorn
