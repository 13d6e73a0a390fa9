#include "Views/SmartListDashboard.h"

#include "Models/ProjectTask.h"
#include "Platform/Calendar.h"
#include "Store/ModelContext.h"
#include "Views/TaskMeeting.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

constexpr int forecastDays = 7;

std::optional<SmartListDashboardHeader::Card> overdueCard(const TaskTally& list) {
    if (list.overdue == 0)
        return std::nullopt;
    return SmartListDashboardHeader::Card{"exclamationmark.triangle.fill", "Overdue", std::to_string(list.overdue),
                                          "past due date"};
}

SmartListDashboardHeader::Breakdown breakdown(std::string title, std::vector<SmartListDashboardHeader::Bar> bars) {
    std::erase_if(bars, [](const SmartListDashboardHeader::Bar& bar) { return bar.count == 0; });
    const bool isEmpty = bars.empty();
    return {std::move(title), std::move(bars), isEmpty ? "No tasks" : ""};
}

} // namespace

TaskTally::Share TaskTally::shareOf(const ProjectTask& task, const TaskMoment& moment) {
    return {
        .status = task.status(),
        .priority = task.priority(),
        .isDue = task.dueDate() && *task.dueDate() < moment.todayLimit,
        .isOpen = !task.isCompleted(),
        .isOverdue = task.isOverdue(moment.now),
        .isOfMeeting = !meetingKey(task).empty(),
    };
}

void TaskTally::add(const Share& share, int sign) {
    tasks += sign;
    open += share.isOpen ? sign : 0;
    due += share.isDue ? sign : 0;
    overdue += share.isOverdue ? sign : 0;
    ofMeetings += share.isOfMeeting ? sign : 0;
    byStatus[static_cast<std::size_t>(share.status)] += sign;
    byPriority[static_cast<std::size_t>(share.priority)] += sign;
}

SmartListDashboardHeader todayHeader(const TaskTally& list) {
    const auto inProgress = list.byStatus[static_cast<std::size_t>(TaskStatus::inProgress)];
    return {
        .hero = {"calendar", "Today", std::to_string(list.tasks),
                 fmt::format("{} due · {} in progress", list.due, inProgress)},
        .overdue = overdueCard(list),
    };
}

Query forecastQuery(const TaskMoment& moment, const Calendar& calendar) {
    const Date end = calendar.startOfDay(calendar.addDays(moment.startOfToday + std::chrono::hours(12), forecastDays));
    return {.where = "completedAt IS NULL AND dueDate >= ? AND dueDate < ?",
            .values = {std::int64_t{moment.startOfToday.time_since_epoch().count()},
                       std::int64_t{end.time_since_epoch().count()}}};
}

SmartListDashboardHeader upcomingHeader(const TaskTally& list, const std::vector<const ProjectTask*>& open,
                                        const TaskMoment& moment, const Calendar& calendar) {
    SmartListDashboardHeader header{
        .hero = {"calendar.badge.clock", "Next 7 Days", std::to_string(list.tasks), "tasks upcoming"}};
    SmartListDashboardHeader::Breakdown forecast{"7-Day Forecast", {}, ""};
    const Date noon = moment.startOfToday + std::chrono::hours(12);
    for (int day = 0; day < forecastDays; ++day) {
        const Date date = calendar.addDays(noon, day);
        std::size_t count = 0;
        for (const ProjectTask* task : open)
            count += task->dueDate() && calendar.isSameDay(*task->dueDate(), date) ? 1 : 0;
        forecast.bars.push_back({"", "", calendar.format(date, "EEE"), count});
    }
    header.breakdowns.push_back(std::move(forecast));
    return header;
}

SmartListDashboardHeader allTasksHeader(const TaskTally& list, std::size_t completed) {
    const std::size_t total = completed + static_cast<std::size_t>(list.open);
    const std::size_t percent = total == 0 ? 0 : completed * 100 / total;
    SmartListDashboardHeader header{
        .hero = {"tray.full.fill", "All Tasks", std::to_string(list.tasks),
                 fmt::format("{}% complete ({}/{})", percent, completed, total)},
        .overdue = overdueCard(list),
    };
    std::vector<SmartListDashboardHeader::Bar> priorities;
    std::vector<SmartListDashboardHeader::Bar> statuses;
    for (int raw = EnumCases<TaskPriority>::count - 1; raw >= 0; --raw) {
        const auto priority = static_cast<TaskPriority>(raw);
        priorities.push_back({"", std::string(mark(priority)), std::string(label(priority)),
                              static_cast<std::size_t>(list.byPriority[static_cast<std::size_t>(raw)])});
    }
    for (int raw = 0; raw < EnumCases<TaskStatus>::count; ++raw) {
        const auto status = static_cast<TaskStatus>(raw);
        statuses.push_back({std::string(symbol(status)), "", std::string(label(status)),
                            static_cast<std::size_t>(list.byStatus[static_cast<std::size_t>(raw)])});
    }
    header.breakdowns.push_back(breakdown("By Priority", std::move(priorities)));
    header.breakdowns.push_back(breakdown("By Status", std::move(statuses)));
    return header;
}

} // namespace quillorn
