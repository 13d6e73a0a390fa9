#include "Views/ReportRangePicker.h"

#include "Platform/Calendar.h"
#include "Platform/Clock.h"

#include <utility>

namespace quillorn {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::year_month_day;

ReportRangePicker::ReportRangePicker(const Clock& clock, const Calendar& calendar)
    : m_clock(clock),
      m_calendar(calendar),
      m_month(year_month_day(today()).year() / year_month_day(today()).month()),
      m_start(today() - days{6}),
      m_end(today()) {}

local_days ReportRangePicker::today() const {
    return local_days{m_calendar.day(m_clock.now())};
}

std::string ReportRangePicker::title() const {
    return m_calendar.format(m_calendar.instant(local_days{m_month / 1}), "MMMM yyyy");
}

std::vector<std::vector<ReportRangePicker::Day>> ReportRangePicker::weeks() const {
    local_days day{m_calendar.firstDayOfWeek(m_calendar.instant(local_days{m_month / 1}))};
    const local_days end{m_month / std::chrono::last};
    std::vector<std::vector<Day>> weeks;
    while (day <= end) {
        std::vector<Day>& week = weeks.emplace_back();
        for (int i = 0; i < 7; ++i, day += days{1}) {
            const year_month_day date{day};
            week.push_back({day, m_calendar.format(m_calendar.instant(day), "EEEE, MMMM d"),
                            static_cast<unsigned>(date.day()), date.year() / date.month() == m_month, day == today(),
                            day >= m_start && day <= m_end.value_or(m_start)});
        }
    }
    return weeks;
}

void ReportRangePicker::choose(local_days day) {
    if (m_end) {
        m_start = day;
        m_end.reset();
        return;
    }
    m_end = day;
    if (*m_end < m_start)
        std::swap(*m_end, m_start);
}

std::optional<DayRange> ReportRangePicker::range() const {
    if (!m_end)
        return std::nullopt;
    return DayRange{m_calendar.instant(m_start), m_calendar.instant(*m_end)};
}

std::string ReportRangePicker::generateLabel() const {
    const auto chosen = range();
    return chosen ? "Generate " + rangeLabel(*chosen, m_clock.now(), m_calendar) : "Generate";
}

} // namespace quillorn
