#include "Services/BackupRetention.h"

#include "Platform/Calendar.h"

#include <map>
#include <set>

namespace quillorn {

BackupTier backupTier(Date date, Date now) {
    using std::chrono::days;
    const auto age = now - date;
    if (age <= days{1})
        return BackupTier::recent;
    if (age <= days{30})
        return BackupTier::daily;
    return age <= days{84} ? BackupTier::weekly : BackupTier::none;
}

std::vector<Date> datesToPrune(const std::vector<Date>& dates, Date now, const Calendar& calendar) {
    // The newest of each day and of each week, the latter by its first day. A date counts in the tier of its own age
    // alone, so a day or week on the border between two tiers keeps one in each.
    std::map<std::chrono::year_month_day, Date> newestOfDay;
    std::map<std::chrono::year_month_day, Date> newestOfWeek;
    std::set<Date> kept;
    const auto take = [](auto& newest, std::chrono::year_month_day period, Date date) {
        const auto [entry, isFirst] = newest.emplace(period, date);
        if (!isFirst && date > entry->second)
            entry->second = date;
    };
    for (const Date date : dates) {
        switch (backupTier(date, now)) {
        case BackupTier::recent:
            kept.insert(date);
            break;
        case BackupTier::daily:
            take(newestOfDay, calendar.day(date), date);
            break;
        case BackupTier::weekly:
            take(newestOfWeek, calendar.firstDayOfWeek(date), date);
            break;
        case BackupTier::none:
            break;
        }
    }
    for (const auto* newest : {&newestOfDay, &newestOfWeek})
        for (const auto& [period, date] : *newest)
            kept.insert(date);
    std::vector<Date> pruned;
    for (const Date date : dates)
        if (!kept.contains(date))
            pruned.push_back(date);
    return pruned;
}

} // namespace quillorn
