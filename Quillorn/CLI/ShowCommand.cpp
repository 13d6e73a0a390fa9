#include "CLI/Details.h"
#include "CLI/StoreWork.h"
#include "CLI/TaskCells.h"
#include "CLI/TaskCommands.h"
#include "CLI/Words.h"
#include "Models/Client.h"
#include "Models/Formatters.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Models/TaskActions.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"
#include "Records/RecordChoice.h"
#include "Records/TaskRecord.h"

namespace quillorn {

namespace {

/// An instant for programs and for people.
Cell dateCell(Date date, const Calendar& calendar) {
    return {formatISO8601(date), calendar.abbreviatedDateAndTime(date)};
}

void printFields(const ProjectTask& task, StoreWork& work) {
    const Calendar& calendar = work.calendar();
    const std::vector<Cell> cells = taskCells(task, work.now, calendar);
    Details details;
    details.add("Title", {task.title(), Paint::bold});
    details.add("Id", task.id().string());
    details.add("Status", {std::string(caseName(task.status())), std::string(label(task.status()))});
    details.add("Priority", {std::string(caseName(task.priority())), std::string(label(task.priority()))});
    details.add("Due", cells[4]);
    if (const Project* project = task.project()) {
        details.add("Project", project->name());
        if (const Client* client = project->client())
            details.add("Client", client->name());
    }
    details.add("Tags", cells[6]);
    if (const ProjectTask* parent = task.parentTask())
        details.add("Parent", parent->title());
    if (task.completedAt())
        details.add("Completed", dateCell(*task.completedAt(), calendar));
    details.add("Created", dateCell(task.createdAt(), calendar));
    details.add("Source", task.sourceTitle().value_or(""));
    details.add("Address", task.sourceURL().value_or(""));
    if (const double seconds = task.totalTimeSpent(work.now); seconds > 0)
        details.add("Time spent", {fmt::format("{:.0f}", seconds), shortForm(seconds)});
    if (!isForPeople())
        details.add("Description", task.taskDescription().value_or(""));
    details.print();
}

void printBelongings(const ProjectTask& task, StoreWork& work) {
    const Calendar& calendar = work.calendar();
    printText("Description", task.taskDescription().value_or(""));
    if (!task.subtasks().empty()) {
        printHeading("Subtasks");
        Table table = taskTable();
        for (const ProjectTask* subtask : task.subtasks())
            table.add(taskCells(*subtask, work.now, calendar));
        table.print();
    }
    for (const Note* comment : commentsOf(task))
        printText("Comment of " + calendar.abbreviatedDateAndTime(comment->createdAt()), comment->content());
    std::vector<TimeEntry*> entries(task.timeEntries().begin(), task.timeEntries().end());
    if (entries.empty())
        return;
    sortLatestFirst(entries, &TimeEntry::startTime);
    Table table({{"Id"},
                 {"Began"},
                 {"Time", Table::Column::Align::right},
                 {"Notes", Table::Column::Align::left, Table::Column::Cut::ifNarrow}});
    for (const TimeEntry* entry : entries)
        table.add({{entry->id().string(), shortId(entry->id()), Paint::dim},
                   dateCell(entry->startTime(), calendar),
                   {fmt::format("{:.0f}", entry->duration(work.now)), shortForm(entry->duration(work.now)),
                    entry->isRunning() ? Paint::green : Paint::plain},
                   entry->notes().value_or("")});
    printHeading("Time entries");
    table.print();
}

} // namespace

ExitStatus showTask(const std::string& task, bool json, const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        ProjectTask& found = chooseTask(work.context, task, work.text());
        if (json) {
            printJson([&](JsonWriter& writer) { write(writer, wholeRecordOf(found, work.now)); });
        } else {
            printFields(found, work);
            if (isForPeople())
                printBelongings(found, work);
        }
        return ExitStatus::success;
    });
}

} // namespace quillorn
