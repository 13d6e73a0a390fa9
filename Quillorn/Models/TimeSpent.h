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
        const bool isRunning = row.isNull(startColumn + 1);
        const auto end = static_cast<double>(isRunning ? now.time_since_epoch().count() : row.integer(startColumn + 1));
        m_isRunning |= isRunning;
        m_microseconds += sign * (end - start);
    }
    double seconds() const { return m_microseconds / 1e6; }
    /// Whether any of the rows is still running.
    bool isRunning() const { return m_isRunning; }

  private:
    double m_microseconds = 0;
    bool m_isRunning = false;
};

} // namespace quillorn
