#pragma once

#include "Platform/Date.h"
#include "Views/TaskFilter.h"

namespace quillorn {

class Calendar;
struct Query;

/// A moment, and what the rules of lists make of it. Good until `now` has passed the next due date or day.
struct TaskMoment {
    static TaskMoment at(Date now, const Calendar& calendar);

    Date now;
    Date startOfToday;
    Date startOfTomorrow;
    Date endOfTomorrow; // the first instant of the day after
    Date endOfWeek;     // the first instant of the next week, by the locale's weeks
    /// What is due before needs attention today: 86400 seconds after the start of today, also where the clock changes.
    Date todayLimit;
    /// The same time of day a week from now.
    Date upcomingLimit;
};

/// The tasks of a list as a condition of the store, so that lists and counts read no more than they show. Completed
/// ones are left out unless `showCompleted`; Today never has any. Archived projects and clients hide nothing here.
Query taskQuery(const TaskFilter& filter, const TaskMoment& moment, bool showCompleted);

/// The tasks of Today at the top level, which its count in the sidebar means.
Query todayCountQuery(const TaskMoment& moment);

} // namespace quillorn
