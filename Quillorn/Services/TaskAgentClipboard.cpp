#include "Services/TaskAgentClipboard.h"

#include "Models/Client.h"
#include "Models/Formatters.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Settings.h"
#include "Models/Tag.h"
#include "Platform/Json.h"
#include "Platform/Text.h"

#include <algorithm>
#include <fmt/core.h>
#include <vector>

namespace quillorn {

namespace {

constexpr std::size_t longestNote = 4000;

using Lines = std::vector<std::string>;

void add(Lines& lines, std::initializer_list<std::string_view> more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        if (!text.empty())
            text += '\n';
        text += line;
    }
    return text;
}

template <class Record>
std::string nameAndId(const Record* record) {
    return record == nullptr ? "—" : fmt::format("{} (`{}`)", record->name(), record->id().string());
}

/// Oldest first; of two of one moment the one that was made first.
template <class Record, class Key>
std::vector<const Record*> sorted(const List<Record>& list, const Key& key) {
    std::vector<const Record*> records(list.begin(), list.end());
    std::ranges::stable_sort(records, {}, key);
    return records;
}

void addTask(Lines& lines, const ProjectTask& task, Date now, const Calendar& calendar) {
    const auto date = [&](Date moment) { return smartDate(moment, now, calendar); };
    add(lines, {"## Task"});
    lines.push_back("- **Title:** " + task.title());
    lines.push_back(fmt::format("- **ID:** `{}`", task.id().string()));
    lines.push_back(fmt::format("- **Status:** {} ({})", label(task.status()), static_cast<int>(task.status())));
    lines.push_back(fmt::format("- **Priority:** {} ({})", label(task.priority()), static_cast<int>(task.priority())));
    if (task.dueDate())
        lines.push_back("- **Due:** " + date(*task.dueDate()) + (task.isOverdue(now) ? " (OVERDUE)" : ""));
    if (task.completedAt())
        lines.push_back("- **Completed:** " + date(*task.completedAt()));
    lines.push_back("- **Created:** " + date(task.createdAt()));
    lines.push_back("- **Updated:** " + date(task.updatedAt()));
    const Project* project = task.project();
    lines.push_back("- **Client:** " + nameAndId(project != nullptr ? project->client() : nullptr));
    lines.push_back("- **Project:** " + nameAndId(project));
    if (const ProjectTask* parent = task.parentTask())
        lines.push_back(fmt::format("- **Parent task:** {} (`{}`)", parent->title(), parent->id().string()));
    if (!task.tags().empty()) {
        std::string names;
        for (const Tag* tag : sorted(task.tags(), &Tag::name))
            names += (names.empty() ? "" : ", ") + tag->name();
        lines.push_back("- **Tags:** " + names);
    }
    if (const double seconds = task.totalTimeSpent(now); seconds > 0)
        lines.push_back("- **Time logged:** " + shortForm(seconds));
    const auto& title = task.sourceTitle();
    if (const auto& url = task.sourceURL(); url && !url->empty())
        lines.push_back(fmt::format("- **Source:** [{}]({})", title && !title->empty() ? *title : *url, *url));
    else if (title && !title->empty())
        lines.push_back("- **Source:** " + *title);
}

void addContent(Lines& lines, const ProjectTask& task, Date now, const Calendar& calendar) {
    const std::string description = task.taskDescription().value_or("");
    const std::string_view trimmed = trimWhitespaceAndNewlines(description);
    add(lines, {"", "## Description", trimmed.empty() ? "_(none)_" : trimmed});

    add(lines, {"", "## Notes / Comments"});
    for (const Note* note : sorted(task.notes(), &Note::createdAt)) {
        if (!note->title().empty())
            lines.push_back("### " + note->title());
        lines.push_back(fmt::format("- **Note ID:** `{}`", note->id().string()));
        lines.push_back("- **Updated:** " + smartDate(note->updatedAt(), now, calendar));
        const std::string_view content = trimWhitespaceAndNewlines(note->content());
        const std::string_view shown = characterPrefix(content, longestNote);
        lines.push_back(content.empty()
                            ? "_(empty)_"
                            : std::string(shown) + (shown.size() < content.size() ? "\n… _(truncated)_" : ""));
    }
    if (task.notes().empty())
        add(lines, {"_(none)_"});

    add(lines, {"", "## Subtasks"});
    const auto order = [](const ProjectTask* subtask) { return std::pair(subtask->sortOrder(), subtask->createdAt()); };
    for (const ProjectTask* subtask : sorted(task.subtasks(), order))
        lines.push_back(fmt::format("- [{}] {} — {} (`{}`)", subtask->isCompleted() ? 'x' : ' ', subtask->title(),
                                    label(subtask->status()), subtask->id().string()));
    if (task.subtasks().empty())
        add(lines, {"_(none)_"});
}

void addServer(Lines& lines, const APIConfig& config) {
    const std::string base = config.baseURL();
    add(lines, {"", "## Quillorn REST / MCP (current config)"});
    lines.push_back(std::string("- **Server:** ") +
                    (config.isRunning ? "Running" : "Not running — start in Quillorn Settings → HTTP Server"));
    lines.push_back("- **REST base:** " + base + "/api");
    lines.push_back("- **MCP endpoint:** " + base + "/mcp");
    lines.push_back("- **OpenAPI:** " + base + "/openapi.json");
    lines.push_back("- **Docs:** " + base + "/docs");
    lines.push_back(std::string("- **Bind:** ") + (config.isExternal ? "external (0.0.0.0)" : "localhost only"));
    if (config.authRequired())
        lines.push_back("- **Auth:** required — `Authorization: Bearer " + config.key + "`");
    else
        lines.emplace_back(config.key.empty()
                               ? "- **Auth:** none"
                               : "- **Auth:** not required for current settings (key is set but unused)");
    add(lines, {"", "### MCP config (Claude Code / compatible)", "```json"});
    lines.push_back(TaskAgentClipboard::briefSnippet(config));
    add(lines, {"```"});
}

void addRecipes(Lines& lines, const std::string& id, const APIConfig& config) {
    const std::string base = config.baseURL() + "/api";
    const std::string task = base + "/tasks/" + id;
    add(lines, {"", "### REST — this task", "```"});
    lines.push_back("GET    " + task);
    lines.push_back("PUT    " + task);
    lines.push_back("POST   " + task + "/complete");
    lines.push_back("POST   " + task + "/incomplete");
    lines.push_back("GET    " + task + "/time-entries");
    lines.push_back("POST   " + task + "/tags");
    lines.push_back(
        fmt::format(R"(POST   {}/notes          # body: {{ "title", "content", "taskId": "{}" }})", base, id));
    add(lines, {"```"});
    if (config.authRequired())
        lines.push_back("Include header: `Authorization: Bearer " + config.key + "`");
    add(lines, {""});
    lines.push_back("### MCP tools (use with taskId `" + id + "`)");
    add(lines,
        {"- `get_task` — fetch latest state",
         "- `update_task` — title, description, status, priority, due date, project",
         "- `complete_task` / `incomplete_task`", "- `add_task_comment` / `list_task_comments` — progress notes",
         "- `list_subtasks` / `add_subtask`", "- `add_tags_to_task` / `remove_tag_from_task`",
         "- `start_timer` / `stop_timer` / `log_time`", "- `create_note` — longer notes (optional task association)"});
    add(lines, {"", "---", "_Generated by Quillorn → Copy for Agent_"});
}

std::string snippet(const APIConfig& config, bool withKey) {
    const std::string headers =
        withKey
            ? ",\n      \"headers\": {\n        \"Authorization\": " + Json("Bearer " + config.key).text() + "\n      }"
            : "";
    return "{\n  \"mcpServers\": {\n    \"quillorn\": {\n      \"url\": \"" + config.baseURL() + "/mcp\"" + headers +
           "\n    }\n  }\n}";
}

} // namespace

APIConfig APIConfig::fromSettings(SettingsStore& store, std::string machineName, bool isRunning) {
    const Settings settings(store);
    return {
        .port = settings.integer(setting("apiPort")),
        .isRunning = isRunning,
        .isExternal = settings.boolean(setting("apiExternalAccess")),
        .requiresAuthLocal = settings.boolean(setting("apiRequireAuthLocal")),
        .key = settings.text(setting("apiAuthKey")),
        .machineName = std::move(machineName),
    };
}

std::string APIConfig::baseURL() const {
    return fmt::format("http://{}:{}", host(), port);
}

std::string TaskAgentClipboard::brief(const ProjectTask& task, const APIConfig& config, Date now,
                                      const Calendar& calendar) {
    Lines lines;
    add(lines, {"# Quillorn Task — Agent Brief", "",
                "You are working on this Quillorn task. Prefer the MCP tools when connected;",
                "otherwise use the REST API. Use the task ID for all updates. Add progress notes",
                "as you work, and mark the task complete (or update status) when finished.", ""});
    addTask(lines, task, now, calendar);
    addContent(lines, task, now, calendar);
    addServer(lines, config);
    addRecipes(lines, task.id().string(), config);
    return joined(lines);
}

std::string TaskAgentClipboard::briefSnippet(const APIConfig& config) {
    return snippet(config, config.authRequired());
}

std::string TaskAgentClipboard::settingsSnippet(const APIConfig& config) {
    return snippet(config, !config.key.empty());
}

std::string TaskAgentClipboard::clientConfig(std::string_view client, const APIConfig& config) {
    const std::string url = config.baseURL() + "/mcp";
    const std::string bearer = "Bearer " + config.key;
    if (client == "codex")
        return "[mcp_servers.quillorn]\nurl = " + Json(url).text() +
               (config.authRequired() ? "\nhttp_headers = { \"Authorization\" = " + Json(bearer).text() + " }" : "");
    Json::Object server{{client == "gemini-cli" ? "httpUrl" : "url", url}};
    if (client != "gemini-cli" && client != "cursor")
        server.emplace("type", "http");
    if (config.authRequired())
        server.emplace("headers", Json::Object{{"Authorization", bearer}});
    const char* list = client == "vscode" ? "servers" : "mcpServers";
    return Json(Json::Object{{list, Json::Object{{"quillorn", std::move(server)}}}}).text(Json::Style::pretty);
}

std::string_view TaskAgentClipboard::directive() {
    return "## Quillorn task tracking\n"
           "Track all work in Quillorn using the `quillorn` MCP server.\n"
           "- Client: `<CLIENT>` · Project: `<PROJECT>`. Look up IDs with `list_clients` / `list_projects`; never "
           "guess "
           "them.\n"
           "- Before starting any request, create a task for it with `create_task` in that project. Create the task "
           "FIRST.\n"
           "- Set it to `inProgress` when you begin. Use `add_subtask` for multi-step work.\n"
           "- Log brief, precise progress notes with `add_task_comment`.\n"
           "- When the work is done and verified, call `complete_task`. If blocked, add a comment saying why and leave "
           "it open.";
}

} // namespace quillorn
