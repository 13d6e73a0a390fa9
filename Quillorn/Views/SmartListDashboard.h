#pragma once

#include "Models/Enums.h"
#include "Views/TaskMembership.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class Calendar;
class ProjectTask;
struct Query;

/// Counts over the tasks of a list, kept up to date task by task.
class TaskTally {
  public:
    /// What one task adds.
    struct Share {
        TaskStatus status = TaskStatus::todo;
        TaskPriority priority = TaskPriority::medium;
        bool isDue = false; // up to the end of today
        bool isOpen = false;
        bool isOverdue = false;
        bool isOfMeeting = false;
    };
    static Share shareOf(const ProjectTask& task, const TaskMoment& moment);

    /// `sign` is -1 for a task that leaves.
    void add(const Share& share, int sign = 1);

    std::ptrdiff_t tasks = 0, open = 0, due = 0, overdue = 0, ofMeetings = 0;
    std::array<std::ptrdiff_t, EnumCases<TaskStatus>::count> byStatus{};
    std::array<std::ptrdiff_t, EnumCases<TaskPriority>::count> byPriority{};
};

/// The cards over a smart list.
struct SmartListDashboardHeader {
    struct Card {
        std::string symbol, title, value, text;
        friend bool operator==(const Card&, const Card&) = default;
    };
    /// A day of the forecast, or a row of a breakdown.
    struct Bar {
        std::string symbol, mark, label;
        std::size_t count = 0;
        friend bool operator==(const Bar&, const Bar&) = default;
    };
    struct Breakdown {
        std::string title;
        std::vector<Bar> bars;
        /// In place of bars where there are none.
        std::string emptyText;
        friend bool operator==(const Breakdown&, const Breakdown&) = default;
    };

    Card hero;
    std::optional<Card> overdue{};
    std::vector<Breakdown> breakdowns{};

    friend bool operator==(const SmartListDashboardHeader&, const SmartListDashboardHeader&) = default;
};

SmartListDashboardHeader todayHeader(const TaskTally& list);
/// `open` are open tasks that are due within the forecast's days, others too.
SmartListDashboardHeader upcomingHeader(const TaskTally& list, const std::vector<const ProjectTask*>& open,
                                        const TaskMoment& moment, const Calendar& calendar);
SmartListDashboardHeader allTasksHeader(const TaskTally& list, std::size_t completed);

/// The open tasks that are due on the days of the forecast: today and the six days after it.
Query forecastQuery(const TaskMoment& moment, const Calendar& calendar);

} // namespace quillorn
