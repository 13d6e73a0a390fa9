#include "Views/LoggedTime.h"

#include "Models/PhraseReader.h"
#include "Models/WhenPhrase.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Views/TimeEntryRules.h"

#include <fmt/core.h>
#include <stdexcept>
#include <string>

namespace quillorn {

namespace {

using std::chrono::local_days;
using std::chrono::seconds;

constexpr int mostUnits = 10'000; // more than any duration that is taken

/// "1:30".
std::optional<seconds> takeClock(PhraseReader& reader) {
    const auto hours = reader.takeNumber(mostUnits);
    const auto minutes = hours && reader.take(":") ? reader.takeDigits(2, 2) : std::nullopt;
    if (!minutes || *minutes > 59)
        return std::nullopt;
    return std::chrono::hours{*hours} + std::chrono::minutes{*minutes};
}

/// "1h", "1.5h", "1h30m", "45m".
std::optional<seconds> takeUnits(PhraseReader& reader) {
    const auto number = reader.takeNumber(mostUnits);
    if (!number)
        return std::nullopt;
    if (reader.take(".") || reader.take(",")) {
        const std::string_view digits = reader.rest().substr(0, reader.rest().find_first_not_of("0123456789"));
        if (digits.empty() || digits.size() > 4)
            return std::nullopt;
        reader.skip(digits.size());
        const double hours = std::stod(fmt::format("{}.{}", *number, digits));
        return reader.take("h")
                   ? std::optional(std::chrono::round<seconds>(std::chrono::duration<double>(hours * 3600)))
                   : std::nullopt;
    }
    if (reader.take("m"))
        return std::chrono::minutes{*number};
    if (!reader.take("h"))
        return std::nullopt;
    seconds time = std::chrono::hours{*number};
    (void)reader.takeBlanks();
    if (const auto minutes = reader.takeNumber(mostUnits)) {
        (void)reader.take("m");
        time += std::chrono::minutes{*minutes};
    }
    return time;
}

/// A time of day, also as an hour alone.
seconds requireTime(std::string_view text, Date now, const Calendar& calendar) {
    text = trimWhitespaceAndNewlines(text);
    PhraseReader reader(text);
    const auto hour = reader.takeDigits(1, 2);
    if (hour && reader.rest().empty() && *hour <= 24)
        return std::chrono::hours{*hour};
    const auto when = readWhen(text, now, calendar);
    if (!when || !when->time || when->day || when->instant)
        throw std::runtime_error(fmt::format("\"{}\" is no time of day", text));
    return *when->time;
}

/// The place and the length of the dash between two times.
std::pair<std::size_t, std::size_t> dashIn(std::string_view text) {
    constexpr std::string_view longDash = "–";
    if (const std::size_t place = text.find(longDash); place != std::string_view::npos)
        return {place, longDash.size()};
    return {text.find('-'), 1};
}

LoggedTime timesOn(local_days day, seconds from, seconds to, const Calendar& calendar) {
    const Date start = calendar.instant(day + from);
    return {start, effectiveEnd(start, calendar.instant(day + to), calendar)};
}

} // namespace

std::optional<seconds> readDuration(std::string_view text) {
    text = trimWhitespaceAndNewlines(text);
    for (const auto take : {takeClock, takeUnits})
        if (PhraseReader reader(text); const auto time = take(reader))
            if (reader.rest().empty())
                return time;
    return std::nullopt;
}

LoggedTime readLoggedTime(std::string_view text, std::optional<local_days> day, Date now, const Calendar& calendar) {
    const local_days today{calendar.day(now)};
    LoggedTime time;
    if (const auto [dash, length] = dashIn(text); dash != std::string_view::npos) {
        time = timesOn(day.value_or(today), requireTime(text.substr(0, dash), now, calendar),
                       requireTime(text.substr(dash + length), now, calendar), calendar);
    } else {
        const auto duration = readDuration(text);
        if (!duration)
            throw std::runtime_error(
                fmt::format("\"{}\" is no time; 45m, 1h30m, 1:30, 1.5h or 9:00-10:30 would be one", text));
        time.end = calendar.addDays(now, static_cast<int>((day.value_or(today) - today).count()));
        time.start = time.end - *duration;
    }
    if (time.start == time.end)
        throw std::runtime_error(std::string(DurationLine::mustDiffer));
    if (time.end - time.start > std::chrono::hours{24})
        throw std::runtime_error("more than 24 hours can't be logged at once");
    return time;
}

} // namespace quillorn
