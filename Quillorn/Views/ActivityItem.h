#pragma once

#include "Platform/Date.h"
#include "Platform/UUID.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Calendar;
class Client;
class Note;
class Project;
class ProjectTask;
class TimeEntry;

/// Something that happened, as the dates of a record tell it.
struct ActivityItem {
    enum class Kind { taskCompleted, taskUpdated, timeEntry, noteUpdated, projectUpdated, clientUpdated };
    static constexpr std::size_t kinds = 6;

    std::string id;
    Kind kind{};
    std::string title;
    /// Where it happened.
    std::optional<std::string> subtitle{};
    Date timestamp{};
    /// The client that it belongs to, for the filter.
    std::optional<UUID> clientID{};
    std::string_view icon{};
    /// The name of a colour, or a project's own.
    std::string iconColor{};
};

/// "taskCompleted" and so on.
std::string_view nameOf(ActivityItem::Kind kind);

/// Whether a task that was completed is also shown as edited: it was changed a second or more from then.
bool isEditedAside(Date completedAt, Date updatedAt);

// What a record shows of itself. Of a task `kind` says which of the two.
ActivityItem activityItem(const ProjectTask& task, ActivityItem::Kind kind);
/// A running entry counts up to `now`.
ActivityItem activityItem(const TimeEntry& entry, Date now);
ActivityItem activityItem(const Note& note);
ActivityItem activityItem(const Project& project);
ActivityItem activityItem(const Client& client);

/// The whole history, the latest first; of one client only, where `filter` says so.
std::vector<ActivityItem> activityItems(const std::vector<ProjectTask*>& tasks, const std::vector<TimeEntry*>& entries,
                                        const std::vector<Note*>& notes, const std::vector<Project*>& projects,
                                        const std::vector<Client*>& clients, const std::optional<UUID>& filter,
                                        Date now);

/// The sections of the log, in their order.
enum class DateGroup { today, yesterday, thisWeek, earlier };
/// "Today", "Yesterday", "This Week", "Earlier".
std::string_view labelOf(DateGroup group);
/// This week is the last seven days, to the time of day.
DateGroup dateGroup(Date timestamp, Date now, const Calendar& calendar);

/// "Client / Project"; absent for no project.
std::optional<std::string> projectPath(const Project* project);

} // namespace quillorn
