#include "Views/ProjectDetailView.h"

#include "Models/DeletionQuestions.h"
#include "Models/Formatters.h"
#include "Models/ProjectTotals.h"
#include "Models/Settings.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Models/TaskTotals.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/ProjectRequests.h"
#include "Records/TaskRequests.h"

#include <fmt/core.h>
#include <tuple>

namespace quillorn {

namespace {

ObservedCondition tasksOf(const UUID& project) {
    return {.where = "project IN (SELECT key FROM Project WHERE id = ?)",
            .values = {project},
            .dependencies = {{&Tag::entityType()}}};
}

/// The urgent first, then what is due first.
bool isHigherOnBoard(const ProjectTask& a, const ProjectTask& b) {
    if (a.isCompleted() && b.isCompleted())
        return a.completedAt() > b.completedAt();
    const auto rank = [](const ProjectTask& task) {
        return std::tuple(-static_cast<int>(task.priority()), !task.dueDate(), task.dueDate(), task.sortOrder());
    };
    return a.isCompleted() != b.isCompleted() ? b.isCompleted() : rank(a) < rank(b);
}

} // namespace

ProjectDetailView::ProjectDetailView(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                                     const UUID& project)
    : ScopeDetailView(environment, ai, scene, {ChatContext::Kind::project, project}, setting("projectDetailTabs")),
      m_project(environment.main, {.where = "id = ?", .values = {project}, .dependencies = {{&Client::entityType()}}}),
      m_tasks(environment.main, tasksOf(project), isHigherOnBoard) {
    for (std::size_t place = 0; place < m_board.size(); ++place) {
        const auto status = static_cast<TaskStatus>(place);
        m_board[place].status = status;
        m_board[place].label = label(status);
        m_board[place].symbol = symbol(status);
    }
    follow(m_project);
    follow(m_tasks);
    follow(TimeEntry::entityType()); // for the sums
    show();
}

void ProjectDetailView::show() {
    const Project* shown = project();
    if (shown == nullptr)
        return;
    showNames(shown->name(), shown->projectDescription().value_or(""), shown->color());
    const Date now = environment().clock.now();
    const ProjectTotals totals = ProjectTotalsTable(context(), std::vector<RowKey>{shown->key()}, now).of(*shown);
    const auto open = static_cast<std::size_t>(totals.taskCount - totals.completedTaskCount);
    std::size_t overdue = 0;
    for (std::size_t place = 0; place < m_tasks.size(); ++place)
        overdue += m_tasks[place].isOverdue(now) ? 1U : 0U;
    const std::string tracked = hoursAndMinutes(totals.totalTimeSpent);
    setSubtitle(fmt::format("{}{} open · {}", shown->client() != nullptr ? shown->client()->name() + " · " : "", open,
                            tracked));
    m_progress = totals.taskCount > 0
                     ? static_cast<double>(totals.completedTaskCount) / static_cast<double>(totals.taskCount)
                     : 0;
    showFigures({{"Open", fmt::format("{}", open), open == 1 ? "task" : "tasks"},
                 {"Completed", fmt::format("{}", totals.completedTaskCount),
                  fmt::format("of {}", counted(static_cast<std::size_t>(totals.taskCount), "task"))},
                 {"Overdue", fmt::format("{}", overdue), "past due date"},
                 {"Total Tracked", tracked, ""}},
                shown->isArchived());
    showBoard();
}

void ProjectDetailView::showBoard() {
    const Date now = environment().clock.now();
    std::vector<ProjectTask*> shown;
    std::array<std::size_t, 4> counts{};
    for (std::size_t place = 0; place < m_tasks.size(); ++place) {
        ProjectTask& task = m_tasks[place];
        const auto column = static_cast<std::size_t>(task.status());
        if (task.parentTask() != nullptr)
            continue;
        if (++counts.at(column); task.status() != TaskStatus::done || counts.at(column) <= mostDone)
            shown.push_back(&task);
    }
    const TaskTotalsTable totals(context(), shown, now);
    std::array<std::vector<Card>, 4> cards;
    for (ProjectTask* task : shown) {
        const TaskTotals sums = totals.of(*task);
        Card card{.id = task->id(), .title = task->title(), .priorityMark = std::string(mark(task->priority()))};
        if (task->dueDate())
            card.due = dueLabel(*task->dueDate(), now, environment().calendar);
        card.isOverdue = task->isOverdue(now);
        if (sums.subtaskCount > 0)
            card.subtasks = fmt::format("{}/{}", sums.completedSubtaskCount, sums.subtaskCount);
        if (sums.totalTimeSpent > 0)
            card.time = shortForm(sums.totalTimeSpent);
        std::vector<Tag*> tags(task->tags().begin(), task->tags().end());
        sortByName(tags, environment().text);
        for (const Tag* tag : tags)
            card.tags.push_back(tag->name());
        card.isCompleted = task->isCompleted();
        cards.at(static_cast<std::size_t>(task->status())).push_back(std::move(card));
    }
    for (std::size_t place = 0; place < m_board.size(); ++place) {
        m_board[place].count = counts[place];
        m_board[place].cards.assign(std::move(cards[place]));
    }
}

bool ProjectDetailView::change(std::string name, const UpdateProjectRequest& request) {
    return !refuse(request.faults()) && perform(std::move(name), [&](ModelContext& records, Date now) {
        updateProject(records, findOrThrow<Project>(records, id()), request, now);
    });
}

bool ProjectDetailView::write(Field field, const std::string& text) {
    UpdateProjectRequest request;
    (field == Field::name ? request.name : request.description) = text;
    return change("Edit Project", request);
}

void ProjectDetailView::setColor(const std::string& color) {
    UpdateProjectRequest request;
    request.color = color;
    change("Edit Project", request);
}

void ProjectDetailView::setArchived(bool isArchived) {
    UpdateProjectRequest request;
    request.isArchived = isArchived;
    change(isArchived ? "Archive Project" : "Unarchive Project", request);
}

std::optional<Confirmation> ProjectDetailView::deletion() const {
    return isGone() ? std::nullopt : std::optional(deletionOfProject(*project()));
}

void ProjectDetailView::remove() {
    if (!isGone())
        DetailView::remove(*project());
}

void ProjectDetailView::moveCard(const UUID& task, TaskStatus status) {
    perform("Change Status of Task", [&](ModelContext& records, Date now) {
        auto& moved = findOrThrow<ProjectTask>(records, task);
        if (moved.status() != status)
            moved.setStatus(status, now);
    });
}

void ProjectDetailView::addCard(const std::string& title, TaskStatus status) {
    CreateTaskRequest request;
    request.title = title;
    request.projectId = id();
    request.status = static_cast<std::int64_t>(status);
    if (!refuse(request.faults()))
        perform("Add Task", [&](ModelContext& records, Date now) { createTask(records, request, now); });
}

} // namespace quillorn
