#pragma once

#include "Platform/Date.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace quillorn {

class FileWatch;

/// The user's calendar: days, weeks and wall-clock texts in one time zone, with the system's zone rules, and the
/// words of one locale. Safe to share between threads.
class Calendar {
  public:
    /// Throws std::runtime_error for a zone that the system does not know ("Europe/Berlin" is the form).
    Calendar(std::string_view timeZone, std::string_view locale);
    ~Calendar();
    Calendar(Calendar&&) noexcept;
    Calendar& operator=(Calendar&&) noexcept;

    const std::string& timeZone() const;
    /// From here on all threads reckon in that zone. Throws as the constructor does, and keeps the former one then.
    void setTimeZone(std::string_view timeZone);

    /// The civil day of `date`.
    std::chrono::year_month_day day(Date date) const;
    bool isSameDay(Date a, Date b) const;
    /// The first instant of the day; where midnight does not exist, the first one after the gap.
    Date startOfDay(Date date) const;
    /// Start of the day, plus one day, minus one second; `date` itself where the calendar can't say.
    Date endOfDay(Date date) const;
    /// The same wall-clock time `dayCount` days later. A time that does not exist moves forward by the length of
    /// the gap; of a time that exists twice the first is meant.
    Date addDays(Date date, int dayCount) const;
    /// Monday 00:00 of the ISO 8601 week, whatever the locale's first weekday.
    Date startOfISOWeek(Date date) const;
    /// The first civil day of the week, by the locale's first weekday.
    std::chrono::year_month_day firstDayOfWeek(Date date) const;

    /// The instant of a wall-clock time, by the rules of addDays.
    Date instant(std::chrono::local_seconds time) const;

    /// The wall-clock time by a Unicode date pattern ("h:mm a", "MMM d, yyyy", "yyyyMMdd-HHmm"). Digits and year are
    /// the locale's as well as the words, so for texts that programs read make a calendar with locale "en_US_POSIX".
    /// Throws std::runtime_error for a pattern that is none.
    std::string format(Date date, std::string_view pattern) const;
    /// The locale's medium date style, no time ("Jan 31, 2026").
    std::string mediumDate(Date date) const;
    /// The day with an abbreviated month, as the locale writes it ("31. Jan. 2026").
    std::string abbreviatedDate(Date date) const;
    /// The same with hour and minute.
    std::string abbreviatedDateAndTime(Date date) const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

inline constexpr auto systemTimeZoneFile = "/etc/localtime";
/// The name of the user's time zone: TZ when it names one, else the system's, else "UTC".
std::string currentTimeZone(const std::filesystem::path& systemFile = systemTimeZoneFile);
/// Calls `changed` on a thread of its own with the name of the user's time zone, whenever it may be another one, as
/// long as the watch lives. Null when the system can't watch.
std::unique_ptr<FileWatch> watchTimeZone(std::function<void(const std::string& name)> changed,
                                         const std::filesystem::path& systemFile = systemTimeZoneFile);
/// The user's locale from LC_ALL, LC_TIME or LANG, in ICU's form; "en_US" for none, "C" and "POSIX".
std::string currentLocale();

} // namespace quillorn
