#pragma once

#include "Platform/Date.h"
#include "Store/Statement.h"

namespace quillorn {

/// The time of TimeEntry rows added up, in SQL, as microseconds. Parameter 2 is the present, up to which running
/// entries count. total() and not sum(), which fails where the result leaves 64 bits; up to 285 years it is exact too.
inline constexpr const char* timeSpentSQL = "total(coalesce(endTime, ?2) - startTime)";

inline void bindPresent(Statement& statement, Date now) {
    statement.bind(2, std::int64_t{now.time_since_epoch().count()});
}

/// In seconds, from a column made by timeSpentSQL.
inline double timeSpent(const Statement& row, int column) {
    return secondsBetween(Date{}, Date(std::chrono::microseconds(row.integer(column))));
}

} // namespace quillorn
