#include "CLI/TaskCells.h"

#include "CLI/RecordNames.h"
#include "CLI/Words.h"
#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

/// A date without a time is a day of the calendar, and no instant.
std::string isoDue(const ProjectTask& task, const Calendar& calendar) {
    if (!task.dueDate())
        return {};
    if (task.dueHasTime())
        return formatISO8601(*task.dueDate());
    const std::chrono::year_month_day day = calendar.day(*task.dueDate());
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(day.year()), static_cast<unsigned>(day.month()),
                       static_cast<unsigned>(day.day()));
}

Paint paintOfDue(const ProjectTask& task, Date now, const Calendar& calendar) {
    if (!task.dueDate() || task.isCompleted())
        return Paint::plain;
    if (calendar.isSameDay(*task.dueDate(), now))
        return Paint::yellow;
    return *task.dueDate() < now ? Paint::red : Paint::plain;
}

Cell priorityCell(TaskPriority priority) {
    const std::string name(caseName(priority));
    switch (priority) {
    case TaskPriority::urgent:
        return {name, std::string(label(priority)), Paint::red};
    case TaskPriority::high:
        return {name, std::string(label(priority)), Paint::yellow};
    case TaskPriority::medium: // the usual
        return {name, ""};
    case TaskPriority::low:
        return {name, std::string(label(priority)), Paint::dim};
    }
    return name;
}

Cell statusCell(const ProjectTask& task) {
    const std::string name(caseName(task.status()));
    if (task.isCompleted())
        return {name, "Done", Paint::green};
    const bool isUsual = task.status() == TaskStatus::todo;
    return {name, isUsual ? "" : std::string(label(task.status())), Paint::cyan};
}

std::string tagNames(const ProjectTask& task, const char* mark, const char* between) {
    std::string names;
    for (const Tag* tag : task.tags())
        names += (names.empty() ? mark : std::string(between) + mark) + tag->name();
    return names;
}

} // namespace

std::string dueText(const ProjectTask& task, Date now, const Calendar& calendar) {
    if (!task.dueDate())
        return {};
    const Date due = *task.dueDate();
    // The word for what is overdue hides since when.
    const bool isNear = calendar.isSameDay(due, now) || due >= now;
    const std::string day = isNear ? dueLabel(due, now, calendar) : calendar.mediumDate(due);
    return task.dueHasTime() ? fmt::format("{} {}", day, calendar.format(due, "HH:mm")) : day;
}

Table taskTable(bool withGroup) {
    using Align = Table::Column::Align;
    using Cut = Table::Column::Cut;
    std::vector<Table::Column> columns;
    if (withGroup)
        columns.push_back({""});
    columns.insert(columns.end(), {{"Id"},
                                   {"Title", Align::left, Cut::ifNarrow},
                                   {"Status"},
                                   {"Priority"},
                                   {"Due"},
                                   {"Project", Align::left, Cut::ifNarrow},
                                   {"Tags", Align::left, Cut::ifNarrow}});
    return Table(std::move(columns));
}

std::vector<Cell> taskCells(const ProjectTask& task, Date now, const Calendar& calendar) {
    const Project* project = task.project();
    if (!isForPeople())
        return {task.id().string(),
                task.title(),
                std::string(caseName(task.status())),
                std::string(caseName(task.priority())),
                isoDue(task, calendar),
                project != nullptr ? project->name() : std::string(),
                tagNames(task, "", ",")};
    return {{task.id().string(), shortId(task.id()), Paint::dim},
            {task.title(), task.isCompleted() ? Paint::dim : Paint::plain},
            statusCell(task),
            priorityCell(task.priority()),
            {isoDue(task, calendar), dueText(task, now, calendar), paintOfDue(task, now, calendar)},
            project != nullptr ? project->name() : std::string(),
            {tagNames(task, "", ","), tagNames(task, "#", " "), Paint::cyan}};
}

} // namespace quillorn
