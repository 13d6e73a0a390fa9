#include "Platform/Calendar.h"

#include "Platform/DateFormats.h"
#include "Platform/ZoneRules.h"

#include <algorithm>
#include <atomic>
#include <mutex>
#include <vector>

namespace quillorn {

namespace {

using namespace std::chrono;

using LocalTime = local_time<Date::duration>;

// The days that the calendar speaks of; instants outside count as the nearest one inside. One day of room at each
// end is for the zone's offset.
constexpr local_days firstDay{local_days{year{0} / January / 2}};
constexpr local_days lastDay{local_days{year{9999} / December / 30}};

bool isInRange(Date date) {
    return date >= Date{firstDay.time_since_epoch()} && date < Date{(lastDay + days{1}).time_since_epoch()};
}

/// The clocks of one zone; all of an answer is read from the same.
struct WallClock {
    LocalTime toLocal(Date date) const {
        const Date inside = std::clamp(date, Date{firstDay.time_since_epoch()},
                                       Date{(lastDay + days{1}).time_since_epoch()} - Date::duration{1});
        return LocalTime{inside.time_since_epoch()} + zone.offsetAt(floor<seconds>(inside));
    }

    local_days day(Date date) const { return floor<days>(toLocal(date)); }

    /// A skipped time moves forward by the length of the gap; of a repeated one the first is meant.
    Date toDate(LocalTime time) const { return Date{time.time_since_epoch()} - zone.read(floor<seconds>(time)).offset; }

    Date startOf(local_days day) const {
        const ZoneRules::Reading midnight = zone.read(day);
        return midnight.skippedAt ? Date{*midnight.skippedAt} : toDate(day);
    }

    Date addDays(Date date, int dayCount) const {
        const LocalTime time = toLocal(date);
        const local_days day = floor<days>(time);
        const std::int64_t target = std::int64_t{day.time_since_epoch().count()} + dayCount;
        const std::int64_t inside =
            std::clamp<std::int64_t>(target, firstDay.time_since_epoch().count(), lastDay.time_since_epoch().count());
        return toDate(local_days{days{inside}} + (time - day));
    }

    const ZoneRules& zone;
};

} // namespace

struct Calendar::State {
    State(std::string_view timeZone, std::string_view locale) : formats(locale) { setTimeZone(timeZone); }

    void setTimeZone(std::string_view name) {
        const std::lock_guard lock(mutex);
        auto known = std::ranges::find(zones, name, [](const auto& each) { return each->name(); });
        if (known == zones.end())
            known = zones.insert(known, std::make_unique<const ZoneRules>(name));
        zone = known->get();
    }
    WallClock clock() const { return {*zone}; }

    std::mutex mutex; // guards the next
    /// All that there were: whoever began with a former one may still read it.
    std::vector<std::unique_ptr<const ZoneRules>> zones;
    std::atomic<const ZoneRules*> zone;
    DateFormats formats;
};

Calendar::Calendar(std::string_view timeZone, std::string_view locale)
    : m_state(std::make_unique<State>(timeZone, locale)) {}
Calendar::~Calendar() = default;
Calendar::Calendar(Calendar&&) noexcept = default;
Calendar& Calendar::operator=(Calendar&&) noexcept = default;

const std::string& Calendar::timeZone() const {
    return m_state->clock().zone.name();
}

void Calendar::setTimeZone(std::string_view timeZone) {
    m_state->setTimeZone(timeZone);
}

year_month_day Calendar::day(Date date) const {
    return year_month_day{m_state->clock().day(date)};
}

bool Calendar::isSameDay(Date a, Date b) const {
    const WallClock clock = m_state->clock();
    return clock.day(a) == clock.day(b);
}

Date Calendar::startOfDay(Date date) const {
    const WallClock clock = m_state->clock();
    return clock.startOf(clock.day(date));
}

Date Calendar::endOfDay(Date date) const {
    const WallClock clock = m_state->clock();
    return isInRange(date) ? clock.addDays(clock.startOf(clock.day(date)), 1) - seconds{1} : date;
}

Date Calendar::addDays(Date date, int dayCount) const {
    return m_state->clock().addDays(date, dayCount);
}

Date Calendar::startOfISOWeek(Date date) const {
    const WallClock clock = m_state->clock();
    const local_days day = clock.day(date);
    return clock.startOf(day - days{weekday{day}.iso_encoding() - 1});
}

year_month_day Calendar::firstDayOfWeek(Date date) const {
    const local_days day = m_state->clock().day(date);
    return year_month_day{day - (weekday{day} - m_state->formats.firstWeekday())};
}

Date Calendar::instant(local_seconds time) const {
    return m_state->clock().toDate(std::clamp(time, local_seconds{firstDay}, local_seconds{lastDay}));
}

std::string Calendar::format(Date date, std::string_view pattern) const {
    return m_state->formats.format(floor<seconds>(m_state->clock().toLocal(date)), pattern);
}

std::string Calendar::mediumDate(Date date) const {
    return m_state->formats.mediumDate(floor<seconds>(m_state->clock().toLocal(date)));
}

std::string Calendar::abbreviatedDate(Date date) const {
    return m_state->formats.formatFields(floor<seconds>(m_state->clock().toLocal(date)), "yMMMd");
}

std::string Calendar::abbreviatedDateAndTime(Date date) const {
    return m_state->formats.formatFields(floor<seconds>(m_state->clock().toLocal(date)), "yMMMdjmm");
}

} // namespace quillorn
