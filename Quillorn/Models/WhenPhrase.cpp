#include "Models/WhenPhrase.h"

#include "Models/DayPhrase.h"
#include "Models/PhraseReader.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"

#include <string>

namespace quillorn {

namespace {

using std::chrono::local_days;
using std::chrono::seconds;

constexpr std::string_view whiteSpace = " \t\r\n";
constexpr std::string_view wordEnds = ",.;:!?)]\"'";

/// "15:00", "3pm", "3:30 pm", at the end of a word.
std::optional<seconds> takeTime(PhraseReader& reader) {
    PhraseReader ahead = reader;
    const auto hour = ahead.takeDigits(1, 2);
    if (!hour)
        return std::nullopt;
    const bool hasMinutes = ahead.take(":");
    const auto minute = hasMinutes ? ahead.takeDigits(2, 2) : 0;
    PhraseReader suffix = ahead;
    suffix.takeBlanks();
    const bool isMorning = suffix.take("am");
    const bool hasSuffix = (isMorning || suffix.take("pm")) && endsWord(suffix.rest());
    if (hasSuffix)
        ahead = suffix;
    const bool isHour = hasSuffix ? *hour >= 1 && *hour <= 12 : hasMinutes && *hour <= 23;
    if (!isHour || !minute || *minute > 59 || !endsWord(ahead.rest()))
        return std::nullopt;
    reader = ahead;
    const int hourOfDay = hasSuffix ? *hour % 12 + (isMorning ? 0 : 12) : *hour;
    return std::chrono::hours{hourOfDay} + std::chrono::minutes{*minute};
}

/// The time that follows an ISO date behind its "T", with seconds and a zone where there are.
bool takeISOTime(PhraseReader& reader, std::string_view day, When& when) {
    PhraseReader ahead = reader;
    if (!ahead.take("t"))
        return false;
    const std::string_view rest = ahead.rest();
    std::string word(rest.substr(0, rest.find_first_of(whiteSpace)));
    word.resize(word.find_last_not_of(wordEnds) + 1);
    const std::size_t length = word.size();
    const auto hour = ahead.takeDigits(2, 2);
    const auto minute = hour && ahead.take(":") ? ahead.takeDigits(2, 2) : std::nullopt;
    const bool hasSeconds = minute && ahead.take(":");
    const auto second = hasSeconds ? ahead.takeDigits(2, 2) : 0;
    if (!minute || !second || *hour > 23 || *minute > 59 || *second > 59)
        return false;
    when.time = std::chrono::hours{*hour} + std::chrono::minutes{*minute} + seconds{*second};
    if (!endsWord(ahead.rest())) {
        constexpr std::size_t minuteEnd = 5;
        if (!hasSeconds)
            word.insert(minuteEnd, ":00");
        when.instant = parseISO8601(std::string(day) + "T" + word);
        if (!when.instant)
            return false;
        ahead = reader;
        ahead.skip(1 + length);
    }
    reader = ahead;
    return true;
}

} // namespace

bool endsWord(std::string_view rest) {
    const std::size_t behind = rest.find_first_not_of(wordEnds);
    return behind == std::string_view::npos || whiteSpace.find(rest[behind]) != std::string_view::npos;
}

std::optional<seconds> takeAt(PhraseReader& reader) {
    return reader.take("at") && reader.takeBlanks() > 0 ? takeTime(reader) : std::nullopt;
}

std::optional<When> takeDay(PhraseReader& reader, Date now, const Calendar& calendar) {
    for (const std::string_view word : {"due", "by", "on"})
        if (PhraseReader ahead = reader; ahead.take(word) && ahead.takeBlanks() > 0)
            reader = ahead;
    const std::string_view rest = reader.rest();
    const auto phrase = dayPhraseAt(rest, now, calendar);
    if (!phrase)
        return std::nullopt;
    reader.skip(phrase->length);
    When when{phrase->day, {}, {}};
    if (!takeISOTime(reader, rest.substr(0, phrase->length), when) && !endsWord(reader.rest()))
        return std::nullopt;
    if (PhraseReader ahead = reader; !when.time && ahead.takeBlanks() > 0) {
        PhraseReader plain = ahead;
        when.time = takeAt(ahead);
        if (!when.time) {
            ahead = plain;
            when.time = takeTime(ahead);
        }
        if (when.time)
            reader = ahead;
    }
    return when;
}

std::optional<When> readWhen(std::string_view text, Date now, const Calendar& calendar) {
    text = trimWhitespaceAndNewlines(text);
    const auto isWhole = [&](const PhraseReader& reader) { return reader.position() == text.size(); };
    PhraseReader reader(text);
    if (reader.take("now") && isWhole(reader))
        return When{.instant = now};
    reader = PhraseReader(text);
    if (auto when = takeDay(reader, now, calendar); when && isWhole(reader))
        return when;
    reader = PhraseReader(text);
    if (reader.take("yesterday")) {
        When when{.day = local_days{calendar.day(now)} - std::chrono::days{1}};
        if (isWhole(reader))
            return when;
        if (reader.takeBlanks() > 0)
            when.time = takeTime(reader);
        return when.time && isWhole(reader) ? std::optional(when) : std::nullopt;
    }
    reader = PhraseReader(text);
    auto time = takeAt(reader);
    if (!time) {
        reader = PhraseReader(text);
        time = takeTime(reader);
    }
    return time && isWhole(reader) ? std::optional(When{.time = time}) : std::nullopt;
}

Date When::date(Date now, const Calendar& calendar) const {
    if (instant)
        return *instant;
    return calendar.instant(day.value_or(local_days{calendar.day(now)}) + time.value_or(seconds{0}));
}

Date When::nextDate(Date now, const Calendar& calendar) const {
    const Date found = date(now, calendar);
    return instant || day || found >= now ? found : calendar.addDays(found, 1);
}

} // namespace quillorn
