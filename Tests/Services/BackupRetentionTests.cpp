#include "Services/BackupRetention.h"

#include "Platform/Calendar.h"
#include "Support/ScopedEnvironment.h"

#include <algorithm>
#include <ctime>
#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace quillorn {
namespace {

using namespace std::chrono;

/// Counts days and weeks by the C library, which reads the zone files by itself.
struct Oracle {
    static long localDay(Date date) {
        const std::time_t time = system_clock::to_time_t(floor<seconds>(date));
        std::tm parts{};
        localtime_r(&time, &parts);
        return floor<days>(sys_seconds{seconds{time + parts.tm_gmtoff}}).time_since_epoch().count();
    }
    /// 1970-01-01 was a Thursday.
    long week(Date date) const { return (localDay(date) + 700'004 - firstWeekday) / 7; }

    /// The rule, for each date by itself: it goes unless it is recent, or nobody of its tier and period is newer.
    bool isPruned(Date date, const std::vector<Date>& all, Date now) const {
        const auto isIn = [&](Date other, int above, int upTo) {
            return now - other > days{above} && now - other <= days{upTo};
        };
        const auto isBeaten = [&](int above, int upTo, const auto& period) {
            return std::ranges::any_of(all, [&](Date other) {
                return isIn(other, above, upTo) && other > date && period(other) == period(date);
            });
        };
        if (isIn(date, 1, 30))
            return isBeaten(1, 30, localDay);
        if (isIn(date, 30, 84))
            return isBeaten(30, 84, [this](Date each) { return week(each); });
        return now - date > days{84};
    }
    std::vector<Date> prune(const std::vector<Date>& all, Date now) const {
        std::vector<Date> pruned;
        std::ranges::copy_if(all, std::back_inserter(pruned), [&](Date each) { return isPruned(each, all, now); });
        return pruned;
    }

    int firstWeekday; // Sunday is 0
};

TEST(BackupRetention, keepsWhatTheRuleSaysInAllZones) {
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        {"UTC", "en_US", 0, "2026-01-15T12:00:00Z"},
        {"Europe/Berlin", "de_DE", 1, "2026-04-10T22:30:00Z"},       // 23 hours on March 29
        {"America/New_York", "en_US", 0, "2026-11-20T05:00:00Z"},    // 25 hours on November 1
        {"America/Sao_Paulo", "pt_BR", 0, "2018-12-01T01:00:00Z"},   // no midnight on November 4
        {"Pacific/Chatham", "en_NZ", 1, "2026-05-01T11:15:00Z"},     // quarters of an hour
        {"Pacific/Apia", "ar_EG", 6, "2012-01-20T10:00:00Z"},        // no December 30 at all; weeks from Saturday
        {"Asia/Kathmandu", "en_US", 0, "2024-03-31T18:15:00Z"},      // a leap day
        {"Australia/Lord_Howe", "en_AU", 1, "2026-01-03T12:00:00Z"}, // half an hour; the turn of the year
    };
    for (const auto& [zone, locale, firstWeekday, instant] : cases) {
        SCOPED_TRACE(zone);
        const ScopedEnvironment localZone("TZ", zone);
        tzset();
        const Calendar calendar(zone, locale);
        const Date now = parseISO8601(instant).value();
        const Oracle oracle{firstWeekday};
        // Up to 90 days back and, as after a clock that was set back, two days ahead; half of them close to others.
        const auto ages =
            rc::gen::oneOf(rc::gen::inRange(-2 * 86'400, 90 * 86'400),
                           rc::gen::map(rc::gen::inRange(-200, 4'200), [](int n) { return n * 1'800; }),
                           rc::gen::element(0, 86'399, 86'400, 86'401, 2'592'000, 2'592'001, 7'257'600, 7'257'601));
        EXPECT_TRUE(rc::check([&] {
            std::vector<Date> dates;
            for (const int age : *rc::gen::container<std::vector<int>>(ages))
                dates.push_back(now - seconds{age});
            RC_ASSERT(datesToPrune(dates, now, calendar) == oracle.prune(dates, now));
        }));
    }
    tzset();
}

} // namespace
} // namespace quillorn
