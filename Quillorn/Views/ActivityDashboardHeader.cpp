#include "Views/ActivityDashboardHeader.h"

#include "Platform/Calendar.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

ActivityDashboardHeader::ActivityDashboardHeader(const Count& count, const KindCounts& kinds, Date now,
                                                 const Calendar& calendar) {
    const auto dayBefore = [&](int days) { return calendar.addDays(now, -days); };
    const auto onDay = [&](int daysAgo) {
        return count(calendar.startOfDay(dayBefore(daysAgo)), calendar.startOfDay(dayBefore(daysAgo - 1)));
    };
    today = onDay(0);
    for (int daysAgo = 0; daysAgo < longestStreak; ++daysAgo) {
        if (onDay(daysAgo) > 0)
            ++streak;
        else if (daysAgo > 0)
            break;
    }
    for (int index = 0; index < 7; ++index)
        lastSevenDays[static_cast<std::size_t>(index)] = {calendar.format(dayBefore(6 - index), "EEE"),
                                                          onDay(6 - index)};

    const auto of = [&](ActivityItem::Kind kind) { return kinds[static_cast<std::size_t>(kind)]; };
    using enum ActivityItem::Kind;
    byType = {{"Tasks", "blue", of(taskCompleted) + of(taskUpdated)},
              {"Time", "orange", of(timeEntry)},
              {"Notes", "yellow", of(noteUpdated)},
              {"Other", "teal", of(projectUpdated) + of(clientUpdated)}};
    for (const Category& category : byType)
        total += category.count;
    std::erase_if(byType, [](const Category& category) { return category.count == 0; });

    const bool isStreak = streak >= 2;
    line = isStreak ? fmt::format("{} day streak", streak) : fmt::format("{} total", total);
    lineIcon = isStreak ? "flame.fill" : "";
}

ActivityDashboardHeader ActivityDashboardHeader::of(const std::vector<ActivityItem>& items, Date now,
                                                    const Calendar& calendar) {
    KindCounts kinds{};
    for (const ActivityItem& item : items)
        ++kinds[static_cast<std::size_t>(item.kind)];
    // Descending: "before" is "at or after".
    const auto placeOf = [&](Date date) {
        return std::ranges::lower_bound(items, date, std::greater_equal<>(), &ActivityItem::timestamp);
    };
    return {[&](Date from, Date end) { return static_cast<std::size_t>(placeOf(from) - placeOf(end)); }, kinds, now,
            calendar};
}

} // namespace quillorn
