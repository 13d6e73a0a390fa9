#include "CLI/Output.h"
#include "CLI/StoreWork.h"
#include "CLI/Table.h"
#include "CLI/TimeCommands.h"
#include "CLI/Words.h"
#include "Models/Client.h"
#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Platform/Calendar.h"
#include "Records/RecordChoice.h"
#include "Views/TimeReport.h"
#include "Views/TimeReportTexts.h"

#include <algorithm>
#include <cstdio>
#include <fmt/core.h>
#include <stdexcept>

namespace quillorn {

namespace {

std::chrono::local_days requireDay(const std::string& text, const StoreWork& work) {
    const When when = requireWhen(text, work.now, work.calendar());
    if (!when.day || when.hasTime())
        throw std::runtime_error(fmt::format("\"{}\" is no day", text));
    return *when.day;
}

/// This month so far, unless the options say otherwise.
TimeReportRequest requestOf(const ReportOptions& options, StoreWork& work) {
    const std::chrono::year_month_day today = work.calendar().day(work.now);
    TimeReportRequest request{.from = std::chrono::local_days{today.year() / today.month() / 1},
                              .to = std::chrono::local_days{today}};
    if (options.to)
        request.to = requireDay(*options.to, work);
    if (options.from)
        request.from = requireDay(*options.from, work);
    if (request.to < request.from)
        throw std::runtime_error("--to lies before --from");
    if (options.client)
        request.client = chooseClient(work.context, *options.client, work.text()).id();
    if (options.project)
        request.project = chooseProject(work.context, *options.project, work.text()).id();
    request.by = static_cast<TimeReportGrouping>(std::ranges::find(timeReportGroupings, options.by) -
                                                 timeReportGroupings.begin());
    request.rounding = std::chrono::minutes{options.rounding};
    return request;
}

void printTable(const TimeReport& report) {
    using enum Table::Column::Align;
    using enum Table::Column::Cut;
    Table table({{""}, {"What", left, ifNarrow}, {"Entries", right}, {"Time", right}, {"Hours", right}});
    for (const TimeReport::Row& row : report.rows)
        table.add({{row.key, ""},
                   row.title,
                   fmt::format("{}", row.entries),
                   {fmt::format("{:.0f}", row.seconds), hoursAndMinutes(row.seconds)},
                   decimalHours(row.seconds)});
    if (isForPeople())
        table.add({{"", ""},
                   {"Total", Paint::bold},
                   {fmt::format("{}", report.entries), Paint::bold},
                   {hoursAndMinutes(report.totalSeconds), Paint::bold},
                   {decimalHours(report.totalSeconds), Paint::bold}});
    table.print();
}

} // namespace

ExitStatus reportTime(const ReportOptions& options, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        const TimeReportRequest request = requestOf(options, work);
        const TimeReport report = timeReport(reportedTimes(work.context, request, work.calendar()), request, work.now,
                                             work.calendar(), work.text());
        const auto put = [](const std::string& text) { (void)std::fwrite(text.data(), 1, text.size(), stdout); };
        switch (options.form) {
        case ReportOptions::Form::csv:
            put(reportCSV(report));
            break;
        case ReportOptions::Form::html:
            put(timeReportHTML(report, work.calendar()));
            break;
        case ReportOptions::Form::json:
            printJson(reportJson(report));
            break;
        case ReportOptions::Form::table:
            printTable(report);
        }
        return ExitStatus::success;
    });
}

} // namespace quillorn
