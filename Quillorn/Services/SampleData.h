#pragma once

#include "Platform/Date.h"

#include <string>
#include <string_view>

namespace quillorn {

class Calendar;

/// The text of an export with all its dates moved by as many whole days as bring the last thing that happened close
/// before `now`. Dates of the text are taken as wall-clock times of the calendar, so that a day's work is one
/// everywhere. Throws JsonError for what is no JSON; what is no record stays as it is, for the import to refuse.
std::string exportMovedTo(Date now, const Calendar& calendar, std::string_view text);

} // namespace quillorn
