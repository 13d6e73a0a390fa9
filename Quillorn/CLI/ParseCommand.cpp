#include "AI/AIEnvironment.h"
#include "AI/TaskParsingService.h"
#include "CLI/AICommands.h"
#include "CLI/Output.h"
#include "CLI/ProgressLine.h"
#include "CLI/Session.h"
#include "Models/TaskSentence.h"
#include "Platform/Leftovers.h"
#include "Platform/TerminationSignals.h"

#include <fmt/core.h>
#include <fmt/ranges.h>
#include <stdexcept>

namespace quillorn {

namespace {

/// What the model makes of the sentence. Throws std::runtime_error with the reason when it makes nothing of it.
ParsedTaskResult askModel(Session& session, const std::string& sentence, const TaskNames& names) {
    const AIEnvironment environment = session.app().aiEnvironment();
    TaskParsingService service(environment.httpClient, environment.settings, environment.clock, environment.calendar);
    std::optional<ParsedTaskResult> result;
    const auto ask = [](TaskParsingService& asked, std::string text, TaskNames offer,
                        std::optional<ParsedTaskResult>& into, RunLoop& until) -> Task<> {
        into = co_await asked.parse(std::move(text), std::move(offer));
        until.stop();
    };
    {
        const TerminationSignals signals(endBySignal);
        ProgressLine progress;
        progress.show("Parsing...");
        TaskScope scope;
        scope.start(ask(service, sentence, names, result, session.mainQueue()));
        session.mainQueue().run();
    }
    if (!result)
        throw std::runtime_error(service.parseError().value_or(""));
    keepNames(*result, names);
    return *result;
}

void print(const ParsedTaskResult& result, const Calendar& calendar) {
    const auto line = [](const char* name, const std::string& value) {
        if (!value.empty())
            fmt::print("{:<12} {}\n", name, shown(value));
    };
    line("Title", result.title);
    line("Description", result.description.value_or(""));
    if (result.dueDate)
        line("Due",
             calendar.format(*result.dueDate, result.dueHasTime ? "EEEE, yyyy-MM-dd HH:mm" : "EEEE, yyyy-MM-dd"));
    if (result.priority)
        line("Priority", std::string(label(*result.priority)));
    line("Project", result.projectName.value_or(""));
    line("Tags", fmt::format("{}", fmt::join(result.tagNames, ", ")));
}

Json jsonOf(const ParsedTaskResult& result) {
    const auto orNull = [](const std::optional<std::string>& text) { return text ? Json(*text) : Json(); };
    return Json::Object{
        {"title", result.title},
        {"description", orNull(result.description)},
        {"dueDate", result.dueDate ? Json(formatISO8601(*result.dueDate)) : Json()},
        {"dueHasTime", result.dueHasTime},
        {"priority", result.priority ? Json(static_cast<int>(*result.priority)) : Json()},
        {"project", orNull(result.projectName)},
        {"tags", Json::Array(result.tagNames.begin(), result.tagNames.end())},
    };
}

} // namespace

ExitStatus parseSentence(const ParseOptions& options, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    const std::string sentence = fmt::format("{}", fmt::join(options.words, " "));
    const TaskNames names = TaskNames::of(session.app().mainContext(), session.text());
    const bool asksModel = !options.withoutAI && AIService::isConfigured(session.settings());
    const ParsedTaskResult result =
        asksModel ? askModel(session, sentence, names)
                  : readTaskSentence(sentence, names, session.clock().now(), session.calendar(), session.text());
    if (options.json)
        printJson(jsonOf(result));
    else
        print(result, session.calendar());
    return ExitStatus::success;
}

} // namespace quillorn
