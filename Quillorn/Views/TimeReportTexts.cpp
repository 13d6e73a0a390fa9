#include "Views/TimeReportTexts.h"

#include "Models/Formatters.h"
#include "Platform/Calendar.h"

#include <cmath>
#include <cstdint>
#include <fmt/core.h>

namespace quillorn {

namespace {

std::int64_t wholeSeconds(double seconds) {
    return std::llround(seconds);
}

std::string csvCell(std::string_view text) {
    std::string cell;
    if (!text.empty() && std::string_view("=+-@\t\r").find(text.front()) != std::string_view::npos)
        cell += '\'';
    cell += text;
    if (cell.find_first_of(",\"\r\n") == std::string::npos)
        return cell;
    std::string quoted = "\"";
    for (const char character : cell)
        quoted += character == '"' ? "\"\"" : std::string(1, character);
    return quoted + '"';
}

std::string escaped(std::string_view text) {
    std::string result;
    for (const char character : text)
        if (character == '&')
            result += "&amp;";
        else if (character == '<')
            result += "&lt;";
        else if (character == '>')
            result += "&gt;";
        else
            result += character;
    return result;
}

std::string htmlRow(std::string_view tag, std::string_view title, std::string_view entries, std::string_view time,
                    std::string_view hours) {
    constexpr std::string_view right = " style=\"text-align:right;padding-left:24px\"";
    return fmt::format("<tr><{0} style=\"text-align:left\">{1}</{0}><{0}{5}>{2}</{0}><{0}{5}>{3}</{0}><{0}{5}>{4}</{0}>"
                       "</tr>\n",
                       tag, escaped(title), entries, time, hours, right);
}

std::string dayWords(std::chrono::local_days day, const Calendar& calendar) {
    return calendar.mediumDate(calendar.instant(day + std::chrono::hours{12}));
}

} // namespace

std::string decimalHours(double seconds) {
    return fmt::format("{:.2f}", seconds / 3600);
}

std::string reportCSV(const TimeReport& report) {
    std::string text = "title,entries,seconds,hours\r\n";
    for (const TimeReport::Row& row : report.rows)
        text += fmt::format("{},{},{},{}\r\n", csvCell(row.title), row.entries, wholeSeconds(row.seconds),
                            decimalHours(row.seconds));
    return text;
}

Json reportJson(const TimeReport& report) {
    Json::Array rows;
    for (const TimeReport::Row& row : report.rows)
        rows.emplace_back(Json::Object{{"key", row.key},
                                       {"title", row.title},
                                       {"seconds", row.seconds},
                                       {"entries", static_cast<std::int64_t>(row.entries)}});
    return Json::Object{{"from", isoDay(report.request.from)},
                        {"to", isoDay(report.request.to)},
                        {"by", timeReportGroupings[static_cast<std::size_t>(report.request.by)]},
                        {"totalSeconds", report.totalSeconds},
                        {"rows", std::move(rows)}};
}

std::string timeReportHTML(const TimeReport& report, const Calendar& calendar) {
    const std::string range =
        fmt::format("{} – {}", dayWords(report.request.from, calendar), dayWords(report.request.to, calendar));
    std::string text = fmt::format(
        "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Time, {0}</title></head>\n"
        "<body style=\"font-family:Calibri,Helvetica,Arial,sans-serif;font-size:11pt\">\n<h1 style=\"font-size:14pt\">"
        "Time, {0}</h1>\n<table style=\"border-collapse:collapse\">\n",
        escaped(range));
    text += htmlRow("th", "What", "Entries", "Time", "Hours");
    for (const TimeReport::Row& row : report.rows)
        text += htmlRow("td", row.title, fmt::format("{}", row.entries), hoursAndMinutes(row.seconds),
                        decimalHours(row.seconds));
    text += htmlRow("th", "Total", fmt::format("{}", report.entries), hoursAndMinutes(report.totalSeconds),
                    decimalHours(report.totalSeconds));
    return text + "</table>\n</body></html>\n";
}

} // namespace quillorn
