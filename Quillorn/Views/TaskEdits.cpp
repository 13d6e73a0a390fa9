#include "Views/TaskEdits.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Platform/Text.h"
#include "Store/MainContext.h"
#include "Views/EditHistory.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

std::vector<ProjectTask*> TaskEdits::find(const TaskIds& ids) const {
    std::vector<ProjectTask*> tasks;
    for (const UUID& id : ids)
        if (auto* task = m_environment.main.context().find<ProjectTask>(id))
            tasks.push_back(task);
    return tasks;
}

void TaskEdits::perform(std::string_view verb, const TaskIds& ids, const Edit& edit) {
    const std::vector<ProjectTask*> tasks = find(ids);
    if (tasks.empty())
        return;
    const std::string name =
        tasks.size() == 1 ? fmt::format("{} Task", verb) : fmt::format("{} {} Tasks", verb, tasks.size());
    m_environment.history.perform(name, [&](ModelContext&, Date now) {
        for (ProjectTask* task : tasks)
            edit(*task, now);
    });
}

void TaskEdits::toggleCompleted(const TaskIds& ids) {
    const std::vector<ProjectTask*> tasks = find(ids);
    const bool completes = std::ranges::any_of(tasks, [](const ProjectTask* task) { return !task->isCompleted(); });
    perform(completes ? "Complete" : "Reopen", ids, [=](ProjectTask& task, Date now) {
        if (task.isCompleted() != completes)
            task.setCompleted(completes, now);
    });
}

void TaskEdits::setStatus(const TaskIds& ids, TaskStatus status) {
    perform("Change Status of", ids, [=](ProjectTask& task, Date now) { task.setStatus(status, now); });
}

void TaskEdits::setPriority(const TaskIds& ids, TaskPriority priority) {
    perform("Change Priority of", ids, [=](ProjectTask& task, Date now) {
        task.setPriority(priority);
        task.setUpdatedAt(now);
    });
}

void TaskEdits::setDueDate(const TaskIds& ids, std::optional<Date> date, bool hasTime) {
    perform("Change Due Date of", ids, [=](ProjectTask& task, Date now) {
        task.setDueDate(date);
        task.setDueHasTime(date && hasTime);
        task.setUpdatedAt(now);
    });
}

void TaskEdits::setTag(const TaskIds& ids, const UUID& tag, bool isOn) {
    Tag* known = m_environment.main.context().find<Tag>(tag);
    if (known == nullptr)
        return;
    perform(isOn ? "Tag" : "Untag", ids, [=](ProjectTask& task, Date now) {
        if (isOn)
            addTagsToTask(task, {known}, now);
        else
            removeTagFromTask(task, known->id(), now);
    });
}

void TaskEdits::moveToProject(const TaskIds& ids, const std::optional<UUID>& project) {
    Project* target = project ? m_environment.main.context().find<Project>(*project) : nullptr;
    if (project && target == nullptr)
        return;
    perform("Move", ids, [=](ProjectTask& task, Date now) { moveTask(task, target, now); });
}

void TaskEdits::duplicate(const TaskIds& ids) {
    perform("Duplicate", ids, [](ProjectTask& task, Date now) { duplicateTask(task, now); });
}

void TaskEdits::convertToStandalone(const TaskIds& ids) {
    perform("Convert", ids, [](ProjectTask& task, Date now) {
        if (task.parentTask() == nullptr)
            return;
        task.setParentTask(nullptr);
        task.setUpdatedAt(now);
    });
}

std::optional<UUID> TaskEdits::addSubtask(const UUID& parent, std::string_view title) {
    const std::string_view trimmed = trimWhitespaceAndNewlines(title);
    auto* above = m_environment.main.context().find<ProjectTask>(parent);
    if (trimmed.empty() || above == nullptr)
        return std::nullopt;
    std::optional<UUID> id;
    m_environment.history.perform("Add Subtask", [&](ModelContext& context, Date now) {
        auto& task = context.insert<ProjectTask>(
            ProjectTask::Arguments{.title = std::string(trimmed), .project = above->project()}, now);
        task.setParentTask(above);
        id = task.id();
    });
    return id;
}

TaskMenu TaskEdits::menu(const TaskIds& ids) const {
    const std::vector<ProjectTask*> tasks = find(ids);
    const auto all = [&](const auto& holds) { return !tasks.empty() && std::ranges::all_of(tasks, holds); };
    TaskMenu menu{.completion = all([](const ProjectTask* task) { return task->isCompleted(); }) ? "Mark Incomplete"
                                                                                                 : "Mark Complete"};
    if (all([&](const ProjectTask* task) { return task->status() == tasks.front()->status(); }))
        menu.status = tasks.front()->status();
    if (all([&](const ProjectTask* task) { return task->priority() == tasks.front()->priority(); }))
        menu.priority = tasks.front()->priority();
    menu.canAddSubtask = tasks.size() == 1;
    menu.canConvertToStandalone =
        std::ranges::any_of(tasks, [](const ProjectTask* task) { return task->parentTask() != nullptr; });
    return menu;
}

std::optional<Confirmation> TaskEdits::deletion(const TaskIds& ids) const {
    const std::vector<ProjectTask*> tasks = find(ids);
    if (tasks.empty())
        return std::nullopt;
    return tasks.size() == 1 ? deletionOfTask(*tasks.front()) : deletionOfTasks(tasks.size());
}

void TaskEdits::remove(const TaskIds& ids) {
    for (ProjectTask* task : find(ids))
        m_environment.main.context().remove(*task);
    m_environment.main.save();
}

} // namespace quillorn
