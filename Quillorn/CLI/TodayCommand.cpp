#include "CLI/StoreWork.h"
#include "CLI/TaskCells.h"
#include "CLI/TaskCommands.h"
#include "Models/Formatters.h"
#include "Models/ProjectTask.h"
#include "Models/TimeEntry.h"
#include "Models/TimeEntrySearch.h"
#include "Views/TaskListTexts.h"
#include "Views/TaskMembership.h"
#include "Views/TaskSorting.h"

namespace quillorn {

namespace {

void printTimers(StoreWork& work) {
    const auto running = findTimeEntries(work.context, {.includeArchived = true, .running = true});
    for (const TimeEntry* entry : running)
        fmt::print("{}  {}\n", painted("▶ " + shown(entry->displayName()), Paint::green),
                   clockForm(entry->duration(work.now)));
    if (running.empty())
        fmt::print("{}\n", painted("No timer is running", Paint::dim));
}

/// An entry counts whole on the day on which it began.
double secondsToday(StoreWork& work, const TaskMoment& moment) {
    double seconds = 0;
    for (const TimeEntry* entry :
         work.context.fetch<TimeEntry>({.where = "startTime >= ? AND startTime < ?",
                                        .values = {std::int64_t{moment.startOfToday.time_since_epoch().count()},
                                                   std::int64_t{moment.startOfTomorrow.time_since_epoch().count()}}}))
        seconds += entry->duration(work.now);
    return seconds;
}

void printTasks(StoreWork& work, const TaskMoment& moment) {
    const TaskFilter today{TaskFilter::Kind::today};
    auto tasks = work.context.fetch<ProjectTask>(taskQuery(today, moment, false));
    sortTasks(tasks, SortOrder::dueDate, work.text());
    if (tasks.empty()) {
        const EmptyState empty = emptyTaskList(today, "", {});
        fmt::print("{}\n{}\n", painted(empty.title, Paint::bold), empty.text);
        return;
    }
    Table table = taskTable();
    for (const ProjectTask* task : tasks)
        table.add(taskCells(*task, work.now, work.calendar()));
    table.print();
}

} // namespace

ExitStatus showToday(const ProcessInfo& process) {
    return withStore(process, ModelContext::Intent::read, [](StoreWork& work) {
        const TaskMoment moment = TaskMoment::at(work.now, work.calendar());
        printTimers(work);
        fmt::print("\n");
        printTasks(work, moment);
        fmt::print("\nTracked today: {}\n", hoursAndMinutes(secondsToday(work, moment)));
        fmt::print("{}\n", painted("quillorn add, list, done, timer start … and --help for all there is", Paint::dim));
        return ExitStatus::success;
    });
}

} // namespace quillorn
