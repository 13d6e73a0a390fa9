#include "Views/TaskDetailView.h"

#include "Models/Formatters.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/TaskRequests.h"
#include "Services/TimerService.h"
#include "Views/TimeEntryRules.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

namespace {

constexpr std::array<TaskDetailView::Field, 4> allFields = {
    TaskDetailView::Field::title, TaskDetailView::Field::description, TaskDetailView::Field::sourceTitle,
    TaskDetailView::Field::sourceURL};

/// Whose names a task shows; tags and parents are few, so that all is read again after theirs.
ObservedCondition oneTask(const UUID& id) {
    return {.where = "id = ?",
            .values = {id},
            .dependencies = {{&Project::entityType()},
                             {&Client::entityType()},
                             {&Tag::entityType()},
                             {&ProjectTask::entityType(), "parentTask IN changed"}}};
}

ObservedCondition ofTask(std::string_view column, const UUID& id) {
    return {.where = fmt::format("{} IN (SELECT key FROM ProjectTask WHERE id = ?)", column), .values = {id}};
}

bool isEarlierSubtask(const ProjectTask& a, const ProjectTask& b) {
    return std::pair(a.sortOrder(), a.createdAt()) < std::pair(b.sortOrder(), b.createdAt());
}

std::string dueWords(const ProjectTask& task, Date now, const Calendar& calendar) {
    if (!task.dueDate())
        return {};
    std::string words = dueLabel(*task.dueDate(), now, calendar);
    if (words == "Overdue")
        words = calendar.mediumDate(*task.dueDate());
    if (task.dueHasTime())
        words += ", " + calendar.format(*task.dueDate(), "h:mm a");
    return words;
}

const std::string& storedText(const ProjectTask& task, TaskDetailView::Field field) {
    static const std::string none;
    const auto orNone = [](const std::optional<std::string>& text) -> const std::string& {
        return text ? *text : none;
    };
    switch (field) {
    case TaskDetailView::Field::title:
        return task.title();
    case TaskDetailView::Field::description:
        return orNone(task.taskDescription());
    case TaskDetailView::Field::sourceTitle:
        return orNone(task.sourceTitle());
    case TaskDetailView::Field::sourceURL:
        return orNone(task.sourceURL());
    }
    return none;
}

UpdateTaskRequest requestOf(TaskDetailView::Field field, const std::string& text) {
    UpdateTaskRequest request;
    switch (field) {
    case TaskDetailView::Field::title:
        request.title = text;
        break;
    case TaskDetailView::Field::description:
        request.description = text;
        break;
    case TaskDetailView::Field::sourceTitle:
        request.sourceTitle = text;
        break;
    case TaskDetailView::Field::sourceURL:
        request.sourceURL = text;
        break;
    }
    return request;
}

} // namespace

TaskDetailView::TaskDetailView(const ViewEnvironment& environment, const UUID& task, std::function<APIConfig()> config)
    : DetailView(environment, task),
      m_config(std::move(config)),
      m_task(environment.main, oneTask(task)),
      m_subtasks(environment.main, ofTask("parentTask", task), isEarlierSubtask),
      m_entries(environment.main, ofTask("task", task),
                [](const TimeEntry& a, const TimeEntry& b) { return a.startTime() > b.startTime(); }),
      m_comments(environment.main, ofTask("task", task),
                 [](const Note& a, const Note& b) { return a.createdAt() < b.createdAt(); }),
      m_ticks(environment.timer.observe([this] { tick(); })) {
    follow(m_task);
    follow(m_subtasks);
    follow(m_entries);
    follow(m_comments);
    show();
}

void TaskDetailView::type(Field field, std::string text) {
    m_fields.at(static_cast<std::size_t>(field)).type(std::move(text));
    tell();
}

bool TaskDetailView::leave(Field field) {
    EditedText& edited = m_fields.at(static_cast<std::size_t>(field));
    if (!edited.isEdited()) {
        edited.revert();
        return true;
    }
    const UpdateTaskRequest request = requestOf(field, edited.text());
    if (isGone())
        refuse({std::string(gone)});
    else if (!refuse(request.faults()) &&
             edit("Edit Task", [&](ProjectTask& task, Date now) { updateTask(task.context(), task, request, now); })) {
        edited.revert();
        return true;
    }
    return false;
}

bool TaskDetailView::leaveAll() {
    return std::ranges::all_of(allFields, [this](Field field) { return leave(field); });
}

void TaskDetailView::revert(Field field) {
    m_fields.at(static_cast<std::size_t>(field)).revert();
    refuse({});
    tell();
}

void TaskDetailView::show() {
    const ProjectTask* shown = task();
    if (shown == nullptr)
        return; // what was typed can still be copied
    for (const Field field : allFields)
        m_fields.at(static_cast<std::size_t>(field)).show(storedText(*shown, field));
    showWords(*shown);
    showLists(*shown);
}

void TaskDetailView::showWords(const ProjectTask& task) {
    const Date now = environment().clock.now();
    const Calendar& calendar = environment().calendar;
    m_words = Words{.isCompleted = task.isCompleted(),
                    .statusLabel = std::string(label(task.status())),
                    .statusSymbol = std::string(symbol(task.status())),
                    .priorityLabel = std::string(label(task.priority())),
                    .priorityMark = std::string(mark(task.priority())),
                    .due = dueWords(task, now, calendar),
                    .isOverdue = task.isOverdue(now),
                    .created = smartDate(task.createdAt(), now, calendar),
                    .updated = smartDate(task.updatedAt(), now, calendar)};
    if (task.completedAt())
        m_words.completed = smartDate(*task.completedAt(), now, calendar);
    m_words.source = task.sourceTitle().value_or(task.sourceURL().value_or(""));
    m_words.sourceURL = task.sourceURL().value_or("");
    m_words.path = pathTo(task);
    std::size_t done = 0;
    for (std::size_t place = 0; place < m_subtasks.size(); ++place)
        done += m_subtasks[place].isCompleted() ? 1U : 0U;
    if (m_subtasks.size() > 0) {
        m_words.subtasks = fmt::format("{} of {}", done, m_subtasks.size());
        m_words.progress = static_cast<double>(done) / static_cast<double>(m_subtasks.size());
    }
    double seconds = 0;
    for (std::size_t place = 0; place < m_entries.size(); ++place)
        seconds += m_entries[place].duration(now);
    if (m_entries.size() > 0)
        m_words.time = shortForm(seconds);
    if (isTiming())
        m_words.clock = clockForm(environment().timer.elapsedTime());
}

void TaskDetailView::showLists(const ProjectTask& task) {
    const Date now = environment().clock.now();
    const Calendar& calendar = environment().calendar;
    std::vector<SubtaskRow> subtasks;
    for (std::size_t place = 0; place < m_subtasks.size(); ++place) {
        const ProjectTask& each = m_subtasks[place];
        subtasks.push_back({each.id(), each.title(), std::string(symbol(each.status())), each.isCompleted(),
                            fmt::format("{} {}", completionButton(each.isCompleted()), each.title())});
    }
    m_subtaskRows.assign(std::move(subtasks));
    std::vector<EntryRow> entries;
    for (std::size_t place = 0; place < m_entries.size(); ++place) {
        const TimeEntry& each = m_entries[place];
        std::string times = timeSpan(each.startTime(), each.endTime(), calendar);
        if (!calendar.isSameDay(each.startTime(), now))
            times.insert(0, smartDate(each.startTime(), now, calendar) + ", ");
        entries.push_back({each.id(), std::move(times),
                           each.isRunning() ? std::string(recording) : each.title().value_or(""),
                           clockForm(each.duration(now)), each.isRunning()});
    }
    m_entryRows.assign(std::move(entries));
    std::vector<CommentRow> comments;
    for (std::size_t place = 0; place < m_comments.size(); ++place) {
        const Note& each = m_comments[place];
        comments.push_back(
            {each.id(), smartDate(each.createdAt(), now, calendar), bounded(each.content(), mostCommentCharacters)});
    }
    m_commentRows.assign(std::move(comments));
    std::vector<Tag*> tags(task.tags().begin(), task.tags().end());
    sortByName(tags, environment().text);
    std::vector<FormChoice> chips;
    chips.reserve(tags.size());
    for (const Tag* each : tags)
        chips.push_back({each->id(), each->name(), each->color()});
    m_tagRows.assign(std::move(chips));
}

/// Each second while the timer runs: its task alone looks different then.
void TaskDetailView::tick() {
    if (isTiming() || !m_words.clock.empty())
        refresh();
}

bool TaskDetailView::edit(std::string name, const Edit& edit) {
    return perform(std::move(name),
                   [&](ModelContext& context, Date now) { edit(findOrThrow<ProjectTask>(context, id()), now); });
}

std::vector<FormChoice> TaskDetailView::projectChoices() const {
    const ProjectTask* shown = task();
    const Project* project = shown != nullptr ? shown->project() : nullptr;
    return quillorn::projectChoices(environment(), project != nullptr ? std::optional(project->id()) : std::nullopt);
}

void TaskDetailView::toggleCompleted() {
    const ProjectTask* shown = task();
    if (shown == nullptr)
        return;
    const bool completes = !shown->isCompleted();
    if (completes && isTiming())
        environment().timer.stop(context());
    edit(completes ? "Complete Task" : "Reopen Task",
         [=](ProjectTask& task, Date now) { task.setCompleted(completes, now); });
}

void TaskDetailView::setStatus(TaskStatus status) {
    edit("Change Status of Task", [=](ProjectTask& task, Date now) { task.setStatus(status, now); });
}

void TaskDetailView::setPriority(TaskPriority priority) {
    edit("Change Priority of Task", [=](ProjectTask& task, Date now) {
        task.setPriority(priority);
        task.setUpdatedAt(now);
    });
}

std::optional<DueChoice> TaskDetailView::due() const {
    return isGone() ? std::nullopt : DueChoice::of(*task(), environment().calendar);
}

void TaskDetailView::setDue(const std::optional<DueChoice>& due) {
    edit("Change Due Date of Task", [&](ProjectTask& task, Date now) {
        quillorn::setDue(task, due, environment().calendar);
        task.setUpdatedAt(now);
    });
}

bool TaskDetailView::setDueText(std::string_view words) {
    const bool isBlank = trimBlanks(words).empty();
    const auto due = isBlank ? std::nullopt : readDue(words, environment());
    if (!isBlank && !due)
        return false;
    setDue(due);
    return true;
}

void TaskDetailView::toggleTag(const UUID& tag) {
    edit("Change Tags of Task", [&](ProjectTask& task, Date now) {
        Tag& known = findOrThrow<Tag>(task.context(), tag);
        if (std::ranges::find(task.tags(), &known) != task.tags().end())
            removeTagFromTask(task, tag, now);
        else
            addTagsToTask(task, {&known}, now);
    });
}

void TaskDetailView::move(const std::optional<UUID>& project) {
    edit("Move Task",
         [&](ProjectTask& task, Date now) { moveTask(task, findLinked<Project>(task.context(), project), now); });
}

void TaskDetailView::setParent(const std::optional<UUID>& parent) {
    edit(parent ? "Move Task" : "Convert Task", [&](ProjectTask& task, Date now) {
        auto* above = findLinked<ProjectTask>(task.context(), parent);
        if (above != nullptr && faultOfParent(task, *above) != ParentFault::none)
            throw std::runtime_error("A task can’t stand under itself");
        task.setParentTask(above);
        task.setUpdatedAt(now);
    });
}

void TaskDetailView::addSubtask(const std::string& title) {
    CreateTaskRequest request;
    request.title = title;
    if (refuse(request.faults()))
        return;
    edit("Add Subtask", [&](ProjectTask& task, Date now) { createTaskUnder(task.context(), &task, request, now); });
}

void TaskDetailView::toggleSubtask(const UUID& subtask) {
    const auto* known = context().find<ProjectTask>(subtask);
    if (known == nullptr)
        return;
    const bool completes = !known->isCompleted();
    perform(completes ? "Complete Task" : "Reopen Task", [&](ModelContext& records, Date now) {
        findOrThrow<ProjectTask>(records, subtask).setCompleted(completes, now);
    });
}

bool TaskDetailView::isTiming() const {
    return !isGone() && environment().timer.isActive(*task());
}

void TaskDetailView::toggleTimer() {
    if (isGone())
        return;
    environment().timer.toggle(*task(), context());
    environment().main.save();
}

void TaskDetailView::addComment(const std::string& text) {
    edit("Add Comment", [&](ProjectTask& task, Date now) { quillorn::addComment(task, text, now); });
}

std::optional<Confirmation> TaskDetailView::deletionOfComment(const UUID& comment) const {
    const auto* note = context().find<Note>(comment);
    return note != nullptr ? std::optional(deletionOfNote(*note)) : std::nullopt;
}

void TaskDetailView::removeComment(const UUID& comment) {
    if (auto* note = context().find<Note>(comment))
        DetailView::remove(*note);
}

std::string TaskDetailView::copyForAgent() const {
    return isGone() ? std::string()
                    : TaskAgentClipboard::brief(*task(), m_config(), environment().clock.now(), environment().calendar);
}

std::optional<Confirmation> TaskDetailView::deletion() const {
    return isGone() ? std::nullopt : std::optional(deletionOfTask(*task()));
}

void TaskDetailView::remove() {
    if (!isGone())
        DetailView::remove(*task());
}

} // namespace quillorn
