#pragma once

#include "Models/TaskNames.h"

#include <string_view>

namespace quillorn {

class Calendar;
class Text;

/// Understands "Call Bob tomorrow 15:00, high priority #phone @Acme" by fixed rules. The first date, the first priority
/// and the first project count, and every tag; what was understood leaves the title. Names that are not on offer stay
/// in it, as does all else. Where nothing would be left, the sentence is the title.
ParsedTaskResult readTaskSentence(std::string_view sentence, const TaskNames& names, Date now, const Calendar& calendar,
                                  const Text& text);

} // namespace quillorn
