#include "Models/TimeEntry.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Store/EntityType.h"

namespace quillorn {

struct TimeEntry::Table {
    static constexpr std::array columns{
        column<&TimeEntry::m_startTime>("startTime"),
        column<&TimeEntry::m_endTime>("endTime"),
        column<&TimeEntry::m_notes>("notes"),
        column<&TimeEntry::m_title>("title"),
        toOne<&TimeEntry::m_task>("task", OnDelete::cascade),
        toOne<&TimeEntry::m_project>("project", OnDelete::cascade),
    };
    template <auto Member>
    static constexpr std::size_t at = placeOf<Member>(columns);
    static std::unique_ptr<Entity> make() { return std::unique_ptr<Entity>(new TimeEntry); }
};

const EntityType& TimeEntry::entityType() {
    // The wider index answers sums of time from the index alone.
    static const EntityType type =
        makeEntityType("TimeEntry", Table::columns, {}, &Table::make, {{"task", "startTime", "endTime"}});
    return type;
}

void TimeEntry::initialize(Arguments arguments) {
    m_startTime = arguments.startTime;
    m_notes = std::move(arguments.notes);
    m_title = std::move(arguments.title);
    setTask(arguments.task);
    setProject(arguments.project);
}

void TimeEntry::setStartTime(Date date) {
    assign(Table::at<&TimeEntry::m_startTime>, m_startTime, date);
}
void TimeEntry::setEndTime(std::optional<Date> date) {
    assign(Table::at<&TimeEntry::m_endTime>, m_endTime, date);
}
void TimeEntry::setNotes(std::optional<std::string> notes) {
    assign(Table::at<&TimeEntry::m_notes>, m_notes, std::move(notes));
}
void TimeEntry::setTitle(std::optional<std::string> title) {
    assign(Table::at<&TimeEntry::m_title>, m_title, std::move(title));
}

ProjectTask* TimeEntry::task() const {
    return static_cast<ProjectTask*>(resolve(Table::at<&TimeEntry::m_task>, m_task));
}
void TimeEntry::setTask(ProjectTask* task) {
    assignReference(Table::at<&TimeEntry::m_task>, m_task, task);
}

Project* TimeEntry::project() const {
    return static_cast<Project*>(resolve(Table::at<&TimeEntry::m_project>, m_project));
}
void TimeEntry::setProject(Project* project) {
    assignReference(Table::at<&TimeEntry::m_project>, m_project, project);
}

std::string TimeEntry::formattedDuration(Date now) const {
    return clockForm(duration(now));
}

std::string TimeEntry::displayName() const {
    const ProjectTask* ownTask = task();
    const Project* ownProject = project();
    return displayName(ownTask != nullptr ? &ownTask->title() : nullptr,
                       ownProject != nullptr ? &ownProject->name() : nullptr);
}

std::string TimeEntry::displayName(const std::string* taskTitle, const std::string* projectName) const {
    if (m_title && !m_title->empty())
        return *m_title;
    if (taskTitle != nullptr)
        return *taskTitle;
    if (projectName != nullptr)
        return *projectName + " (General)";
    return "Unassigned";
}

} // namespace quillorn
