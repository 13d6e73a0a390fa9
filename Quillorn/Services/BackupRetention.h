#pragma once

#include "Platform/Date.h"

#include <vector>

namespace quillorn {

class Calendar;

/// Which backups of an age are kept.
enum class BackupTier {
    /// Up to a day, and from the future: all.
    recent,
    /// Up to 30 days: the newest of each calendar day.
    daily,
    /// Up to 84 days: the newest of each calendar week.
    weekly,
    /// None.
    none,
};

BackupTier backupTier(Date date, Date now);

/// The dates of backups to delete, in the order of `dates`.
std::vector<Date> datesToPrune(const std::vector<Date>& dates, Date now, const Calendar& calendar);

} // namespace quillorn
