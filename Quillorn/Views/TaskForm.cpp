#include "Views/TaskForm.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TaskActions.h"
#include "Models/TaskDefaults.h"
#include "Models/WhenPhrase.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/TaskRequests.h"
#include "Store/MainContext.h"
#include "Views/TaskChoices.h"
#include "Views/TimeEntryRules.h"

#include <algorithm>

namespace quillorn {

namespace {

template <class Enum>
std::int64_t raw(Enum value) {
    return static_cast<std::int64_t>(value);
}

TaskValues newTask(const ViewEnvironment& environment, const TaskForm::Suggestion& suggestion) {
    TaskValues values{.project = suggestion.project, .parent = suggestion.parent};
    values.priority = usualPriority(environment.settings);
    if (suggestion.tag)
        values.tags.push_back(*suggestion.tag);
    const auto* parent = suggestion.parent ? environment.main.context().find<ProjectTask>(*suggestion.parent) : nullptr;
    if (parent != nullptr && parent->project() != nullptr && !values.project)
        values.project = parent->project()->id();
    return values;
}

TaskValues valuesOf(const ViewEnvironment& environment, const ProjectTask& task) {
    TaskValues values{.title = task.title(),
                      .description = task.taskDescription().value_or(""),
                      .due = DueChoice::of(task, environment.calendar),
                      .priority = task.priority(),
                      .status = task.status()};
    if (task.project() != nullptr)
        values.project = task.project()->id();
    if (task.parentTask() != nullptr)
        values.parent = task.parentTask()->id();
    for (const Tag* tag : task.tags())
        values.tags.push_back(tag->id());
    std::ranges::sort(values.tags);
    values.sourceTitle = task.sourceTitle().value_or("");
    values.sourceURL = task.sourceURL().value_or("");
    return values;
}

std::optional<std::string> textOrNone(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

CreateTaskRequest requestOf(const TaskValues& values, const Calendar& calendar) {
    CreateTaskRequest request;
    request.title = values.title;
    request.description = textOrNone(values.description);
    if (values.due)
        request.dueDate = values.due->date(calendar);
    request.priority = raw(values.priority);
    request.status = raw(values.status);
    request.projectId = values.project;
    request.tagIds = values.tags;
    request.sourceTitle = values.sourceTitle;
    request.sourceURL = values.sourceURL;
    return request;
}

} // namespace

std::optional<DueChoice> DueChoice::of(const ProjectTask& task, const Calendar& calendar) {
    if (!task.dueDate())
        return std::nullopt;
    DueChoice choice{std::chrono::local_days{calendar.day(*task.dueDate())}};
    if (task.dueHasTime())
        choice.time = timeOfDay(*task.dueDate(), calendar);
    return choice;
}

Date DueChoice::date(const Calendar& calendar) const {
    return calendar.instant(day + time.value_or(std::chrono::seconds{0}));
}

TaskForm::TaskForm(const ViewEnvironment& environment, const Suggestion& suggestion)
    : RecordForm(environment, "Task", std::nullopt, newTask(environment, suggestion)) {}

TaskForm::TaskForm(const ViewEnvironment& environment, const ProjectTask& task)
    : RecordForm(environment, "Task", task.id(), valuesOf(environment, task)) {}

std::vector<FormChoice> TaskForm::parents(std::string_view search) const {
    const auto* task = isNew() ? nullptr : context().find<ProjectTask>(*record());
    std::vector<FormChoice> choices;
    for (const ProjectTask* each : openTasks(context(), environment().text, search, mostParents))
        if (task == nullptr || faultOfParent(*task, *each) == ParentFault::none)
            choices.push_back({each->id(), each->title()});
    return choices;
}

void TaskForm::toggleTag(const UUID& tag) {
    std::vector<UUID> tags = values().tags;
    if (std::erase(tags, tag) == 0)
        tags.push_back(tag);
    std::ranges::sort(tags); // chosen and taken back is no change
    set(&TaskValues::tags, std::move(tags));
}

void TaskForm::setParent(const std::optional<UUID>& parent) {
    TaskValues next = values();
    next.parent = parent;
    const auto* record = parent ? context().find<ProjectTask>(*parent) : nullptr;
    if (isNew() && record != nullptr)
        next.project = record->project() != nullptr ? std::optional(record->project()->id()) : std::nullopt;
    enter(std::move(next));
}

bool TaskForm::setDueText(std::string_view words) {
    const bool isBlank = trimBlanks(words).empty();
    const auto due = isBlank ? std::nullopt : readDue(words, environment());
    if (!isBlank && !due)
        return false;
    set(&TaskValues::due, due);
    return true;
}

std::vector<std::string> TaskForm::faults() const {
    return requestOf(values(), environment().calendar).faults();
}

UUID TaskForm::write(ModelContext& context, Date now) {
    auto* parent = findLinked<ProjectTask>(context, values().parent);
    if (isNew()) {
        auto& task = createTask(context, requestOf(values(), environment().calendar), now);
        task.setParentTask(parent);
        task.setDueHasTime(values().due && values().due->time);
        return task.id();
    }
    auto& task = findOrThrow<ProjectTask>(context, *record());
    if (parent != nullptr && faultOfParent(task, *parent) != ParentFault::none)
        throw std::runtime_error("A task can’t stand under itself");
    update(context, task, now);
    if (isTouched(&TaskValues::parent))
        task.setParentTask(parent);
    return task.id();
}

void TaskForm::update(ModelContext& context, ProjectTask& task, Date now) const {
    UpdateTaskRequest request;
    request.title = written(&TaskValues::title);
    request.description = written(&TaskValues::description);
    request.sourceTitle = written(&TaskValues::sourceTitle);
    request.sourceURL = written(&TaskValues::sourceURL);
    request.tagIds = written(&TaskValues::tags);
    if (isTouched(&TaskValues::priority))
        request.priority = raw(values().priority);
    if (isTouched(&TaskValues::status))
        request.status = raw(values().status);
    if (isTouched(&TaskValues::project))
        request.projectId = values().project;
    updateTask(context, task, request, now);
    if (isTouched(&TaskValues::project) && !values().project)
        moveTask(task, nullptr, now); // for a request absent means to leave it
    if (isTouched(&TaskValues::due))
        setDue(task, values().due, environment().calendar);
}

void setDue(ProjectTask& task, const std::optional<DueChoice>& due, const Calendar& calendar) {
    task.setDueDate(due ? std::optional(due->date(calendar)) : std::nullopt);
    task.setDueHasTime(due && due->time);
}

std::optional<DueChoice> readDue(std::string_view words, const ViewEnvironment& environment) {
    const Date now = environment.clock.now();
    const auto when = readWhen(trimBlanks(words), now, environment.calendar);
    if (!when)
        return std::nullopt;
    const Date date = when->nextDate(now, environment.calendar);
    DueChoice due{std::chrono::local_days{environment.calendar.day(date)}};
    if (when->hasTime())
        due.time = timeOfDay(date, environment.calendar);
    return due;
}

} // namespace quillorn
