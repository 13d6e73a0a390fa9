#include "Platform/Clock.h"
#include "Platform/Date.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

Date at(std::int64_t seconds, std::int64_t microseconds = 0) {
    return Date{std::chrono::seconds{seconds} + std::chrono::microseconds{microseconds}};
}

TEST(Date, writesAndReadsWholeSecondsInUTC) {
    const struct {
        std::int64_t seconds;
        const char* text;
    } cases[] = {
        {0, "1970-01-01T00:00:00Z"},
        {-1, "1969-12-31T23:59:59Z"},
        {951'782'400, "2000-02-29T00:00:00Z"},
        {1'767'323'045, "2026-01-02T03:04:05Z"},
        {253'402'300'799, "9999-12-31T23:59:59Z"},
        {-62'167'219'200, "0000-01-01T00:00:00Z"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(formatISO8601(at(c.seconds)), c.text);
        EXPECT_EQ(parseISO8601(c.text), at(c.seconds)) << c.text;
    }
}

TEST(Date, writingCutsFractionsTowardsThePastAndStaysInFourDigitYears) {
    EXPECT_EQ(formatISO8601(at(1, 999'999)), "1970-01-01T00:00:01Z");
    EXPECT_EQ(formatISO8601(at(0, -1)), "1969-12-31T23:59:59Z");
    EXPECT_EQ(formatISO8601(Date::max()), "9999-12-31T23:59:59Z");
    EXPECT_EQ(formatISO8601(Date::min()), "0000-01-01T00:00:00Z");
}

TEST(Date, readsOffsets) {
    const struct {
        const char* text;
        const char* inUTC;
    } cases[] = {
        {"2026-01-02T03:04:05+00:00", "2026-01-02T03:04:05Z"}, {"2026-01-02T03:04:05-00:00", "2026-01-02T03:04:05Z"},
        {"2026-01-02T03:04:05+0530", "2026-01-01T21:34:05Z"},  {"2026-12-31T23:30:00-02:00", "2027-01-01T01:30:00Z"},
        {"2024-03-01T00:00:00+14:00", "2024-02-29T10:00:00Z"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(parseISO8601(c.text), parseISO8601(c.inUTC)) << c.text;
}

TEST(Date, refusesEveryOtherForm) {
    for (const char* text : {"",
                             "2026",
                             "2026-01-02",
                             "2026-01-02T03:04:05",
                             "2026-01-02 03:04:05Z",
                             "2026-01-02t03:04:05Z",
                             "2026-01-02T03:04:05z",
                             "2026-01-02T03:04:05.5Z",
                             "2026-01-02T03:04:05.000Z",
                             "2026-02-30T00:00:00Z",
                             "2025-02-29T00:00:00Z",
                             "2026-13-01T00:00:00Z",
                             "2026-00-01T00:00:00Z",
                             "2026-01-00T00:00:00Z",
                             "2026-01-02T24:00:00Z",
                             "2026-01-02T03:60:05Z",
                             "2026-01-02T03:04:60Z",
                             "2026-01-02T03:04:05+24:00",
                             "2026-01-02T03:04:05+02:60",
                             "2026-01-02T03:04:05+02",
                             "2026-01-02T03:04:05+2:00",
                             "2026-1-2T3:4:5Z",
                             "26-01-02T03:04:05Z",
                             "+2026-01-02T03:04:05Z",
                             "2026-01-02T03:04:05Z ",
                             " 2026-01-02T03:04:05Z",
                             "2026-01-02T03:04:05ZZ",
                             "2026-01-02T03:04:05+",
                             "2026-01-02T-3:04:05Z",
                             "20260102T030405Z"})
        EXPECT_EQ(parseISO8601(text), std::nullopt) << text;
}

TEST(Date, secondsBetweenKeepsFractionsAndSign) {
    EXPECT_DOUBLE_EQ(secondsBetween(at(10), at(12, 500'000)), 2.5);
    EXPECT_DOUBLE_EQ(secondsBetween(at(10), at(9)), -1);
}

TEST(SystemClock, tellsTheSystemsTime) {
    const auto before = std::chrono::system_clock::now();
    const Date now = SystemClock().now();
    EXPECT_GE(now, std::chrono::floor<std::chrono::microseconds>(before));
    EXPECT_LE(now, std::chrono::system_clock::now());
}

} // namespace
} // namespace quillorn
