#pragma once

#include "Models/TimeEntry.h"

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class ModelContext;

// What a form and a command that log time have to agree on.

/// The end of an entry of which start and end were given as times of one day: where the end falls before the start it
/// runs overnight, to the next day.
Date effectiveEnd(Date start, Date end, const Calendar& calendar);

/// The wall-clock time of `date` as a time since the beginning of its day. Of a time that the day has twice it gives
/// the second as the time that has passed since midnight, as no time of day means it.
std::chrono::seconds timeOfDay(Date date, const Calendar& calendar);

/// What stands under the times.
struct DurationLine {
    static constexpr std::string_view mustDiffer = "end must differ from start";
    static constexpr std::string_view endsNextDay = " · ends next day";

    std::string text;
    /// Nothing can be saved then.
    bool isWarning = false;
};
DurationLine durationLine(Date start, Date effectiveEnd, const Calendar& calendar);

/// The entries that have time in common with the one from `start` to `end`, the earliest first; running ones last up to
/// `now`, or to `end` where that is earlier. `own` is left out.
std::vector<TimeEntry*> overlappingEntries(ModelContext& context, Date start, Date end, Date now,
                                           const std::optional<UUID>& own = {});

inline constexpr std::string_view overlapSymbol = "exclamationmark.triangle.fill";
/// "Overlaps Write the offer (9:00 AM – 10:30 AM) and 2 more"; absent where there are none.
std::optional<std::string> overlapWarning(const std::vector<TimeEntry*>& entries, const Calendar& calendar);

/// "9:00 AM – 10:30 AM", "9:00 AM – now".
std::string timeSpan(Date start, const std::optional<Date>& end, const Calendar& calendar);

/// The minutes that a button adds to the start to get the end.
inline constexpr std::array quickMinutes = {15, 30, 45, 60, 120, 240};
/// "45m", "2h".
std::string quickLabel(int minutes);

} // namespace quillorn
