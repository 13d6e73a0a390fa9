#include "Views/QuickAddView.h"

#include "Models/Formatters.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TaskSentence.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Records/Edits.h"
#include "Records/SentenceRequest.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"
#include "Views/EditHistory.h"

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace quillorn {

namespace {

/// More than any sentence; what is longer, as pasted by mistake, is a title and not read.
constexpr std::size_t mostCharacters = 2000;

bool mayRename(const ChangeSet& changes) {
    return changes.isEverything || std::ranges::any_of(changes.rows, [](const ChangeSet::Row& row) {
               return row.type == &Project::entityType() || row.type == &Tag::entityType();
           });
}

} // namespace

QuickAddView::QuickAddView(const ViewEnvironment& environment)
    : m_environment(environment),
      m_names(TaskNames::of(environment.main.context(), environment.text)),
      m_changes(environment.main.observe([this](const ChangeSet& changes) {
          if (!mayRename(changes))
              return;
          m_names = TaskNames::of(m_environment.main.context(), m_environment.text);
          read();
          m_observers.tell();
      })) {}

void QuickAddView::read() {
    m_understood = {};
    if (m_text.size() > mostCharacters)
        m_understood.title = m_text;
    else
        m_understood =
            readTaskSentence(m_text, m_names, m_environment.clock.now(), m_environment.calendar, m_environment.text);
}

void QuickAddView::setText(std::string text) {
    m_text = std::move(text);
    m_error.clear();
    read();
    m_observers.tell();
}

std::vector<QuickAddView::Chip> QuickAddView::chips() const {
    std::vector<Chip> chips;
    if (m_understood.projectName)
        chips.push_back({"folder", *m_understood.projectName, "green"});
    if (const auto& due = m_understood.dueDate) {
        std::string words = dueLabel(*due, m_environment.clock.now(), m_environment.calendar);
        if (m_understood.dueHasTime)
            words += " " + m_environment.calendar.format(*due, "h:mm a");
        chips.push_back({"calendar", std::move(words), "amber"});
    }
    if (m_understood.priority)
        chips.push_back({"flag.fill", std::string(label(*m_understood.priority)), "red"});
    for (const std::string& tag : m_understood.tagNames)
        chips.push_back({"", "#" + tag, "accent"});
    return chips;
}

bool QuickAddView::canAdd() const {
    return !trimBlanks(m_understood.title).empty();
}

std::optional<UUID> QuickAddView::add() {
    if (!canAdd())
        return std::nullopt;
    std::optional<UUID> added;
    try {
        CreateTaskRequest request = requestOf(m_understood, m_environment.main.context(), m_environment.settings);
        if (!m_notes.empty())
            request.description = m_notes;
        const std::vector<std::string> faults = request.faults();
        if (!faults.empty())
            throw std::runtime_error(faults.front());
        m_environment.history.perform("Add Task", [&](ModelContext& store, Date now) {
            ProjectTask& task = createTask(store, request, now);
            task.setDueHasTime(m_understood.dueHasTime);
            added = task.id();
        });
    } catch (const std::exception& error) {
        m_error = error.what();
        m_observers.tell();
        return std::nullopt;
    }
    m_notes.clear();
    setText("");
    return added;
}

std::optional<UUID> QuickAddView::addAndStart() {
    const std::optional<UUID> added = add();
    ModelContext& context = m_environment.main.context();
    if (auto* task = added ? context.find<ProjectTask>(*added) : nullptr) {
        m_environment.timer.start(*task, context);
        m_environment.main.save();
    }
    return added;
}

} // namespace quillorn
