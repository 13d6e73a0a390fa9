#include "CLI/Output.h"
#include "CLI/ReminderCommands.h"
#include "CLI/Session.h"
#include "CLI/Words.h"
#include "Platform/RunTask.h"
#include "Platform/Text.h"
#include "Reminders/ReminderIntents.h"
#include "Reminders/SiriReminderRules.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/ranges.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// By id, name or path, whatever the case and the accents.
UUID listNamed(const std::string& name, const ReminderIntents::Lists& lists, const Text& text) {
    const std::string wanted = text.folded(trimWhitespaceAndNewlines(name));
    std::vector<const QuillornReminderList*> found;
    for (const QuillornReminderList& list : lists) {
        const std::string path = SiriReminderRules::projectPath(list.name, list.clientName.value_or(""));
        if (list.id.string() == name || text.folded(list.name) == wanted || text.folded(path) == wanted)
            found.push_back(&list);
    }
    if (found.empty())
        throw std::runtime_error(fmt::format("there is no list \"{}\"", name));
    if (found.size() == 1)
        return found.front()->id;
    std::vector<std::string> choices;
    choices.reserve(found.size());
    for (const QuillornReminderList* each : found)
        choices.push_back(fmt::format("{}  {}", each->id.string(),
                                      SiriReminderRules::projectPath(each->name, each->clientName.value_or(""))));
    throw std::runtime_error(
        fmt::format("several lists are named \"{}\"; name one by its id:\n{}", name, fmt::join(choices, "\n")));
}

std::optional<DateComponents> dueOf(const std::optional<std::string>& text, const Calendar& calendar, Date now) {
    if (!text)
        return std::nullopt;
    const When when = requireWhen(*text, now, calendar);
    if (when.instant)
        return DateComponents::of(*when.instant, true, calendar);
    DateComponents components;
    if (when.day) {
        const std::chrono::year_month_day day{*when.day};
        components = {day.year(), day.month(), day.day(), {}, {}};
    }
    if (when.time) {
        components.hour = std::chrono::floor<std::chrono::hours>(*when.time);
        components.minute = std::chrono::floor<std::chrono::minutes>(*when.time - *components.hour);
    }
    return components;
}

void print(const SpokenResult& spoken, bool json) {
    if (json)
        printJson(Json::Object{{"sentence", spoken.sentence}, {"taskId", spoken.taskId.string()}});
    else
        fmt::print("{}\n", shown(spoken.sentence));
}

} // namespace

ExitStatus remind(const RemindOptions& options, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ReminderIntents& intents = session.app().reminderIntents();
    CreateReminderParameters parameters{.title = fmt::format("{}", fmt::join(options.words, " "))};
    if (options.list)
        parameters.list =
            listNamed(*options.list, runTask(session.mainQueue(), intents.suggestedLists()), session.text());
    parameters.note = options.note;
    parameters.isFlagged = options.isFlagged;
    parameters.tags = options.tags;
    parameters.urls = options.urls;
    parameters.dueDate = dueOf(options.due, session.calendar(), session.clock().now());
    print(runTask(session.mainQueue(), intents.create(std::move(parameters))), options.json);
    return ExitStatus::success;
}

ExitStatus updateReminder(const RemindOptions& options, const ProcessInfo& process) {
    const std::optional<UUID> target = UUID::parse(options.task);
    if (!target)
        throw std::runtime_error(fmt::format("\"{}\" is no task id", options.task));
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    ReminderIntents& intents = session.app().reminderIntents();
    UpdateReminderParameters parameters{.target = *target};
    if (options.list)
        parameters.list =
            listNamed(*options.list, runTask(session.mainQueue(), intents.suggestedLists()), session.text());
    parameters.title = options.title;
    parameters.note = options.note;
    if (!options.tags.empty())
        parameters.tags = options.tags;
    if (!options.urls.empty())
        parameters.urls = options.urls;
    parameters.dueDate = dueOf(options.due, session.calendar(), session.clock().now());
    parameters.isCompleted = options.isDone;
    parameters.isFlagged = options.isFlagged;
    print(runTask(session.mainQueue(), intents.update(std::move(parameters))), options.json);
    return ExitStatus::success;
}

} // namespace quillorn
