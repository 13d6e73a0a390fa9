#pragma once

#include "Platform/Date.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string_view>

namespace quillorn {

class Calendar;

/// The words for a day at the beginning of a text.
struct DayPhrase {
    std::chrono::local_days day;
    /// Bytes of the text that say it.
    std::size_t length = 0;
};

/// Reads "today", "tomorrow", "in 2 weeks", "friday", "next friday", "end of (the) week", "next week" or "2026-02-11"
/// where `text` begins with it, case ignored, and whatever follows. A weekday is the next one that is not today.
std::optional<DayPhrase> dayPhraseAt(std::string_view text, Date now, const Calendar& calendar);

/// The day that a text names as a whole, as people and models write it. The words "in 2 weeks" may also stand among
/// others. Absent for everything else, impossible dates included.
std::optional<std::chrono::local_days> dayNamed(std::string_view text, Date now, const Calendar& calendar);

} // namespace quillorn
