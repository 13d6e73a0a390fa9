#include "Models/Formatters.h"

#include "Platform/Calendar.h"

#include <algorithm>
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

std::string fileSize(std::uintmax_t bytes) {
    if (bytes == 0)
        return "Zero KB";
    if (bytes < 1000)
        return fmt::format("{} {}", bytes, bytes == 1 ? "byte" : "bytes");
    // Digits behind the point; ones that are zero are left out.
    struct Unit {
        const char* name;
        int digits;
    };
    constexpr Unit units[] = {{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}};
    auto value = static_cast<double>(bytes) / 1000;
    const Unit* unit = units;
    for (; value >= 999.5 && unit + 1 != std::end(units); ++unit)
        value /= 1000;
    std::string number = fmt::format("{:.{}f}", value, unit->digits);
    if (unit->digits > 0)
        number.erase(number.find_last_not_of('0') + 1);
    if (number.ends_with('.'))
        number.pop_back();
    return fmt::format("{} {}", number, unit->name);
}

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

std::string relativeTime(Date date, Date now) {
    struct Unit {
        const char* name;
        std::int64_t seconds;
    };
    constexpr Unit units[] = {{"year", 31'557'600}, {"month", 2'629'800}, {"week", 604'800},
                              {"day", 86'400},      {"hour", 3'600},      {"minute", 60}};
    const auto age = std::max<std::int64_t>(0, static_cast<std::int64_t>(secondsBetween(date, now)));
    const auto text = [](std::int64_t count, const char* name) {
        return fmt::format("{} {}{}", count, name, count == 1 ? "" : "s");
    };
    for (const auto& [name, seconds] : units)
        if (age >= seconds)
            return text(age / seconds, name);
    return text(age, "second");
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
