#include "Views/TimeEntryRules.h"

#include "Platform/Calendar.h"
#include "Store/ModelContext.h"

#include <cmath>
#include <cstdint>
#include <fmt/core.h>

namespace quillorn {

Date effectiveEnd(Date start, Date end, const Calendar& calendar) {
    return end < start ? calendar.addDays(end, 1) : end;
}

std::chrono::seconds timeOfDay(Date date, const Calendar& calendar) {
    const std::chrono::local_days day{calendar.day(date)};
    const Date second = std::chrono::floor<std::chrono::seconds>(date);
    const auto passed = std::chrono::floor<std::chrono::seconds>(second - calendar.startOfDay(date));
    // Where the clock was changed since midnight, it shows more or less than has passed.
    const std::chrono::seconds shown =
        passed + std::chrono::floor<std::chrono::seconds>(second - calendar.instant(day + passed));
    return calendar.instant(day + shown) == second ? shown : passed;
}

DurationLine durationLine(Date start, Date effectiveEnd, const Calendar& calendar) {
    const auto seconds = static_cast<std::int64_t>(std::trunc(secondsBetween(start, effectiveEnd)));
    if (start == effectiveEnd)
        return {std::string(DurationLine::mustDiffer), true};
    DurationLine line{fmt::format("{}:{:02}", seconds / 3600, seconds % 3600 / 60)};
    if (!calendar.isSameDay(start, effectiveEnd))
        line.text += DurationLine::endsNextDay;
    return line;
}

std::vector<TimeEntry*> overlappingEntries(ModelContext& context, Date start, Date end, Date now,
                                           const std::optional<UUID>& own) {
    const auto value = [](Date date) { return SQLValue(std::int64_t{date.time_since_epoch().count()}); };
    // The nil identifier is no entry's.
    return context.fetch<TimeEntry>({
        .where = "startTime < ?1 AND COALESCE(endTime, ?3) > ?2 AND COALESCE(endTime, ?3) > startTime AND id <> ?4",
        .values = {value(end), value(start), value(now), own.value_or(UUID())},
        .order = "startTime, key",
    });
}

std::optional<std::string> overlapWarning(const std::vector<TimeEntry*>& entries, const Calendar& calendar) {
    if (entries.empty())
        return std::nullopt;
    const TimeEntry& first = *entries.front();
    std::string line =
        fmt::format("Overlaps {} ({})", first.displayName(), timeSpan(first.startTime(), first.endTime(), calendar));
    if (entries.size() > 1)
        line += fmt::format(" and {} more", entries.size() - 1);
    return line;
}

std::string timeSpan(Date start, const std::optional<Date>& end, const Calendar& calendar) {
    constexpr std::string_view shortTime = "h:mm a";
    return fmt::format("{} – {}", calendar.format(start, shortTime), end ? calendar.format(*end, shortTime) : "now");
}

std::string quickLabel(int minutes) {
    return minutes % 60 == 0 ? fmt::format("{}h", minutes / 60) : fmt::format("{}m", minutes);
}

} // namespace quillorn
