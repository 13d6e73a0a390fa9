#include "Views/EditHistory.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"

#include <fmt/core.h>
#include <utility>

namespace quillorn {

namespace {

using Way = RecordedEdit::Way;
using Conflict = RecordedEdit::Conflict;

template <class Type>
std::string named(ModelContext& context, const UUID& id, const char* kind, const std::string& (Type::*name)() const) {
    const Type* record = context.find<Type>(id);
    return record != nullptr ? fmt::format("the {} “{}”", kind, (record->*name)()) : fmt::format("the {}", kind);
}

/// What people call it: "the task “Call Anna”".
std::string wordsFor(ModelContext& context, const Conflict& conflict) {
    const EntityType* type = conflict.type;
    if (type == &ProjectTask::entityType())
        return named(context, conflict.id, "task", &ProjectTask::title);
    if (type == &Project::entityType())
        return named(context, conflict.id, "project", &Project::name);
    if (type == &ProjectDivider::entityType())
        return named(context, conflict.id, "group", &ProjectDivider::title);
    if (type == &Client::entityType())
        return named(context, conflict.id, "client", &Client::name);
    if (type == &Tag::entityType())
        return named(context, conflict.id, "tag", &Tag::name);
    if (type == &Note::entityType())
        return "the note";
    return type == &TimeEntry::entityType() ? "the time entry" : "the record";
}

std::string reasonOf(ModelContext& context, const Conflict& conflict) {
    const std::string words = wordsFor(context, conflict);
    switch (conflict.kind) {
    case Conflict::Kind::missing:
        return words + " was deleted meanwhile";
    case Conflict::Kind::changed:
        return words + " was changed meanwhile";
    case Conflict::Kind::inUse:
        break;
    }
    return words + " is in use meanwhile";
}

} // namespace

EditHistory::EditHistory(MainContext& main, TimerService& timer, const Clock& clock)
    : m_main(main),
      m_timer(timer),
      m_clock(clock) {}

void EditHistory::perform(std::string name, const Edit& edit) {
    m_main.save(); // what is not saved yet is no part of this step
    const Date now = m_clock.now();
    RecordedEdit recorded = RecordedEdit::of(m_main.context(), "updatedAt", [&] { edit(m_main.context(), now); });
    if (recorded.isEmpty()) {
        m_main.save();
        return;
    }
    m_refusal.clear();
    m_undone.clear();
    if (recorded.isReversible())
        m_done.push_back({std::move(name), std::move(recorded)});
    if (m_done.size() > mostSteps)
        m_done.erase(m_done.begin());
    m_main.save();
    m_observers.tell();
}

std::string EditHistory::undoTitle() const {
    return canUndo() ? "Undo " + m_done.back().name : "Undo";
}

std::string EditHistory::redoTitle() const {
    return canRedo() ? "Redo " + m_undone.back().name : "Redo";
}

bool EditHistory::undo() {
    return take(m_done, m_undone, Way::back);
}

bool EditHistory::redo() {
    return take(m_undone, m_done, Way::forth);
}

bool EditHistory::take(std::vector<Step>& from, std::vector<Step>& to, Way way) {
    if (from.empty())
        return false;
    Step step = std::move(from.back());
    from.pop_back();
    m_main.save();
    m_refusal.clear();
    ModelContext& context = m_main.context();
    if (const auto conflict = step.edit.conflict(context, way)) {
        m_refusal = fmt::format("Can’t {} “{}”: {}.", way == Way::back ? "undo" : "redo", step.name,
                                reasonOf(context, *conflict));
        m_observers.tell();
        return false;
    }
    step.edit.apply(context, way, m_clock.now());
    m_main.save();
    // An entry may run again that the completion of its task had ended.
    if (step.edit.concerns(TimeEntry::entityType()) && !m_timer.isRunning())
        m_timer.resumeRunningEntry(context);
    to.push_back(std::move(step));
    m_observers.tell();
    return true;
}

} // namespace quillorn
