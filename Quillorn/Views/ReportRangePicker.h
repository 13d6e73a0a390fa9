#pragma once

#include "AI/WorkSummary.h"
#include "Platform/Date.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class Clock;

/// A month on which the first and the last day of a report are chosen.
class ReportRangePicker {
  public:
    /// Shows the month of today, with the last seven days chosen.
    ReportRangePicker(const Clock& clock, const Calendar& calendar);

    static constexpr std::string_view label = "Days of the summary";
    static constexpr std::string_view previousLabel = "Previous month";
    static constexpr std::string_view nextLabel = "Next month";

    /// "November 2026".
    std::string title() const;
    void showPreviousMonth() { m_month -= std::chrono::months{1}; }
    void showNextMonth() { m_month += std::chrono::months{1}; }

    struct Day {
        std::chrono::local_days date;
        /// "Thursday, December 31", for who doesn't see where the number stands.
        std::string name;
        unsigned number;
        bool isInMonth, isToday, isChosen;
    };
    /// The weeks that the month touches, by the first day of the user's weeks.
    std::vector<std::vector<Day>> weeks() const;

    /// The first choice is the start and the second one the end; where that is the earlier one they change places. A
    /// third one begins again.
    void choose(std::chrono::local_days day);
    /// Absent while the end is missing.
    std::optional<DayRange> range() const;
    /// "Generate Nov 9 – Nov 15"; without the days while there is no range.
    std::string generateLabel() const;

  private:
    std::chrono::local_days today() const;

    const Clock& m_clock;
    const Calendar& m_calendar;
    std::chrono::year_month m_month;
    std::chrono::local_days m_start;
    std::optional<std::chrono::local_days> m_end;
};

} // namespace quillorn
