#pragma once

namespace quillorn {

class Calendar;
class Clock;
class HttpClient;
class MainQueue;
class ModelContext;
class SettingsStore;
class Text;

/// What a conversation with a model needs around it. Referred to, not owned.
struct AIEnvironment {
    HttpClient& httpClient;
    SettingsStore& settings;
    /// The main thread's, where conversations are kept.
    ModelContext& mainContext;
    MainQueue& mainQueue;
    const Clock& clock;
    const Calendar& calendar;
    const Text& text;
};

} // namespace quillorn
