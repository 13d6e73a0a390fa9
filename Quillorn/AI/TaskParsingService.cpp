#include "AI/TaskParsingService.h"

#include "AI/JsonExtraction.h"
#include "AI/ToolArguments.h"
#include "Models/DayPhrase.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"

#include <algorithm>
#include <fmt/core.h>
#include <fmt/ranges.h>

namespace quillorn {

namespace {

constexpr std::chrono::seconds patience{30};

constexpr const char* task = "You are a task parser. Extract structured information from the user's natural language "
                             "task description.\n\nToday is: ";

constexpr const char* instruction =
    R"words(
Return ONLY a JSON object with these fields (use null for unmentioned fields):
{
  "title": "concise action item (required)",
  "description": "additional details if any (null if none)",
  "dueDate": "YYYY-MM-DD format only, e.g. '2026-02-11'. Calculate the exact date from today. (null if not mentioned)",
  "priority": "low" or "medium" or "high" or "urgent" (null if not mentioned),
  "project": "exact project name from the list above (null if not mentioned or no match)",
  "tags": ["exact tag names from the list above"]
}

Examples:

Input: "Call Bob about the invoice tomorrow, high priority"
{"title":"Call Bob about the invoice","description":null,"dueDate":"2026-02-11","priority":"high","project":null,"tags":[]}

Input: "Review PR #42 for the Quillorn project, tag it as bug"
{"title":"Review PR #42","description":null,"dueDate":null,"priority":null,"project":"Quillorn","tags":["bug"]}

Input: "Write unit tests for the login flow by next Friday, medium priority, needs to cover edge cases"
{"title":"Write unit tests for the login flow","description":"Needs to cover edge cases","dueDate":"2026-02-13","priority":"medium","project":null,"tags":[]}

Return ONLY the JSON object. No explanation, no markdown, no code fences.)words";

std::string promptFor(const TaskNames& names, Date now, const Calendar& calendar) {
    const auto offer = [](const char* kind, const std::vector<std::string>& all) {
        return all.empty() ? std::string() : fmt::format("\nAvailable {}: {}", kind, fmt::join(all, ", "));
    };
    return task + calendar.format(now, "EEEE, MMMM d, yyyy") + offer("projects", names.projects) +
           offer("tags", names.tags) + instruction;
}

std::optional<std::string> textOf(const Json& object, std::string_view key) {
    const Json* value = object.find(key);
    const std::string* text = value != nullptr ? value->asString() : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

/// Empty unless all of them are texts.
std::vector<std::string> textsOf(const Json& object, std::string_view key) {
    const Json* value = object.find(key);
    const Json::Array* list = value != nullptr ? value->asArray() : nullptr;
    std::vector<std::string> texts;
    if (list != nullptr && std::ranges::all_of(*list, [](const Json& each) { return each.asString() != nullptr; }))
        std::ranges::transform(*list, std::back_inserter(texts), [](const Json& each) { return *each.asString(); });
    return texts;
}

} // namespace

std::optional<ParsedTaskResult> readTaskAnswer(std::string_view answer, Date now, const Calendar& calendar) {
    const auto object = extractJsonObject(answer);
    auto title = object ? textOf(*object, "title") : std::nullopt;
    if (!title)
        return std::nullopt;
    ParsedTaskResult result;
    result.title = std::move(*title);
    result.description = textOf(*object, "description");
    result.projectName = textOf(*object, "project");
    result.tagNames = textsOf(*object, "tags");
    if (const auto day = dayNamed(textOf(*object, "dueDate").value_or(""), now, calendar))
        result.dueDate = calendar.instant(*day);
    if (const auto word = textOf(*object, "priority"))
        result.priority = ToolArguments({{"priority", trimWhitespaceAndNewlines(*word)}}).priority();
    return result;
}

TaskParsingService::TaskParsingService(HttpClient& client, SettingsStore& settings, const Clock& clock,
                                       const Calendar& calendar)
    : m_service(client, settings),
      m_clock(clock),
      m_calendar(calendar) {}

/// From the start of a request to its end, also where that is the end of the task.
class TaskParsingService::Parsing {
  public:
    explicit Parsing(TaskParsingService& service) : m_service(service) {
        m_service.m_isParsing = true;
        m_service.m_parseError.reset();
        m_service.m_observers.tell();
    }
    ~Parsing() {
        m_service.m_isParsing = false;
        m_service.m_observers.tell();
    }
    Parsing(const Parsing&) = delete;
    Parsing& operator=(const Parsing&) = delete;

  private:
    TaskParsingService& m_service;
};

Task<std::optional<ParsedTaskResult>> TaskParsingService::parse(std::string text, TaskNames names) {
    const Parsing parsing(*this);
    const Date now = m_clock.now();
    Json system = Json::Object{{"role", "system"}, {"content", promptFor(names, now, m_calendar)}};
    Json user = Json::Object{{"role", "user"}, {"content", std::move(text)}};
    Json::Array messages;
    messages.push_back(std::move(system));
    messages.push_back(std::move(user));
    std::optional<ParsedTaskResult> result;
    try {
        const std::string answer = co_await m_service.completeChat(std::move(messages), patience);
        result = readTaskAnswer(answer, now, m_calendar);
        if (!result)
            m_parseError = "Could not parse AI response";
    } catch (const std::exception& error) {
        m_parseError = error.what();
    }
    co_return result;
}

} // namespace quillorn
