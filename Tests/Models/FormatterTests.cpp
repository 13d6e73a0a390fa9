#include "Models/Formatters.h"
#include "Platform/Calendar.h"
#include "Support/TestRecords.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

TEST(Formatters, showDurations) {
    struct Case {
        double seconds;
        const char *clock, *brief;
    };
    const Case cases[] = {
        // clang-format off
        {0, "00:00", "0s"}, {-0.5, "00:00", "0s"}, {0.999, "00:00", "0s"}, {59.9, "00:59", "59s"},
        {60, "01:00", "1m 0s"}, {309, "05:09", "5m 9s"}, {3599.9, "59:59", "59m 59s"}, {3600, "1:00:00", "1h 0m"},
        {3905, "1:05:05", "1h 5m"}, {360'000, "100:00:00", "100h 0m"},
        // clang-format on
    };
    for (const Case& each : cases) {
        EXPECT_EQ(clockForm(each.seconds), each.clock) << each.seconds;
        EXPECT_EQ(shortForm(each.seconds), each.brief) << each.seconds;
    }
}

TEST(Formatters, writeSizesOfFiles) {
    const std::pair<std::uintmax_t, const char*> cases[] = {
        // clang-format off
        {0, "Zero KB"}, {1, "1 byte"}, {999, "999 bytes"}, {1'000, "1 KB"}, {12'499, "12 KB"}, {999'499, "999 KB"},
        {999'500, "1 MB"}, {1'250'001, "1.3 MB"}, {20'000'000, "20 MB"}, {999'400'000, "999.4 MB"},
        {1'234'000'000, "1.23 GB"}, {1'500'000'000, "1.5 GB"}, {7'000'000'000'000, "7 TB"},
        // clang-format on
    };
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(fileSize(bytes), text) << bytes;
}

TEST(Formatters, tellHowLongAgo) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {-5, "0 seconds"},        {1, "1 second"},           {59, "59 seconds"},        {60, "1 minute"},
        {3'599, "59 minutes"},    {7'200, "2 hours"},        {86'399, "23 hours"},      {6 * 86'400, "6 days"},
        {14 * 86'400, "2 weeks"}, {61 * 86'400, "2 months"}, {800 * 86'400, "2 years"},
    };
    for (const auto& [seconds, text] : cases)
        EXPECT_EQ(relativeTime(testNow - std::chrono::seconds(seconds), testNow), text);
}

TEST(Formatters, labelDatesByTheDaysOfTheUsersZone) {
    struct Case {
        const char *zone, *date, *now, *smart, *due;
    };
    const Case cases[] = {
        // clang-format off
        {"UTC", "2026-01-15T23:59:59Z", "2026-01-15T12:00:00Z", "11:59 PM", "Today"},
        {"UTC", "2026-01-16T00:00:00Z", "2026-01-15T12:00:00Z", "Jan 16", "Tomorrow"},
        {"UTC", "2025-12-31T23:59:59Z", "2026-01-15T12:00:00Z", "Dec 31, 2025", "Overdue"},
        {"UTC", "2027-01-01T09:05:00Z", "2026-12-31T12:00:00Z", "Jan 1, 2027", "Tomorrow"},
        {"Asia/Tokyo", "2026-01-15T15:00:00Z", "2026-01-15T12:00:00Z", "Jan 16", "Tomorrow"},
        {"Asia/Tokyo", "2025-12-31T15:00:00Z", "2026-01-15T12:00:00Z", "Jan 1", "Overdue"},
        {"America/New_York", "2026-01-15T04:30:00Z", "2026-01-15T12:00:00Z", "Jan 14", "Overdue"},
        // The night in which the clocks go forward: the day has 23 hours.
        {"America/New_York", "2026-03-08T05:00:00Z", "2026-03-08T03:59:00Z", "Mar 8", "Tomorrow"},
        {"America/New_York", "2026-03-09T03:59:59Z", "2026-03-08T05:00:00Z", "11:59 PM", "Today"},
        // And back: 25 hours, and 24 of them later it is still the same day.
        {"America/New_York", "2026-11-02T04:30:00Z", "2026-11-01T04:30:00Z", "11:30 PM", "Today"},
        {"America/New_York", "2026-11-02T05:00:00Z", "2026-11-01T04:30:00Z", "Nov 2", "Tomorrow"},
        // clang-format on
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.zone) + " " + each.date);
        const Calendar calendar(each.zone, "en_US");
        EXPECT_EQ(smartDate(date(each.date), date(each.now), calendar), each.smart);
        EXPECT_EQ(dueLabel(date(each.date), date(each.now), calendar), each.due);
    }
    const Calendar german("Europe/Berlin", "de_DE");
    EXPECT_EQ(dueLabel(date("2026-01-31T09:00:00Z"), testNow, german), "31.01.2026");
    EXPECT_EQ(smartDate(date("2026-05-31T09:00:00Z"), testNow, german), "Mai 31");
}

} // namespace
} // namespace quillorn
