#pragma once

#include "AI/AIService.h"
#include "Models/TaskNames.h"
#include "Platform/Observers.h"

#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class Calendar;
class Clock;

/// Lets the model understand what a sentence says of a new task. Belongs to the main thread; one sentence at a time.
class TaskParsingService {
  public:
    TaskParsingService(HttpClient& client, SettingsStore& settings, const Clock& clock, const Calendar& calendar);

    bool isParsing() const { return m_isParsing; }
    /// Why the last sentence brought nothing.
    const std::optional<std::string>& parseError() const { return m_parseError; }
    /// Told when one of the two changes.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// Absent where parseError() says why. Projects and tags come as the model names them, of those on offer or not.
    Task<std::optional<ParsedTaskResult>> parse(std::string text, TaskNames names);

  private:
    class Parsing;

    AIService m_service;
    const Clock& m_clock;
    const Calendar& m_calendar;
    bool m_isParsing = false;
    std::optional<std::string> m_parseError;
    Observers<> m_observers;
};

/// What a model's answer says; absent for one without an object that has a title.
std::optional<ParsedTaskResult> readTaskAnswer(std::string_view answer, Date now, const Calendar& calendar);

} // namespace quillorn
