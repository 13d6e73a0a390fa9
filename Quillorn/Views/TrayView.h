#pragma once

#include "Views/TimerToolbarView.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// What stands in the tray of the desktop: the running timer, and a short menu. Belongs to the main thread.
class TrayView {
  public:
    static constexpr std::string_view name = "Quillorn";
    static constexpr std::string_view startTitle = "Start Timer";
    static constexpr std::string_view showTitle = "Show Window";
    static constexpr std::size_t mostTasks = 8;
    /// In characters; longer titles are cut.
    static constexpr std::size_t longestTitle = 60;

    struct Item {
        /// A line between others where it is empty.
        std::string text{};
        /// Without one there is nothing to choose.
        std::function<void()> action{};
        std::vector<Item> items{};
    };
    /// What the program does.
    struct Actions {
        std::function<void()> quickAdd;
        std::function<void()> show;
        std::function<void()> quit;
        /// Tells why a choice could not be followed.
        std::function<void(const char* words)> fail;
    };

    TrayView(const TimerToolbarView::Environment& environment, Actions actions);
    ~TrayView() = default;
    TrayView(const TrayView&) = delete;
    TrayView& operator=(const TrayView&) = delete;

    /// Told when task() or time() have changed: once a minute while a timer runs, otherwise when one begins or ends.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// On which the timer runs; empty where none does.
    const std::string& task() const { return m_task; }
    /// "0h 5m"; empty where none runs.
    const std::string& time() const { return m_time; }
    /// The actions throw what saving throws; they must not outlive this object.
    std::vector<Item> menu();

    const Actions& actions() const { return m_actions; }

  private:
    void update();

    TimerToolbarView m_timer;
    const Actions m_actions;
    std::string m_task;
    std::string m_time;
    Observers<> m_observers;
    Observation m_changes;
};

} // namespace quillorn
