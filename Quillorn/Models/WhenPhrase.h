#pragma once

#include "Platform/Date.h"

#include <chrono>
#include <optional>
#include <string_view>

namespace quillorn {

class Calendar;
class PhraseReader;

/// A moment as people write it: a day, a time of day, or both.
struct When {
    std::optional<std::chrono::local_days> day{};
    std::optional<std::chrono::seconds> time{};
    /// Where the zone was given as well.
    std::optional<Date> instant{};

    bool hasTime() const { return time || instant; }
    /// The start of the day where no time was given, today's time of day where no day was.
    Date date(Date now, const Calendar& calendar) const;
    /// The same, but a time of day is the next one that is not over.
    Date nextDate(Date now, const Calendar& calendar) const;
};

/// The text as a whole: a phrase for a day (see dayPhraseAt, and "yesterday"), "2026-01-31T09:05" with or without
/// seconds and zone, a time ("15:00", "3pm"), a day and a time, or "now". Absent for everything else.
std::optional<When> readWhen(std::string_view text, Date now, const Calendar& calendar);

// Its pieces, for texts that say more.

/// A phrase for a day, the word that leads to it ("by friday") and the time behind it, at the end of a word.
std::optional<When> takeDay(PhraseReader& reader, Date now, const Calendar& calendar);
/// "at" and a time.
std::optional<std::chrono::seconds> takeAt(PhraseReader& reader);
/// Whether a word may end where `rest` begins: "tomorrow." does, "tomorrow's" does not.
bool endsWord(std::string_view rest);

} // namespace quillorn
