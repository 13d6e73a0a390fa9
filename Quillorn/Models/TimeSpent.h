#pragma once

#include "Platform/Date.h"
#include "Store/Statement.h"

namespace quillorn {

/// Adds up the time of TimeEntry rows; running ones count up to `now`. As a floating-point number of microseconds the
/// sum is exact for 285 years, and never overflows.
class TimeSum {
  public:
    /// `startColumn` of the row is its startTime, the next one its endTime.
    void add(const Statement& row, int startColumn, Date now, double sign = 1) {
        const auto start = static_cast<double>(row.integer(startColumn));
        const auto end = static_cast<double>(row.isNull(startColumn + 1) ? now.time_since_epoch().count()
                                                                         : row.integer(startColumn + 1));
        m_microseconds += sign * (end - start);
    }
    double seconds() const { return m_microseconds / 1e6; }

  private:
    double m_microseconds = 0;
};

} // namespace quillorn
