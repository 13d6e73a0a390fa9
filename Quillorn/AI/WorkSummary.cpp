#include "AI/WorkSummary.h"

#include "AI/ToolExecutor.h"
#include "Platform/Calendar.h"

#include <fmt/core.h>

namespace quillorn {

const std::string_view summaryPrompt =
    "You write concise work summaries for a freelancer about a single client. You are given structured JSON describing "
    "the activity within a chosen date range. Produce a brief, scannable report using ONLY that data.\n\n"
    "Structure:\n"
    "- First line: the client name and the period's date range.\n"
    "- Second line: total time tracked in the period.\n"
    "- Then group work under its project. Bold the project name as a subheader, with bullets beneath. Lead each "
    "project "
    "with completed work, then in-progress work.\n"
    "- Each top-level bullet (\"- \") is one work item or theme. Beneath a bullet, add 1–2 sub-bullets — each on its "
    "own "
    "line prefixed with \"  ◦ \" — ONLY when a task's comments carry specifics worth keeping: a concrete outcome, a "
    "decision, a blocker, or a next step. Omit sub-bullets entirely when there is nothing beyond the headline.\n\n"
    "Rules:\n"
    "- Keep it scannable. Top-level bullets stay short; push detail into the sub-bullets rather than into longer "
    "sentences.\n"
    "- Merge genuinely duplicate items into one bullet, but do not collapse distinct work into a vague theme — keep "
    "the "
    "sub-bullet specifics that came from comments.\n"
    "- Plain past-tense, active phrasing (\"Built X\", \"Reviewed Y\"). No filler adjectives, no preamble, no "
    "sign-off.\n"
    "- Use only facts present in the data. Do not invent or pad. Omit any section with no data, and omit sub-bullets "
    "rather than padding them.\n"
    "- For in-progress work, include only tasks actually worked on in the period (time logged in the period, or status "
    "in progress) — do not dump the untouched backlog.\n"
    "- Comments are the main source of detail: weave them in as context for the work they relate to, don't just list "
    "note titles. A comment carries its task title — attribute it to that task and pull its specifics into the "
    "sub-bullets.\n"
    "- If there is genuinely no activity in the period, output a single short line stating there is no tracked work "
    "for "
    "this client in this period, and nothing else.";

namespace {

double secondsSince1970(Date date) {
    return static_cast<double>(date.time_since_epoch().count()) / 1e6;
}

std::string dayLabel(Date date, Date now, const Calendar& calendar) {
    const bool isOfThisYear = calendar.day(date).year() == calendar.day(now).year();
    return calendar.format(date, isOfThisYear ? "MMM d" : "MMM d, yyyy");
}

/// The last instant of the day.
Date lastOfDay(Date date, const Calendar& calendar) {
    return calendar.startOfDay(calendar.addDays(calendar.startOfDay(date), 1)) - std::chrono::microseconds{1};
}

} // namespace

std::string rangeLabel(const DayRange& range, Date now, const Calendar& calendar) {
    return fmt::format("{} – {}", dayLabel(range.start, now, calendar), dayLabel(range.end, now, calendar));
}

std::string summaryRequest(const ToolExecutor& tools, std::string_view name, const DayRange& range, Date now,
                           const Calendar& calendar) {
    const Json since = secondsSince1970(calendar.startOfDay(range.start));
    const std::string window =
        Json(Json::Object{{"since", since}, {"until", secondsSince1970(lastOfDay(range.end, calendar))}}).text();
    const std::string notes = Json(Json::Object{{"since", since}, {"withContent", true}}).text();
    return fmt::format("Client: {}\nPeriod: {}"
                       "\n\nCOMPLETED TASKS (in this period):\n{}"
                       "\n\nTIME TRACKED (in this period):\n{}"
                       "\n\nACTIVE / IN-PROGRESS TASKS:\n{}"
                       "\n\nNOTES & COMMENTS UPDATED IN THIS PERIOD (full text):\n{}"
                       "\n\nWrite the summary now.",
                       name, rangeLabel(range, now, calendar), tools.execute("get_recent_activity", window),
                       tools.execute("get_time_summary", window), tools.execute("list_tasks", "{}"),
                       tools.execute("list_notes", notes));
}

} // namespace quillorn
