#pragma once

#include "CLI/Table.h"
#include "Platform/Date.h"

#include <string>
#include <vector>

namespace quillorn {

class Calendar;
class ProjectTask;

/// A due date as people read it: "Today 15:00", "Tomorrow", "Jan 31, 2026".
std::string dueText(const ProjectTask& task, Date now, const Calendar& calendar);

/// The rows of tasks: id, title, status, priority, due date, project, tags; `withGroup` puts a column before them that
/// people see as headings.
Table taskTable(bool withGroup = false);

/// The cells of a task for such a table, without the group.
std::vector<Cell> taskCells(const ProjectTask& task, Date now, const Calendar& calendar);

} // namespace quillorn
