#pragma once

#include "Platform/Date.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace quillorn {

class Calendar;

/// "45m", "1h30m", "2h", "1:30" or "1.5h"; absent for anything else.
std::optional<std::chrono::seconds> readDuration(std::string_view text);

/// When somebody worked.
struct LoggedTime {
    Date start{};
    Date end{};
};

/// Reads a duration, which ends now or, of another day, at this time of day; or two times of day ("9:00-10:30",
/// "9-10:30", "11pm-1am"), the second of which is on the next day where it is before the first. `day` is today unless
/// given. Throws std::runtime_error in words for the user, also for nothing at all and for more than 24 hours.
LoggedTime readLoggedTime(std::string_view text, std::optional<std::chrono::local_days> day, Date now,
                          const Calendar& calendar);

} // namespace quillorn
