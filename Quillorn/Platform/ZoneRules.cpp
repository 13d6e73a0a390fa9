#include "Platform/ZoneRules.h"

#include "Platform/Calendar.h"

#include <cstdlib>
#include <date/tz.h>
#include <stdexcept>

namespace quillorn {

namespace {

using namespace std::chrono;

// Zone files list the changes one by one up to 2037 and leave later ones to a rule that the library does not read.
constexpr sys_seconds endOfList = sys_days{year{2038} / January / 1};

/// How far to go back from a day after the list to one within it to which the same yearly rule applies: as far in its
/// year, counted from March, and on the same weekday. (No zone changes its clocks by rule in January or February.)
days distanceIntoList(sys_days day) {
    const year wanted = year_month_day{day}.year();
    const sys_days marchOfWanted = wanted / March / 1;
    for (year candidate{2037};; --candidate) {
        const sys_days march = candidate / March / 1;
        if (weekday{march} == weekday{marchOfWanted})
            return marchOfWanted - march;
    }
}

date::local_seconds libraryTime(local_seconds time) {
    return date::local_seconds{time.time_since_epoch()};
}

} // namespace

ZoneRules::ZoneRules(std::string_view name) : m_name(name) {
    try {
        m_zone = date::locate_zone(m_name);
    } catch (const std::exception&) {
        if (m_name != "UTC") // which a system without zone files has too
            throw std::runtime_error("Unknown time zone " + m_name);
    }
}

seconds ZoneRules::offsetAt(sys_seconds time) const {
    if (m_zone == nullptr)
        return seconds{0};
    date::sys_info info = m_zone->get_info(time);
    if (time >= endOfList && info.begin < endOfList)
        info = m_zone->get_info(time - distanceIntoList(floor<days>(time)));
    return info.offset;
}

ZoneRules::Reading ZoneRules::read(local_seconds time) const {
    if (m_zone == nullptr)
        return {seconds{0}, std::nullopt};
    date::local_info info = m_zone->get_info(libraryTime(time));
    days distance{0};
    const sys_seconds asUTC{time.time_since_epoch()};
    if (asUTC >= endOfList && info.first.begin < endOfList) {
        distance = distanceIntoList(floor<days>(asUTC));
        info = m_zone->get_info(libraryTime(time - distance));
    }
    if (info.result == date::local_info::nonexistent)
        return {info.first.offset, info.first.end + distance};
    return {info.first.offset, std::nullopt};
}

std::string currentTimeZone() {
    const auto isKnown = [](std::string_view name) {
        try {
            return !name.empty() && date::locate_zone(std::string(name)) != nullptr;
        } catch (const std::exception&) {
            return false;
        }
    };
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    if (const char* value = std::getenv("TZ")) {
        std::string_view name = value;
        if (name.empty())
            return "UTC"; // POSIX leaves it open, and every C library does this
        if (name.starts_with(':'))
            name.remove_prefix(1);
        constexpr std::string_view folder = "/usr/share/zoneinfo/";
        if (name.starts_with(folder))
            name.remove_prefix(folder.size());
        if (isKnown(name))
            return std::string(name);
    }
    try {
        return date::current_zone()->name();
    } catch (const std::exception&) {
        return "UTC";
    }
}

} // namespace quillorn
