#include "Views/ActivityItem.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace quillorn {

namespace {

using ActivityKind = ActivityItem::Kind;

struct Look {
    std::string_view name;
    std::string_view idPrefix;
    std::string_view icon;
    std::string_view color;
};
constexpr std::array<Look, ActivityItem::kinds> looks = {{
    {"taskCompleted", "task-completed-", "checkmark.circle.fill", "green"},
    {"taskUpdated", "task-updated-", "pencil.circle.fill", "blue"},
    {"timeEntry", "time-", "timer", "orange"},
    {"noteUpdated", "note-", "note.text", "yellow"},
    {"projectUpdated", "project-", "folder.fill", ""},
    {"clientUpdated", "client-", "building.2.fill", "teal"},
}};

const Look& lookOf(ActivityKind kind) {
    return looks[static_cast<std::size_t>(kind)];
}

ActivityItem item(ActivityKind kind, const Entity& record, std::string title, Date timestamp) {
    const Look& look = lookOf(kind);
    return {.id = std::string(look.idPrefix) + record.id().string(),
            .kind = kind,
            .title = std::move(title),
            .timestamp = timestamp,
            .icon = look.icon,
            .iconColor = std::string(look.color)};
}

std::optional<UUID> clientOf(const Project* project) {
    const Client* client = project != nullptr ? project->client() : nullptr;
    return client != nullptr ? std::optional(client->id()) : std::nullopt;
}

ActivityItem placed(ActivityItem item, const Project* project) {
    item.subtitle = projectPath(project);
    item.clientID = clientOf(project);
    return item;
}

/// Its own project, else that of its task.
template <class Record>
const Project* projectOf(const Record& record) {
    if (const Project* project = record.project())
        return project;
    const ProjectTask* task = record.task();
    return task != nullptr ? task->project() : nullptr;
}

/// The log is shorter than a note itself about one that says nothing.
std::string activityLine(const Note& note) {
    std::string line = note.activitySummary();
    return line == "Edited a note" ? "Edited note" : line;
}

} // namespace

std::string_view nameOf(ActivityKind kind) {
    return lookOf(kind).name;
}

bool isEditedAside(Date completedAt, Date updatedAt) {
    return std::chrono::abs(updatedAt - completedAt) >= std::chrono::seconds{1};
}

ActivityItem activityItem(const ProjectTask& task, ActivityKind kind) {
    const bool isCompletion = kind == ActivityKind::taskCompleted;
    return placed(item(kind, task, (isCompletion ? "Completed: " : "Updated ") + task.title(),
                       isCompletion ? task.completedAt().value_or(task.updatedAt()) : task.updatedAt()),
                  task.project());
}

ActivityItem activityItem(const TimeEntry& entry, Date now) {
    return placed(item(ActivityKind::timeEntry, entry,
                       "Tracked " + entry.formattedDuration(now) + ": " + entry.displayName(), entry.startTime()),
                  projectOf(entry));
}

ActivityItem activityItem(const Note& note) {
    return placed(item(ActivityKind::noteUpdated, note, activityLine(note), note.updatedAt()), projectOf(note));
}

ActivityItem activityItem(const Project& project) {
    ActivityItem result =
        item(ActivityKind::projectUpdated, project, "Updated project: " + project.name(), project.updatedAt());
    if (project.client() != nullptr)
        result.subtitle = project.client()->name();
    result.clientID = clientOf(&project);
    result.iconColor = project.color();
    return result;
}

ActivityItem activityItem(const Client& client) {
    ActivityItem result =
        item(ActivityKind::clientUpdated, client, "Updated client: " + client.name(), client.updatedAt());
    result.clientID = client.id();
    return result;
}

std::vector<ActivityItem> activityItems(const std::vector<ProjectTask*>& tasks, const std::vector<TimeEntry*>& entries,
                                        const std::vector<Note*>& notes, const std::vector<Project*>& projects,
                                        const std::vector<Client*>& clients, const std::optional<UUID>& filter,
                                        Date now) {
    std::vector<ActivityItem> items;
    const auto add = [&](ActivityItem item) {
        if (!filter || item.clientID == filter)
            items.push_back(std::move(item));
    };
    for (const ProjectTask* task : tasks) {
        if (task->completedAt())
            add(activityItem(*task, ActivityKind::taskCompleted));
        if (!task->completedAt() || isEditedAside(*task->completedAt(), task->updatedAt()))
            add(activityItem(*task, ActivityKind::taskUpdated));
    }
    for (const TimeEntry* entry : entries)
        add(activityItem(*entry, now));
    for (const Note* note : notes)
        add(activityItem(*note));
    for (const Project* project : projects)
        add(activityItem(*project));
    for (const Client* client : clients)
        add(activityItem(*client));
    std::ranges::stable_sort(items, std::greater<>(), &ActivityItem::timestamp);
    return items;
}

std::string_view labelOf(DateGroup group) {
    constexpr std::array<std::string_view, 4> labels = {"Today", "Yesterday", "This Week", "Earlier"};
    return labels[static_cast<std::size_t>(group)];
}

DateGroup dateGroup(Date timestamp, Date now, const Calendar& calendar) {
    if (calendar.isSameDay(timestamp, now))
        return DateGroup::today;
    if (calendar.isSameDay(timestamp, calendar.addDays(now, -1)))
        return DateGroup::yesterday;
    return timestamp >= calendar.addDays(now, -7) ? DateGroup::thisWeek : DateGroup::earlier;
}

std::optional<std::string> projectPath(const Project* project) {
    if (project == nullptr)
        return std::nullopt;
    const Client* client = project->client();
    return client != nullptr ? client->name() + " / " + project->name() : project->name();
}

} // namespace quillorn
