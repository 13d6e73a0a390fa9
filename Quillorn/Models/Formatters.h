#pragma once

#include "Platform/Date.h"

#include <cstdint>
#include <string>

namespace quillorn {

class Calendar;

/// The size of a file in thousands of bytes: "512 bytes", "12 KB", "1.2 MB", "3.45 GB".
std::string fileSize(std::uintmax_t bytes);

/// A running clock: "05:09", from an hour on "1:05:09". Parts of a second are cut.
std::string clockForm(double seconds);
/// A total: "59s", "5m 9s", "1h 5m".
std::string shortForm(double seconds);
/// How long ago `date` was, in the largest unit that it fills: "42 seconds", "1 minute", "3 weeks". The future counts
/// as now.
std::string relativeTime(Date date, Date now);
/// A total in whole minutes: "0h 59m", "1h 5m".
std::string hoursAndMinutes(double seconds);
/// The time for a date of today, the day for one of this year, else the day and the year.
std::string smartDate(Date date, Date now, const Calendar& calendar);
/// "Today", "Tomorrow", "Overdue" or the date.
std::string dueLabel(Date date, Date now, const Calendar& calendar);

} // namespace quillorn
