#include "CLI/Output.h"
#include "CLI/ReminderCommands.h"
#include "CLI/ReminderSession.h"
#include "Models/Formatters.h"
#include "Models/Settings.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/ranges.h>

namespace quillorn {

namespace {

std::string relative(const std::optional<Date>& date, Date now) {
    return date ? relativeTime(*date, now) + " ago" : "Never";
}

Json dateOrNull(const std::optional<Date>& date) {
    return date ? Json(formatISO8601(*date)) : Json();
}

} // namespace

ExitStatus listReminderLists(bool json, const ProcessInfo& process) {
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    const std::vector<std::string> names = session.listNames();
    const std::vector<std::string> chosen = session.service().chosenLists();
    const std::vector<ReminderItem> open = session.run(session.service().openReminders(names));
    Json::Array rows;
    for (const std::string& name : names) {
        const bool isChosen = std::find(chosen.begin(), chosen.end(), name) != chosen.end();
        const auto count =
            std::count_if(open.begin(), open.end(), [&](const ReminderItem& item) { return item.listName == name; });
        if (json)
            rows.emplace_back(Json::Object{{"name", name}, {"open", std::int64_t{count}}, {"isChosen", isChosen}});
        else
            fmt::print("[{}] {:5}  {}\n", isChosen ? 'x' : ' ', count, shown(name));
    }
    if (json)
        printJson(std::move(rows));
    else if (names.empty())
        fmt::print("There are no lists\n");
    return ExitStatus::success;
}

ExitStatus chooseReminderLists(const std::vector<std::string>& names, const ProcessInfo& process) {
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    session.requireLists(names);
    Settings(session.session().settings())
        .set(setting("reminderImportLists"), Json(Json::Array(names.begin(), names.end())).text());
    return ExitStatus::success;
}

ExitStatus showReminderImport(bool json, const ProcessInfo& process) {
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ReminderImportService& service = session.service();
    session.run(service.refresh());
    const Date now = session.session().clock().now();
    const std::vector<std::string> lists = service.chosenLists();
    const std::vector<std::string> recent = service.recent();
    const std::optional<Date> next = service.nextRunDate();
    if (json) {
        printJson(Json::Object{{"lists", Json::Array(lists.begin(), lists.end())},
                               {"hasAccess", session.run(service.ensureAccess())},
                               {"isConfigured", AIService::isConfigured(session.session().settings())},
                               {"completesReminders", service.completesReminders()},
                               {"lastRunDate", dateOrNull(service.lastRunDate())},
                               {"lastResult", service.lastResult() ? Json(*service.lastResult()) : Json()},
                               {"nextRunDate", next ? dateOrNull(std::max(*next, now)) : Json()},
                               {"recent", Json::Array(recent.begin(), recent.end())},
                               {"skippedCount", static_cast<std::int64_t>(service.skippedCount())}});
        return ExitStatus::success;
    }
    fmt::print("Lists      {}\n", lists.empty() ? "none" : shown(fmt::format("{}", fmt::join(lists, ", "))));
    if (!AIService::isConfigured(session.session().settings()))
        fmt::print("           Set an AI endpoint and model first: aiEndpoint, aiModel\n");
    fmt::print("Last run   {}\n", relative(service.lastRunDate(), now));
    if (service.lastResult())
        fmt::print("           {}\n", shown(*service.lastResult()));
    if (next)
        fmt::print("Next run   {}\n", *next <= now ? "within a minute" : "in " + relativeTime(now, *next));
    if (const std::size_t count = service.skippedCount(); count > 0)
        fmt::print("           {} reviewed reminder{} won't be sent to the AI again unless edited.\n", count,
                   count == 1 ? "" : "s");
    for (const std::string& line : recent)
        fmt::print("Imported   {}\n", shown(line));
    return ExitStatus::success;
}

ExitStatus runReminderImport(bool json, const ProcessInfo& process) {
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ReminderImportService& service = session.service();
    const Observation progress = session.tellProgress();
    session.run(service.runImport());
    const std::string result = service.lastResult().value_or("");
    if (json)
        printJson(Json::Object{{"result", result}, {"hasProblems", service.hasProblems()}});
    else
        fmt::print("{}\n", shown(result));
    return service.hasProblems() ? ExitStatus::failure : ExitStatus::success;
}

ExitStatus recheckReminders(bool json, const ProcessInfo& process) {
    ImportSession session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    session.run(session.service().refresh());
    const std::size_t count = session.service().skippedCount();
    session.run(session.service().recheckSkipped());
    if (json)
        printJson(Json::Object{{"forgotten", static_cast<std::int64_t>(count)}});
    else
        fmt::print("{} reminder{} will be sent to the AI again on the next run\n", count, count == 1 ? "" : "s");
    return ExitStatus::success;
}

} // namespace quillorn
