#include "Platform/Calendar.h"
#include "Support/ScopedEnvironment.h"

#include <gtest/gtest.h>
#include <limits>

using namespace std::chrono;

namespace quillorn {
namespace {

Date at(const char* text) {
    return parseISO8601(text).value();
}

Calendar in(const char* zone) {
    return Calendar(zone, "en_US");
}

TEST(Calendar, daysBeginAndEndByTheZone) {
    const struct {
        const char* zone;
        const char* date;
        const char* start;
        const char* end;
    } cases[] = {
        {"UTC", "2026-01-02T03:04:05Z", "2026-01-02T00:00:00Z", "2026-01-02T23:59:59Z"},
        {"America/New_York", "2026-01-02T03:04:05Z", "2026-01-01T05:00:00Z", "2026-01-02T04:59:59Z"},
        {"America/New_York", "2026-03-08T12:00:00Z", "2026-03-08T05:00:00Z", "2026-03-09T03:59:59Z"}, // 23 hours
        {"America/New_York", "2026-11-01T12:00:00Z", "2026-11-01T04:00:00Z", "2026-11-02T04:59:59Z"}, // 25 hours
        {"America/Mexico_City", "2026-07-01T12:00:00Z", "2026-07-01T06:00:00Z", "2026-07-02T05:59:59Z"},
        {"Asia/Almaty", "2026-07-01T12:00:00Z", "2026-06-30T19:00:00Z", "2026-07-01T18:59:59Z"},
        {"Asia/Kathmandu", "2026-07-01T12:00:00Z", "2026-06-30T18:15:00Z", "2026-07-01T18:14:59Z"},
        // Clocks went from 24:00 to 01:00, so the day starts at 01:00; a day later it is 01:00 again.
        {"America/Sao_Paulo", "2018-11-04T12:00:00Z", "2018-11-04T03:00:00Z", "2018-11-05T02:59:59Z"},
        // Clocks went from 01:00 back to 00:00: midnight came twice.
        {"America/Havana", "2025-11-02T12:00:00Z", "2025-11-02T04:00:00Z", "2025-11-03T04:59:59Z"},
    };
    for (const auto& c : cases) {
        const Calendar calendar = in(c.zone);
        EXPECT_EQ(formatISO8601(calendar.startOfDay(at(c.date))), c.start) << c.zone << c.date;
        EXPECT_EQ(formatISO8601(calendar.startOfDay(at(c.start))), c.start);
        EXPECT_EQ(formatISO8601(calendar.endOfDay(at(c.date))), c.end) << c.zone << c.date;
        EXPECT_TRUE(calendar.isSameDay(at(c.date), at(c.start)));
        EXPECT_FALSE(calendar.isSameDay(at(c.date), at(c.start) - microseconds{1}));
    }
}

TEST(Calendar, addDaysKeepsTheWallClock) {
    const struct {
        const char* zone;
        const char* date;
        int days;
        const char* result;
    } cases[] = {
        {"UTC", "2024-02-28T10:00:00Z", 1, "2024-02-29T10:00:00Z"},
        {"UTC", "2024-02-28T10:00:00Z", -59, "2023-12-31T10:00:00Z"},
        {"America/New_York", "2026-03-07T17:00:00Z", 1, "2026-03-08T16:00:00Z"},
        {"America/New_York", "2026-03-07T07:30:00Z", 1, "2026-03-08T07:30:00Z"}, // 02:30 does not exist: 03:30
        {"America/New_York", "2026-10-31T05:30:00Z", 1, "2026-11-01T05:30:00Z"}, // 01:30 comes twice: the first
        {"America/New_York", "2026-11-02T06:30:00Z", -1, "2026-11-01T05:30:00Z"},
        {"Pacific/Apia", "2011-12-29T22:00:00Z", 1, "2011-12-30T22:00:00Z"}, // the 30th was left out
    };
    for (const auto& c : cases)
        EXPECT_EQ(formatISO8601(in(c.zone).addDays(at(c.date), c.days)), c.result) << c.zone << c.date;
    const Date fraction = at("2026-01-01T00:00:00Z") + microseconds{123'456};
    EXPECT_EQ(in("UTC").addDays(fraction, 1), fraction + days{1});
}

TEST(Calendar, weeksBeginOnMondayWhateverTheLocale) {
    const struct {
        const char* zone;
        const char* date;
        const char* monday;
    } cases[] = {
        {"UTC", "2021-01-03T12:00:00Z", "2020-12-28T00:00:00Z"}, // a Sunday in 2020-W53
        {"UTC", "2021-01-04T00:00:00Z", "2021-01-04T00:00:00Z"},
        {"America/New_York", "2026-03-08T12:00:00Z", "2026-03-02T05:00:00Z"},
        {"America/New_York", "2026-03-12T12:00:00Z", "2026-03-09T04:00:00Z"},
        {"Pacific/Auckland", "2026-01-04T11:00:00Z", "2026-01-04T11:00:00Z"},
        {"UTC", "1969-12-31T12:00:00Z", "1969-12-29T00:00:00Z"},
    };
    for (const auto& c : cases)
        for (const char* locale : {"en_US", "de_DE", "ar_EG"})
            EXPECT_EQ(formatISO8601(Calendar(c.zone, locale).startOfISOWeek(at(c.date))), c.monday) << c.date;
}

TEST(Calendar, summerTimeGoesOnAfterTheListInTheZoneFiles) {
    const struct {
        const char* zone;
        const char* date;
        const char* wallClock;
    } cases[] = {
        {"America/New_York", "2037-07-01T12:00:00Z", "08:00"}, {"America/New_York", "2040-07-01T12:00:00Z", "08:00"},
        {"America/New_York", "2040-01-01T12:00:00Z", "07:00"}, {"America/New_York", "2040-03-11T06:59:00Z", "01:59"},
        {"America/New_York", "2040-03-11T07:00:00Z", "03:00"}, {"America/New_York", "2040-11-04T05:59:00Z", "01:59"},
        {"America/New_York", "2040-11-04T06:00:00Z", "01:00"}, {"Europe/Berlin", "2100-03-28T01:00:00Z", "03:00"},
        {"Australia/Sydney", "2048-02-29T12:00:00Z", "23:00"}, {"America/Mexico_City", "2050-07-01T12:00:00Z", "06:00"},
        {"Asia/Almaty", "2050-07-01T12:00:00Z", "17:00"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(in(c.zone).format(at(c.date), "HH:mm"), c.wallClock) << c.zone << c.date;
    const Calendar newYork = in("America/New_York");
    EXPECT_EQ(formatISO8601(newYork.startOfDay(at("2040-03-12T12:00:00Z"))), "2040-03-12T04:00:00Z");
    EXPECT_EQ(formatISO8601(newYork.addDays(at("2040-03-10T07:30:00Z"), 1)), "2040-03-11T07:30:00Z");
    EXPECT_EQ(formatISO8601(newYork.addDays(at("2037-12-31T12:00:00Z"), 1)), "2038-01-01T12:00:00Z");
}

TEST(Calendar, writesDatesInTheWordsOfTheLocale) {
    const Date date = at("2026-01-31T20:05:09Z");
    const struct {
        const char* locale;
        const char* pattern; // null: the medium style
        const char* text;
    } cases[] = {
        {"en_US", "h:mm a", "3:05 PM"},
        {"en_US", "MMM d, yyyy", "Jan 31, 2026"},
        {"en_US", "EEEE", "Saturday"},
        {"de_DE", "EEEE, d. MMMM", "Samstag, 31. Januar"},
        {"en_US_POSIX", "yyyyMMdd-HHmm", "20260131-1505"},
        {"en_US", "'It''s' é", "It's é"},
        {"en_US", nullptr, "Jan 31, 2026"},
        {"C.UTF-8", nullptr, "Jan 31, 2026"},
        {"de_DE", nullptr, "31.01.2026"},
    };
    for (const auto& c : cases) {
        const Calendar calendar("America/New_York", c.locale);
        for (int twice = 0; twice < 2; ++twice)
            EXPECT_EQ(c.pattern ? calendar.format(date, c.pattern) : calendar.mediumDate(date), c.text) << c.locale;
    }
}

TEST(Calendar, oldDatesAreOfTheSameCalendar) {
    const Date date = at("1500-02-28T12:00:00Z");
    EXPECT_EQ(in("UTC").day(date), year{1500} / February / 28);
    EXPECT_EQ(in("UTC").format(date, "yyyy-MM-dd"), "1500-02-28");
    EXPECT_EQ(in("UTC").mediumDate(date), "Feb 28, 1500");
}

TEST(Calendar, instantsAndDistancesBeyondItsYearsDoNoHarm) {
    for (const char* zone : {"UTC", "America/New_York", "Pacific/Kiritimati"}) {
        const Calendar calendar = in(zone);
        for (const Date date : {Date::min(), Date::max(), Date::min() + days{1}, at("9999-12-31T23:59:59Z")}) {
            EXPECT_TRUE(calendar.day(date).ok());
            EXPECT_EQ(calendar.endOfDay(date), date); // it can't say
            calendar.startOfDay(date);
            calendar.startOfISOWeek(date);
            EXPECT_FALSE(calendar.format(date, "yyyy").empty());
            for (const int count : {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
                EXPECT_TRUE(calendar.day(calendar.addDays(date, count)).ok());
        }
    }
}

TEST(Calendar, refusesUnknownZones) {
    for (const char* zone : {"", "Mars/Olympus", "../../../etc/passwd", "europe/berlin ", "GMT+25"})
        EXPECT_THROW(in(zone), std::runtime_error) << zone;
    EXPECT_EQ(in("Europe/Berlin").timeZone(), "Europe/Berlin");
}

TEST(Calendar, canBeSharedBetweenThreads) {
    const Calendar calendar = in("America/New_York");
    std::vector<std::jthread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < 200; ++i) {
                const Date date = at("2026-01-31T20:05:00Z") + minutes{t};
                EXPECT_EQ(calendar.format(date, "h:mm a"), "3:0" + std::to_string(5 + t) + " PM");
                EXPECT_EQ(calendar.mediumDate(date), "Jan 31, 2026");
            }
        });
}

TEST(CurrentTimeZone, followsTZAndFallsBackToOneThatExists) {
    const struct {
        std::optional<std::string> value;
        std::optional<std::string> zone; // absent: whatever the system's is
    } cases[] = {
        {"Europe/Berlin", "Europe/Berlin"},
        {":Europe/Berlin", "Europe/Berlin"},
        {"/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo"},
        {"", "UTC"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", std::nullopt},
        {"Mars/Olympus", std::nullopt},
        {std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        const ScopedEnvironment variable("TZ", c.value);
        const std::string zone = currentTimeZone();
        EXPECT_EQ(zone, c.zone.value_or(zone));
        EXPECT_NO_THROW(in(zone.c_str())) << zone;
    }
}

TEST(CurrentLocale, takesTheFirstVariableThatIsSet) {
    const struct {
        const char* all;
        const char* time;
        const char* language;
        const char* locale;
    } cases[] = {
        {"de_DE.UTF-8", "fr_FR", "it_IT", "de_DE"},
        {"", "fr_FR.UTF-8", "it_IT", "fr_FR"},
        {"", "", "it_IT", "it_IT"},
        {"", "", "", "en_US"},
        {"C", "fr_FR", "it_IT", "en_US"},
        {"", "", "C.UTF-8", "en_US"},
    };
    for (const auto& c : cases) {
        const ScopedEnvironment all("LC_ALL", c.all);
        const ScopedEnvironment time("LC_TIME", c.time);
        const ScopedEnvironment language("LANG", c.language);
        EXPECT_EQ(currentLocale(), c.locale);
    }
}

} // namespace
} // namespace quillorn
