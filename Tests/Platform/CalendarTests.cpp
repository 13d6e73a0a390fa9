#include "Platform/Calendar.h"
#include "Support/ScopedEnvironment.h"
#include "Support/Threads.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>

using namespace std::chrono;

namespace quillorn {
namespace {

template <std::size_t columns>
using Row = std::array<const char*, columns>;

Date at(const char* text) {
    return parseISO8601(text).value();
}

Calendar in(const char* zone) {
    return Calendar(zone, "en_US");
}

Date instant(std::int64_t second, std::int64_t fraction = 0) {
    return Date{seconds{second} + microseconds{fraction}};
}

TEST(Date, writesAndReadsWholeSecondsInUTC) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {0, "1970-01-01T00:00:00Z"},
        {-1, "1969-12-31T23:59:59Z"},
        {253'402'300'799, "9999-12-31T23:59:59Z"},
        {-62'167'219'200, "0000-01-01T00:00:00Z"},
    };
    for (const auto& [second, text] : cases) {
        EXPECT_EQ(formatISO8601(instant(second)), text);
        EXPECT_EQ(parseISO8601(text), instant(second)) << text;
    }
}

TEST(Date, fractionsAreCutTowardsThePastAndYearsHaveFourDigits) {
    EXPECT_EQ(formatISO8601(instant(1, 999'999)), "1970-01-01T00:00:01Z");
    EXPECT_EQ(formatISO8601(instant(0, -1)), "1969-12-31T23:59:59Z");
    EXPECT_EQ(formatISO8601(Date::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(formatISO8601(Date::min()), "0000-01-01T00:00:00Z");
    EXPECT_DOUBLE_EQ(secondsBetween(instant(10), instant(12, 500'000)), 2.5);
    EXPECT_DOUBLE_EQ(secondsBetween(instant(10), instant(9)), -1);
    EXPECT_DOUBLE_EQ(secondsBetween(Date::min(), Date::max()), 18'446'744'073'709.55); // more than Date::duration holds
}

TEST(Date, readsOffsets) {
    const std::pair<const char*, const char*> cases[] = {
        {"2026-01-02T03:04:05+00:00", "2026-01-02T03:04:05Z"}, {"2026-01-02T03:04:05-00:00", "2026-01-02T03:04:05Z"},
        {"2026-01-02T03:04:05+0530", "2026-01-01T21:34:05Z"},  {"2026-12-31T23:30:00-02:00", "2027-01-01T01:30:00Z"},
        {"2024-03-01T00:00:00+14:00", "2024-02-29T10:00:00Z"},
    };
    for (const auto& [text, inUTC] : cases)
        EXPECT_EQ(parseISO8601(text), parseISO8601(inUTC)) << text;
}

TEST(Date, refusesEveryOtherForm) {
    // clang-format off
    for (const char* text : {
             "", "2026", "2026-01-02", "2026-01-02T03:04:05", "2026-01-02 03:04:05Z", "20260102T030405Z",
             "2026-02-30T00:00:00Z", "2025-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-00-01T00:00:00Z",
             "2026-01-02T03:04:05+24:00", "2026-01-02T03:04:05+02:60", "2026-01-02T03:04:05+02",
             "2026-01-02T03:04:05+2:00", "2026-01-02T03:04:05+", "2026-1-2T3:4:5Z", "26-01-02T03:04:05Z",
             "2026-01-02T-3:04:05Z"})
        EXPECT_EQ(parseISO8601(text), std::nullopt) << text;
    // clang-format on
}

TEST(Calendar, daysBeginAndEndByTheZone) {
    const Row<4> cases[] = {
        {"UTC", "2026-01-02T03:04:05Z", "2026-01-02T00:00:00Z", "2026-01-02T23:59:59Z"},
        {"America/New_York", "2026-01-02T03:04:05Z", "2026-01-01T05:00:00Z", "2026-01-02T04:59:59Z"},
        {"America/New_York", "2026-03-08T12:00:00Z", "2026-03-08T05:00:00Z", "2026-03-09T03:59:59Z"}, // 23 hours
        {"America/New_York", "2026-11-01T12:00:00Z", "2026-11-01T04:00:00Z", "2026-11-02T04:59:59Z"}, // 25 hours
        {"Asia/Kathmandu", "2026-07-01T12:00:00Z", "2026-06-30T18:15:00Z", "2026-07-01T18:14:59Z"},
        // Clocks went from 24:00 to 01:00, so the day starts at 01:00; a day later it is 01:00 again.
        {"America/Sao_Paulo", "2018-11-04T12:00:00Z", "2018-11-04T03:00:00Z", "2018-11-05T02:59:59Z"},
        {"Asia/Beirut", "2040-03-25T12:00:00Z", "2040-03-24T22:00:00Z", "2040-03-25T21:59:59Z"}, // by rule
        // Clocks went from 01:00 back to 00:00: midnight came twice.
        {"America/Havana", "2025-11-02T12:00:00Z", "2025-11-02T04:00:00Z", "2025-11-03T04:59:59Z"},
    };
    for (const auto& [zone, date, start, end] : cases) {
        const Calendar calendar = in(zone);
        EXPECT_EQ(formatISO8601(calendar.startOfDay(at(date))), start) << zone << date;
        EXPECT_EQ(formatISO8601(calendar.startOfDay(at(start))), start);
        EXPECT_EQ(formatISO8601(calendar.endOfDay(at(date))), end) << zone << date;
        EXPECT_TRUE(calendar.isSameDay(at(date), at(start)));
        EXPECT_FALSE(calendar.isSameDay(at(date), at(start) - microseconds{1}));
    }
}

TEST(Calendar, addDaysKeepsTheWallClock) {
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        {"UTC", "2024-02-28T10:00:00Z", 1, "2024-02-29T10:00:00Z"},
        {"America/New_York", "2026-03-07T07:30:00Z", 1, "2026-03-08T07:30:00Z"}, // 02:30 does not exist: 03:30
        {"America/New_York", "2026-10-31T05:30:00Z", 1, "2026-11-01T05:30:00Z"}, // 01:30 comes twice: the first
        {"America/New_York", "2026-11-02T06:30:00Z", -1, "2026-11-01T05:30:00Z"},
        {"Pacific/Apia", "2011-12-29T22:00:00Z", 1, "2011-12-30T22:00:00Z"}, // the 30th was left out
    };
    for (const auto& [zone, date, count, result] : cases)
        EXPECT_EQ(formatISO8601(in(zone).addDays(at(date), count)), result) << zone << date;
    const Date fraction = at("2026-01-01T00:00:00Z") + microseconds{123'456};
    EXPECT_EQ(in("UTC").addDays(fraction, 1), fraction + days{1});
}

TEST(Calendar, weeksBeginOnMondayWhateverTheLocale) {
    const Row<3> cases[] = {
        {"UTC", "2021-01-03T12:00:00Z", "2020-12-28T00:00:00Z"}, // a Sunday in 2020-W53
        {"UTC", "2021-01-04T00:00:00Z", "2021-01-04T00:00:00Z"},
        {"America/New_York", "2026-03-08T12:00:00Z", "2026-03-02T05:00:00Z"},
        {"Pacific/Auckland", "2026-01-04T11:00:00Z", "2026-01-04T11:00:00Z"},
    };
    for (const auto& [zone, date, monday] : cases)
        for (const char* locale : {"en_US", "de_DE", "ar_EG"})
            EXPECT_EQ(formatISO8601(Calendar(zone, locale).startOfISOWeek(at(date))), monday) << date;
}

TEST(Calendar, writesDatesInTheWordsOfTheLocale) {
    const Date date = at("2026-01-31T20:05:09Z");
    const Row<3> cases[] = {
        // clang-format off
        {"en_US", "h:mm a", "3:05 PM"}, {"en_US", "MMM d, yyyy", "Jan 31, 2026"}, {"en_US", "EEEE", "Saturday"},
        {"en_US", "'It''s' é", "It's é"}, {"en_US_POSIX", "yyyyMMdd-HHmm", "20260131-1505"},
        {"de_DE", "EEEE, d. MMMM", "Samstag, 31. Januar"},
        // no pattern: the medium style
        {"en_US", nullptr, "Jan 31, 2026"}, {"C.UTF-8", nullptr, "Jan 31, 2026"}, {"de_DE", nullptr, "31.01.2026"},
        // clang-format on
    };
    for (const auto& [locale, pattern, text] : cases) {
        const Calendar calendar("America/New_York", locale);
        for (int twice = 0; twice < 2; ++twice)
            EXPECT_EQ(pattern ? calendar.format(date, pattern) : calendar.mediumDate(date), text) << locale;
    }
    const Date old = at("1500-02-28T12:00:00Z"); // of the same calendar
    EXPECT_EQ(in("UTC").day(old), year{1500} / February / 28);
    EXPECT_EQ(in("UTC").format(old, "yyyy-MM-dd"), "1500-02-28");
    EXPECT_EQ(in("UTC").mediumDate(old), "Feb 28, 1500");
}

TEST(Calendar, refusesUnknownZones) {
    for (const char* zone : {"", "Mars/Olympus", "../../../etc/passwd", "europe/berlin ", "GMT+25"})
        EXPECT_THROW(in(zone), std::runtime_error) << zone;
}

TEST(Calendar, canBeSharedBetweenThreads) {
    const Calendar calendar = in("America/New_York");
    onThreads(4, [&](int thread) {
        for (int i = 0; i < 200; ++i) {
            const Date date = at("2026-01-31T20:05:00Z") + minutes{thread};
            EXPECT_EQ(calendar.format(date, "h:mm a"), "3:0" + std::to_string(5 + thread) + " PM");
            EXPECT_EQ(calendar.mediumDate(date), "Jan 31, 2026");
        }
    });
}

TEST(CurrentTimeZone, followsTZAndFallsBackToOneThatExists) {
    using Text = std::optional<std::string>;
    const std::pair<Text, Text> cases[] = {
        // clang-format off
        {"Europe/Berlin", "Europe/Berlin"}, {":Europe/Berlin", "Europe/Berlin"}, {"", "UTC"},
        {"/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo"},
        // no zone: whatever the system's is
        {"CET-1CEST,M3.5.0,M10.5.0/3", {}}, {"Mars/Olympus", {}}, {{}, {}},
        // clang-format on
    };
    for (const auto& [value, expected] : cases) {
        const ScopedEnvironment variable("TZ", value);
        const std::string zone = currentTimeZone();
        EXPECT_EQ(zone, expected.value_or(zone));
        EXPECT_NO_THROW(in(zone.c_str())) << zone;
    }
}

TEST(CurrentLocale, takesTheFirstVariableThatIsSet) {
    // clang-format off
    const Row<4> cases[] = {
        {"de_DE.UTF-8", "fr_FR", "it_IT", "de_DE"}, {"", "fr_FR.UTF-8", "it_IT", "fr_FR"},
        {"", "", "it_IT", "it_IT"}, {"", "", "", "en_US"}, {"C", "fr_FR", "it_IT", "en_US"},
        {"", "", "C.UTF-8", "en_US"}};
    // clang-format on
    for (const auto& [all, time, language, locale] : cases) {
        const ScopedEnvironment a("LC_ALL", all), b("LC_TIME", time), c("LANG", language);
        EXPECT_EQ(currentLocale(), locale);
    }
}

} // namespace
} // namespace quillorn
