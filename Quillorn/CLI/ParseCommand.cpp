#include "AI/AIService.h"
#include "CLI/AICommands.h"
#include "CLI/Output.h"
#include "CLI/SentenceReading.h"
#include "CLI/Words.h"
#include "Models/TaskSentence.h"

#include <fmt/core.h>
#include <fmt/ranges.h>

namespace quillorn {

namespace {

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
    const std::string sentence = joined(options.words);
    const TaskNames names = TaskNames::of(session.app().mainContext(), session.text());
    const bool asksModel = !options.withoutAI && AIService::isConfigured(session.settings());
    const ParsedTaskResult result =
        asksModel ? readByModel(session, sentence, names)
                  : readTaskSentence(sentence, names, session.clock().now(), session.calendar(), session.text());
    if (options.json)
        printJson(jsonOf(result));
    else
        print(result, session.calendar());
    return ExitStatus::success;
}

} // namespace quillorn
