#pragma once

#include "Platform/Json.h"
#include "Views/TimeReport.h"

#include <string>

namespace quillorn {

/// "1.50", in every locale.
std::string decimalHours(double seconds);

/// For spreadsheets: lines that end in CR LF, the first of which is "title,entries,seconds,hours". What a spreadsheet
/// would take for a formula gets an apostrophe in front.
std::string reportCSV(const TimeReport& report);
Json reportJson(const TimeReport& report);
/// A page of its own, with a table that mail programs take over.
std::string timeReportHTML(const TimeReport& report, const Calendar& calendar);

} // namespace quillorn
