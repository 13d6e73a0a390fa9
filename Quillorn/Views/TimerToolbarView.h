#pragma once

#include "Platform/Date.h"
#include "Platform/Observers.h"
#include "Platform/UUID.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class Clock;
class MainContext;
class ProjectTask;
class Text;
class TimerService;

/// The running timer in a window's toolbar, and its menu. It follows timer and store for as long as somebody observes
/// it, so that a window which nobody sees costs nothing. Belongs to the main thread.
class TimerToolbarView {
  public:
    static constexpr std::string_view stopSymbol = "stop.fill";
    static constexpr std::string_view stopHelp = "Stop timer (⌘T)";
    static constexpr std::string_view stopLabel = "Stop timer";
    /// Of an entry whose task is gone.
    static constexpr std::string_view noTask = "Unassigned";
    static constexpr std::string_view choicesPrompt = "Search tasks";
    static constexpr std::string_view startPrompt = "Started at, as 9:30";
    static constexpr std::string_view notYet = "The timer can’t have started in the future";
    static constexpr std::string_view notRunning = "No timer is running";
    static constexpr std::size_t mostChoices = 20;
    /// By how many minutes the menu moves the start back.
    static constexpr std::array earlierMinutes = {5, 15, 30};

    /// Referred to, not owned.
    struct Environment {
        MainContext& main;
        TimerService& timer;
        const Clock& clock;
        const Calendar& calendar;
        const Text& text;
    };
    explicit TimerToolbarView(const Environment& environment) : m_environment(environment) {}
    ~TimerToolbarView() = default;
    TimerToolbarView(const TimerToolbarView&) = delete;
    TimerToolbarView& operator=(const TimerToolbarView&) = delete;

    /// Told when anything below may have changed: each second while the timer runs. It must end before this does.
    [[nodiscard]] Observation observe(std::function<void()> handler);

    /// Otherwise there is nothing to show.
    bool isRunning() const;
    std::string title() const;
    /// Of the task's project, for the dot; empty for none.
    std::string color() const;
    /// "05:09", "1:05:09".
    std::string clock() const;
    /// "1h 5m", for what need not change each second.
    std::string minutes() const;
    /// "Started 9:05 AM".
    std::string started() const;
    /// For a click on the title.
    std::optional<UUID> task() const;

    struct Choice {
        UUID id;
        std::string title;
        /// "Client / Project"; empty for none.
        std::string subtitle;
        bool isActive = false;

        friend bool operator==(const Choice&, const Choice&) = default;
    };
    /// The open tasks whose title holds the text: those in progress first, then what was changed last.
    std::vector<Choice> choices(std::string_view search) const;
    /// Begins on that task, and ends what ran; a task that is gone is passed over.
    void start(const UUID& task);
    void stop();
    /// The menu command: stops whatever runs, else starts on the selected task.
    void toggle(const std::optional<UUID>& selected);

    /// "Started 5 minutes earlier".
    static std::string earlierLabel(int minutes);
    void startEarlier(int minutes);
    /// Moves the start to a moment as people write it. Says why it can't be, or nothing.
    std::optional<std::string> adjust(std::string_view when);

  private:
    struct Following {
        Observation timer;
        Observation store;
    };

    ProjectTask* activeTask() const;

    Environment m_environment;
    Observers<> m_observers;
    std::weak_ptr<Following> m_following;
};

} // namespace quillorn
