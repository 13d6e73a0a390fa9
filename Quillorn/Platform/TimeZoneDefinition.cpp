#include "Platform/TimeZoneDefinition.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>
#include <utility>

namespace quillorn {

namespace {

using namespace std::chrono;

/// More changes of clocks than any zone has known; what a file says beyond is not looked at.
constexpr std::size_t maximumChanges = 500;

std::optional<int> parseNumber(std::string_view text) {
    int number = 0;
    if (text.starts_with('+'))
        text.remove_prefix(1);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

/// All digits, as from_chars alone would not ask for.
std::optional<unsigned> parseDigits(std::string_view text) {
    unsigned number = 0;
    for (const char digit : text) {
        if (digit < '0' || digit > '9')
            return std::nullopt;
        number = number * 10 + static_cast<unsigned>(digit - '0');
    }
    return number;
}

/// "+0100", "-033000".
std::optional<seconds> parseOffset(std::string_view text) {
    if ((text.size() != 5 && text.size() != 7) || (text[0] != '+' && text[0] != '-'))
        return std::nullopt;
    const auto hour = parseDigits(text.substr(1, 2));
    const auto minute = parseDigits(text.substr(3, 2));
    const auto second = parseDigits(text.substr(5));
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    const seconds length = hours{*hour} + minutes{*minute} + seconds{*second};
    return text[0] == '-' ? -length : length;
}

std::optional<weekday> parseWeekday(std::string_view text) {
    constexpr std::array names{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    for (unsigned i = 0; i < names.size(); ++i)
        if (equalsIgnoringCase(text, names.at(i)))
            return weekday{i};
    return std::nullopt;
}

year yearOf(local_seconds time) {
    return year_month_day{floor<days>(time)}.year();
}

template <typename Handle>
void forEachPart(std::string_view text, char separator, const Handle& handle) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        handle(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::optional<ZoneRules> systemZone(const std::string& name) {
    try {
        return ZoneRules(name);
    } catch (const std::runtime_error&) {
        return std::nullopt;
    }
}

/// The system's zone of that name; makers of calendars also put their own in front: "/maker/version/Europe/Berlin".
std::optional<ZoneRules> findSystemZone(std::string name) {
    std::optional<ZoneRules> found = systemZone(name);
    while (!found && name.starts_with('/')) {
        name.erase(0, 1);
        found = systemZone(name);
        name.erase(0, std::min(name.find('/'), name.size()));
    }
    return found;
}

} // namespace

std::optional<CalendarTime> parseCalendarTime(std::string_view text) {
    const bool isUTC = text.ends_with('Z') || text.ends_with('z');
    if (isUTC)
        text.remove_suffix(1);
    const bool hasTime = text.size() == 15 && (text[8] == 'T' || text[8] == 't');
    if (text.size() != 8 && !hasTime)
        return std::nullopt;
    const auto yearNumber = parseDigits(text.substr(0, 4));
    const auto monthNumber = parseDigits(text.substr(4, 2));
    const auto dayNumber = parseDigits(text.substr(6, 2));
    if (!yearNumber || !monthNumber || !dayNumber)
        return std::nullopt;
    const year_month_day date{year{static_cast<int>(*yearNumber)}, month{*monthNumber}, day{*dayNumber}};
    if (!date.ok())
        return std::nullopt;
    CalendarTime result{local_days{date}, isUTC && hasTime};
    if (!hasTime)
        return result;
    const auto hour = parseDigits(text.substr(9, 2));
    const auto minute = parseDigits(text.substr(11, 2));
    const auto second = parseDigits(text.substr(13, 2));
    if (!hour || !minute || !second || *hour > 23 || *minute > 59 || *second > 60)
        return std::nullopt;
    result.time += hours{*hour} + minutes{*minute} + seconds{std::min(*second, 59U)};
    return result;
}

void TimeZoneDefinition::take(const ContentLine& line) {
    if (m_observances.empty())
        return;
    Observance& observance = m_observances.back();
    if (line.isName("DTSTART")) {
        if (const auto time = parseCalendarTime(line.value))
            observance.start = time->time;
    } else if (line.isName("TZOFFSETFROM")) {
        observance.offsetFrom = parseOffset(line.value);
    } else if (line.isName("TZOFFSETTO")) {
        observance.offsetTo = parseOffset(line.value);
    } else if (line.isName("RRULE")) {
        observance.takeRule(line.value);
    } else if (line.isName("RDATE")) {
        forEachPart(line.value, ',', [&](std::string_view date) {
            const auto time = parseCalendarTime(date);
            if (time && observance.dates.size() < maximumChanges)
                observance.dates.push_back(time->time);
        });
    }
}

void TimeZoneDefinition::Observance::takeRule(std::string_view rule) {
    isYearly = true;
    forEachPart(rule, ';', [&](std::string_view part) {
        const std::size_t equals = std::min(part.find('='), part.size());
        takeRulePart(part.substr(0, equals), part.substr(std::min(equals + 1, part.size())));
    });
}

/// Parts that zones are not defined with leave the rule out: the time of its start remains.
void TimeZoneDefinition::Observance::takeRulePart(std::string_view name, std::string_view value) {
    if (equalsIgnoringCase(name, "FREQ")) {
        isYearly &= equalsIgnoringCase(value, "YEARLY");
    } else if (equalsIgnoringCase(name, "INTERVAL")) {
        isYearly &= value == "1";
    } else if (equalsIgnoringCase(name, "WKST")) {
        return; // of no consequence
    } else if (equalsIgnoringCase(name, "BYMONTH")) {
        const auto number = parseNumber(value);
        isYearly &= number && *number >= 1 && *number <= 12;
        month = isYearly ? static_cast<unsigned>(*number) : 0;
    } else if (equalsIgnoringCase(name, "BYDAY")) {
        const std::string_view count = value.substr(0, value.size() - std::min<std::size_t>(value.size(), 2));
        weekday = parseWeekday(value.substr(count.size()));
        const auto number = count.empty() ? std::optional(0) : parseNumber(count);
        isYearly &= weekday && number && *number >= -5 && *number <= 5;
        nth = number.value_or(0);
    } else if (equalsIgnoringCase(name, "BYMONTHDAY")) {
        const auto number = parseNumber(value.substr(0, value.find(','))); // the first of the week that it lists
        isYearly &= number && *number >= 1 && *number <= 31;
        dayOfMonth = isYearly ? static_cast<unsigned>(*number) : 0;
    } else if (equalsIgnoringCase(name, "UNTIL")) {
        if (const auto time = parseCalendarTime(value))
            until = time->time + (time->isUTC ? offsetFrom.value_or(seconds{0}) : seconds{0});
    } else {
        isYearly = false;
    }
}

std::optional<local_seconds> TimeZoneDefinition::Observance::onsetOf(std::chrono::year year) const {
    const auto startDay = floor<days>(*start);
    const year_month_day first{startDay};
    const year_month inYear = year / (month != 0 ? std::chrono::month{month} : first.month());
    local_days day{};
    if (weekday && nth > 0)
        day = local_days{inYear / (*weekday)[static_cast<unsigned>(nth)]};
    else if (weekday && nth < 0)
        day = local_days{inYear / (*weekday)[last]} - days{7 * (-nth - 1)};
    else if (weekday) {
        const local_days from{inYear / std::chrono::day{std::max(dayOfMonth, 1U)}};
        day = from + (*weekday - std::chrono::weekday{from});
    } else
        day = local_days{inYear / (dayOfMonth != 0 ? std::chrono::day{dayOfMonth} : first.day())};
    return day + (*start - startDay);
}

std::optional<local_seconds> TimeZoneDefinition::Observance::lastOnset(local_seconds time) const {
    std::optional<local_seconds> found;
    const auto consider = [&](local_seconds onset) {
        if (onset <= time && onset >= *start && (!found || onset > *found))
            found = onset;
    };
    consider(*start);
    for (const local_seconds date : dates)
        consider(date);
    if (!isYearly || time < *start)
        return found;
    const year from = yearOf(until ? std::min(time, *until) : time);
    for (const year candidate : {from, from - years{1}})
        if (const auto onset = onsetOf(candidate); onset && (!until || *onset <= *until))
            consider(*onset);
    return found;
}

std::optional<seconds> TimeZoneDefinition::offsetAt(local_seconds time) const {
    const Observance* current = nullptr;
    const Observance* earliest = nullptr;
    local_seconds onset{};
    std::size_t looked = 0;
    for (const Observance& each : m_observances) {
        looked += 1 + each.dates.size();
        if (looked > maximumChanges)
            break;
        if (!each.start || !each.offsetFrom || !each.offsetTo)
            continue;
        if (earliest == nullptr || *each.start < *earliest->start)
            earliest = &each;
        const auto last = each.lastOnset(time);
        if (last && (current == nullptr || *last > onset)) {
            current = &each;
            onset = *last;
        }
    }
    if (current == nullptr)
        return earliest != nullptr ? earliest->offsetFrom : std::nullopt;
    // Clocks skip the times right behind the onset when they go forward.
    const bool isSkipped = time < onset + (*current->offsetTo - *current->offsetFrom);
    return isSkipped ? current->offsetFrom : current->offsetTo;
}

void TimeZoneDefinitions::begin(std::string_view component) {
    if (component == "VTIMEZONE") {
        m_zone = {};
        m_name.clear();
    }
    m_isInObservance = component == "STANDARD" || component == "DAYLIGHT";
    if (m_isInObservance)
        m_zone.rules.beginObservance();
}

void TimeZoneDefinitions::take(const ContentLine& line) {
    if (m_isInObservance)
        m_zone.rules.take(line);
    else if (line.isName("TZID"))
        m_name = line.value;
    else if (line.isName("X-LIC-LOCATION"))
        m_zone.location = line.value;
}

void TimeZoneDefinitions::end(std::string_view component) {
    m_isInObservance = false;
    if (component == "VTIMEZONE")
        m_zones.insert_or_assign(m_name, std::move(m_zone));
}

Date TimeZoneDefinitions::instant(const CalendarTime& time, const std::string& zone) const {
    const sys_seconds asUTC{time.time.time_since_epoch()};
    if (time.isUTC)
        return asUTC;
    std::optional<ZoneRules> system;
    if (!zone.empty())
        system = findSystemZone(zone);
    const auto defined = m_zones.find(zone);
    const bool isDefined = !zone.empty() && defined != m_zones.end();
    if (!system && isDefined && !defined->second.location.empty())
        system = findSystemZone(defined->second.location);
    if (!system && isDefined)
        if (const auto offset = defined->second.rules.offsetAt(time.time))
            return asUTC - *offset;
    return asUTC - (system ? *system : m_userZone).read(time.time).offset;
}

} // namespace quillorn
