#include "Models/Formatters.h"

#include "Platform/Calendar.h"

#include <cmath>
#include <cstdint>
#include <fmt/core.h>

namespace quillorn {

namespace {

struct Parts {
    std::int64_t total, hours, minutes, seconds;

    explicit Parts(double value)
        : total(static_cast<std::int64_t>(std::trunc(value))),
          hours(total / 3600),
          minutes(total % 3600 / 60),
          seconds(total % 60) {}
};

} // namespace

std::string clockForm(double seconds) {
    const Parts parts(seconds);
    if (parts.total < 3600)
        return fmt::format("{:02}:{:02}", parts.minutes, parts.seconds);
    return fmt::format("{}:{:02}:{:02}", parts.hours, parts.minutes, parts.seconds);
}

std::string shortForm(double seconds) {
    const Parts parts(seconds);
    if (parts.total < 60)
        return fmt::format("{}s", parts.seconds);
    if (parts.total < 3600)
        return fmt::format("{}m {}s", parts.minutes, parts.seconds);
    return hoursAndMinutes(seconds);
}

std::string hoursAndMinutes(double seconds) {
    const Parts parts(seconds);
    return fmt::format("{}h {}m", parts.hours, parts.minutes);
}

std::string smartDate(Date date, Date now, const Calendar& calendar) {
    if (calendar.isSameDay(date, now))
        return calendar.format(date, "h:mm a");
    if (calendar.day(date).year() == calendar.day(now).year())
        return calendar.format(date, "MMM d");
    return calendar.format(date, "MMM d, yyyy");
}

std::string dueLabel(Date date, Date now, const Calendar& calendar) {
    if (calendar.isSameDay(date, now))
        return "Today";
    if (calendar.isSameDay(date, calendar.addDays(now, 1)))
        return "Tomorrow";
    if (date < now)
        return "Overdue";
    return calendar.mediumDate(date);
}

} // namespace quillorn
