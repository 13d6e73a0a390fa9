#include "Models/DayPhrase.h"

#include "Models/PhraseReader.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"

#include <array>

namespace quillorn {

namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::weekday;

constexpr std::array<std::string_view, 7> weekdayNames = {"sunday",   "monday", "tuesday", "wednesday",
                                                          "thursday", "friday", "saturday"};
constexpr int longestWait = 1'000'000; // days; more than fits a date of four digits

/// The days from `from` to the next `to`; 0 where they are the same.
days distance(weekday from, weekday to) {
    return to - from;
}

days atLeast(days shortest, days distance, days instead) {
    return distance < shortest ? instead : distance;
}

/// "in 3 days", "in 1 week".
std::optional<days> readWait(PhraseReader& reader) {
    if (!reader.take("in "))
        return std::nullopt;
    const std::optional<int> count = reader.takeNumber(longestWait);
    if (!count || !reader.take(" "))
        return std::nullopt;
    const int unit = reader.take("day") ? 1 : reader.take("week") ? 7 : 0;
    if (unit == 0)
        return std::nullopt;
    (void)reader.take("s");
    return days{*count} * unit;
}

std::optional<local_days> readISODay(PhraseReader& reader) {
    const auto year = reader.takeDigits(4, 4);
    const auto month = year && reader.take("-") ? reader.takeDigits(1, 2) : std::nullopt;
    const auto day = month && reader.take("-") ? reader.takeDigits(1, 2) : std::nullopt;
    if (!day || *year == 0)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{*year}, std::chrono::month{static_cast<unsigned>(*month)},
                                           std::chrono::day{static_cast<unsigned>(*day)}};
    return date.ok() ? std::optional(local_days{date}) : std::nullopt;
}

/// The days from today, for the phrases that are words.
std::optional<days> readWords(PhraseReader& reader, weekday today) {
    if (reader.take("today"))
        return days{0};
    if (reader.take("tomorrow"))
        return days{1};
    if (reader.take("end of week") || reader.take("end of the week"))
        return atLeast(days{1}, distance(today, std::chrono::Friday), days{1}); // of a Friday it is the Saturday
    if (reader.take("next week"))
        return atLeast(days{1}, distance(today, std::chrono::Monday), days{7});
    (void)reader.take("next ");
    for (unsigned day = 0; day < weekdayNames.size(); ++day)
        if (reader.take(weekdayNames[day]))
            return atLeast(days{1}, distance(today, weekday{day}), days{7});
    return std::nullopt;
}

bool isInRange(local_days day) {
    return std::chrono::year_month_day{day}.year() <= std::chrono::year{9999};
}

} // namespace

std::optional<DayPhrase> dayPhraseAt(std::string_view text, Date now, const Calendar& calendar) {
    const local_days today{calendar.day(now)};
    const auto phrase = [&](std::optional<local_days> day, const PhraseReader& reader) {
        return day && isInRange(*day) ? std::optional(DayPhrase{*day, reader.position()}) : std::nullopt;
    };
    if (PhraseReader reader(text); const auto wait = readWait(reader))
        return phrase(today + *wait, reader);
    if (PhraseReader reader(text); const auto distance = readWords(reader, weekday{today}))
        return phrase(today + *distance, reader);
    PhraseReader reader(text);
    return phrase(readISODay(reader), reader);
}

std::optional<local_days> dayNamed(std::string_view text, Date now, const Calendar& calendar) {
    text = trimWhitespaceAndNewlines(text);
    if (const auto phrase = dayPhraseAt(text, now, calendar); phrase && phrase->length == text.size())
        return phrase->day;
    for (std::size_t start = 0; start < text.size(); ++start) {
        PhraseReader reader(text.substr(start));
        const auto wait = readWait(reader);
        if (const local_days day = local_days{calendar.day(now)} + wait.value_or(days{0}); wait && isInRange(day))
            return day;
    }
    return std::nullopt;
}

} // namespace quillorn
