#pragma once

namespace quillorn {

class Calendar;
class Clock;
class DayChangeObserver;
class EditHistory;
class MainContext;
class MainQueue;
class SettingsStore;
class Text;
class TimerService;

/// What the screens over the store stand on. All of it outlives them.
struct ViewEnvironment {
    MainContext& main;
    MainQueue& queue;
    EditHistory& history;
    TimerService& timer;
    DayChangeObserver& days;
    SettingsStore& settings;
    const Clock& clock;
    const Calendar& calendar;
    const Text& text;
};

} // namespace quillorn
