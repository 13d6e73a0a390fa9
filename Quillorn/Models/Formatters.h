#pragma once

#include "Platform/Date.h"

#include <string>

namespace quillorn {

class Calendar;

/// A running clock: "05:09", from an hour on "1:05:09". Parts of a second are cut.
std::string clockForm(double seconds);
/// A total: "59s", "5m 9s", "1h 5m".
std::string shortForm(double seconds);
/// A total in whole minutes: "0h 59m", "1h 5m".
std::string hoursAndMinutes(double seconds);
/// The time for a date of today, the day for one of this year, else the day and the year.
std::string smartDate(Date date, Date now, const Calendar& calendar);
/// "Today", "Tomorrow", "Overdue" or the date.
std::string dueLabel(Date date, Date now, const Calendar& calendar);

} // namespace quillorn
