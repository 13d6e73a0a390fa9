#pragma once

#include "Platform/ContentLines.h"
#include "Platform/Date.h"
#include "Platform/ZoneRules.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// A date or time as iCalendar writes it.
struct CalendarTime {
    /// The start of the day for a date.
    std::chrono::local_seconds time;
    bool isUTC = false;
};

/// "20260115", "20260115T120000" or "20260115T120000Z"; absent for anything else.
std::optional<CalendarTime> parseCalendarTime(std::string_view text);

/// One zone of a file (VTIMEZONE): when its clocks are changed, and to what.
class TimeZoneDefinition {
  public:
    /// One line of a STANDARD or DAYLIGHT component, of the last one that has begun.
    void take(const ContentLine& line);
    void beginObservance() { m_observances.emplace_back(); }

    /// What local time is ahead of UTC, by the rules of ZoneRules::read. Absent when nothing is defined.
    std::optional<std::chrono::seconds> offsetAt(std::chrono::local_seconds time) const;

  private:
    /// Standard or summer time.
    struct Observance {
        std::optional<std::chrono::local_seconds> start;
        std::optional<std::chrono::seconds> offsetFrom;
        std::optional<std::chrono::seconds> offsetTo;
        std::vector<std::chrono::local_seconds> dates;
        /// A yearly rule, where there is one that we can follow.
        bool isYearly = false;
        unsigned month = 0;
        /// The nth such day of the month, from its end when negative; 0: the day `dayOfMonth`, or the first `weekday`
        /// from it on.
        int nth = 0;
        std::optional<std::chrono::weekday> weekday;
        unsigned dayOfMonth = 0;
        std::optional<std::chrono::local_seconds> until;

        void takeRule(std::string_view rule);
        void takeRulePart(std::string_view name, std::string_view value);
        std::optional<std::chrono::local_seconds> onsetOf(std::chrono::year year) const;
        /// The last time at which it came into force, up to `time`.
        std::optional<std::chrono::local_seconds> lastOnset(std::chrono::local_seconds time) const;
    };

    std::vector<Observance> m_observances;
};

/// The zones that a file defines, and the instants of its times. A zone that the system knows by the same name goes
/// before the file's.
class TimeZoneDefinitions {
  public:
    /// The zone of times that name none, or an unknown one.
    explicit TimeZoneDefinitions(const ZoneRules& userZone) : m_userZone(userZone) {}

    /// The components and lines of VTIMEZONE, as they come.
    void begin(std::string_view component);
    void take(const ContentLine& line);
    void end(std::string_view component);

    Date instant(const CalendarTime& time, const std::string& zone) const;

  private:
    struct Zone {
        TimeZoneDefinition rules;
        /// What other programs name the system's zone by.
        std::string location;
    };

    const ZoneRules& m_userZone;
    std::map<std::string, Zone, std::less<>> m_zones;
    Zone m_zone; // the one being read
    std::string m_name;
    bool m_isInObservance = false;
};

} // namespace quillorn
