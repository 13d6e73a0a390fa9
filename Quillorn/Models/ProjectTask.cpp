#include "Models/ProjectTask.h"

#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Platform/NotificationCenter.h"
#include "Store/EntityType.h"
#include "Store/ModelContext.h"

#include <unordered_set>

namespace quillorn {

struct ProjectTask::Table {
    static constexpr std::array columns{
        column<&ProjectTask::m_title>("title"),
        column<&ProjectTask::m_taskDescription>("taskDescription"),
        column<&ProjectTask::m_dueDate>("dueDate"),
        column<&ProjectTask::m_dueHasTime>("dueHasTime"),
        column<&ProjectTask::m_completedAt>("completedAt"),
        column<&ProjectTask::m_priority>("priority"),
        column<&ProjectTask::m_status>("status"),
        column<&ProjectTask::m_sortOrder>("sortOrder"),
        column<&ProjectTask::m_sourceTitle>("sourceTitle"),
        column<&ProjectTask::m_sourceURL>("sourceURL"),
        column<&ProjectTask::m_createdAt>("createdAt"),
        column<&ProjectTask::m_updatedAt>("updatedAt"),
        toOne<&ProjectTask::m_project>("project", OnDelete::cascade),
        // Subtasks outlive their parent and become top-level tasks.
        toOne<&ProjectTask::m_parentTask>("parentTask", OnDelete::clear),
    };
    static constexpr std::array relations{
        toMany<&ProjectTask::m_timeEntries>("timeEntries", "task"),
        toMany<&ProjectTask::m_notes>("notes", "task"),
        manyToMany<&ProjectTask::m_tags>("tags", "tasks", "ProjectTask_Tag", "task", "tag"),
        toMany<&ProjectTask::m_subtasks>("subtasks", "parentTask"),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    template <auto Member>
    static constexpr std::size_t list = placeOf<Member>(relations);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new ProjectTask); }
};

const EntityType& ProjectTask::entityType() {
    // The wider index counts subtasks by itself.
    static const EntityType type =
        makeEntityType("ProjectTask", Table::columns, Table::relations, &Table::make, {{"parentTask", "completedAt"}});
    return type;
}

void ProjectTask::initialize(Arguments arguments, Date now) {
    m_title = std::move(arguments.title);
    m_taskDescription = std::move(arguments.taskDescription);
    m_dueDate = arguments.dueDate;
    m_priority = arguments.priority;
    m_status = arguments.status;
    m_createdAt = m_updatedAt = now;
    setProject(arguments.project);
}

void ProjectTask::setTitle(std::string title) {
    assign(Table::at<&ProjectTask::m_title>, m_title, std::move(title));
}
void ProjectTask::setTaskDescription(std::optional<std::string> description) {
    assign(Table::at<&ProjectTask::m_taskDescription>, m_taskDescription, std::move(description));
}
void ProjectTask::setDueDate(std::optional<Date> date) {
    assign(Table::at<&ProjectTask::m_dueDate>, m_dueDate, date);
}
void ProjectTask::setDueHasTime(bool hasTime) {
    assign(Table::at<&ProjectTask::m_dueHasTime>, m_dueHasTime, hasTime);
}
void ProjectTask::setCompletedAt(std::optional<Date> date) {
    assign(Table::at<&ProjectTask::m_completedAt>, m_completedAt, date);
}
void ProjectTask::setPriority(TaskPriority priority) {
    assign(Table::at<&ProjectTask::m_priority>, m_priority, priority);
}
void ProjectTask::assignStatus(TaskStatus status) {
    assign(Table::at<&ProjectTask::m_status>, m_status, status);
}
void ProjectTask::setSortOrder(std::int64_t order) {
    assign(Table::at<&ProjectTask::m_sortOrder>, m_sortOrder, order);
}
void ProjectTask::setSourceTitle(std::optional<std::string> title) {
    assign(Table::at<&ProjectTask::m_sourceTitle>, m_sourceTitle, std::move(title));
}
void ProjectTask::setSourceURL(std::optional<std::string> url) {
    assign(Table::at<&ProjectTask::m_sourceURL>, m_sourceURL, std::move(url));
}
void ProjectTask::setUpdatedAt(Date date) {
    assign(Table::at<&ProjectTask::m_updatedAt>, m_updatedAt, date);
}

Project* ProjectTask::project() const {
    return static_cast<Project*>(resolve(Table::at<&ProjectTask::m_project>, m_project));
}
void ProjectTask::setProject(Project* project) {
    assignReference(Table::at<&ProjectTask::m_project>, m_project, project);
}

ProjectTask* ProjectTask::parentTask() const {
    return static_cast<ProjectTask*>(resolve(Table::at<&ProjectTask::m_parentTask>, m_parentTask));
}
void ProjectTask::setParentTask(ProjectTask* parent) {
    assignReference(Table::at<&ProjectTask::m_parentTask>, m_parentTask, parent);
}

const List<TimeEntry>& ProjectTask::timeEntries() const {
    load(Table::list<&ProjectTask::m_timeEntries>, m_timeEntries);
    return m_timeEntries;
}

const List<Note>& ProjectTask::notes() const {
    load(Table::list<&ProjectTask::m_notes>, m_notes);
    return m_notes;
}

const List<Tag>& ProjectTask::tags() const {
    load(Table::list<&ProjectTask::m_tags>, m_tags);
    return m_tags;
}

void ProjectTask::setTags(const std::vector<Tag*>& tags) {
    assignLinks(Table::list<&ProjectTask::m_tags>, {tags.begin(), tags.end()});
}

const List<ProjectTask>& ProjectTask::subtasks() const {
    load(Table::list<&ProjectTask::m_subtasks>, m_subtasks);
    return m_subtasks;
}

void ProjectTask::setStatus(TaskStatus status, Date date) {
    const bool wasCompleted = isCompleted();
    assignStatus(status);
    if (status != TaskStatus::done)
        setCompletedAt(std::nullopt);
    else if (!wasCompleted)
        setCompletedAt(date);
    setUpdatedAt(date);
    if (status == TaskStatus::done && !wasCompleted)
        runCompletionEffects(date);
}

void ProjectTask::setCompleted(bool completed, Date date) {
    const bool wasCompleted = isCompleted();
    if (completed) {
        setCompletedAt(date);
        assignStatus(TaskStatus::done);
    } else {
        setCompletedAt(std::nullopt);
        if (m_status == TaskStatus::done)
            assignStatus(TaskStatus::todo);
    }
    setUpdatedAt(date);
    if (completed && !wasCompleted)
        runCompletionEffects(date);
}

void ProjectTask::runCompletionEffects(Date date) {
    for (TimeEntry* entry : timeEntries())
        if (entry->isRunning())
            entry->setEndTime(date);
    Notification notification;
    notification.name = quillornTaskCompleted;
    notification.object = this;
    notification.userInfo.emplace("taskId", id());
    context().container().notifications().post(notification);
}

double ProjectTask::totalTimeSpent(Date now) const {
    double seconds = 0;
    for (const TimeEntry* entry : timeEntries())
        seconds += entry->duration(now);
    return seconds;
}

std::size_t ProjectTask::depth() const {
    std::unordered_set<const ProjectTask*> seen{this};
    for (const ProjectTask* ancestor = parentTask(); ancestor != nullptr; ancestor = ancestor->parentTask())
        if (!seen.insert(ancestor).second)
            break;
    return seen.size() - 1;
}

bool ProjectTask::isHidden() const {
    const Project* owner = project();
    return owner != nullptr && owner->isHidden();
}

} // namespace quillorn
