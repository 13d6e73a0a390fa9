#pragma once

#include "Platform/Date.h"

#include <string>
#include <string_view>

namespace quillorn {

class Calendar;
class ToolExecutor;

/// A run of whole days; the dates lie somewhere in the first and in the last one.
struct DayRange {
    Date start;
    Date end;
};

/// "Nov 9 – Nov 15", with the year where it is not that of `now`.
std::string rangeLabel(const DayRange& range, Date now, const Calendar& calendar);

/// What the model is to make of the facts.
extern const std::string_view summaryPrompt;

/// The facts of those days about `name`, as the tools of the chat tell them.
std::string summaryRequest(const ToolExecutor& tools, std::string_view name, const DayRange& range, Date now,
                           const Calendar& calendar);

} // namespace quillorn
