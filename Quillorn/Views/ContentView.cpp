#include "Views/ContentView.h"

#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Platform/MainQueue.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"
#include "Views/EditHistory.h"
#include "Views/TaskEdits.h"

#include <any>

namespace quillorn {

namespace {

template <class Type>
std::optional<UUID> storedRecord(ModelContext& context, const std::string& text) {
    const auto id = UUID::parse(text);
    return id && context.find<Type>(*id) != nullptr ? id : std::nullopt;
}

} // namespace

ContentView::ContentView(const ViewEnvironment& environment, SceneStorage& scene, NotificationCenter& notifications)
    : m_environment(environment),
      m_scene(scene) {
    listen(notifications);
}

void ContentView::listen(NotificationCenter& notifications) {
    const auto on = [&](std::string_view command, std::function<void()> work) {
        m_observations.push_back(
            notifications.observe(command, [work = std::move(work)](const Notification&) { work(); }));
    };
    on(commands::newProject, [this] { showSheet(Sheet::newProject); });
    on(commands::newTask, [this] { showSheet(Sheet::newTask); });
    on(commands::newNote, [this] { showSheet(Sheet::newNote); });
    on(commands::importReminders, [this] { showSheet(Sheet::reminderImport); });
    on(commands::showAllTasks, [this] { select(SidebarItem{SidebarItem::Kind::allTasks, {}}); });
    on(commands::showToday, [this] { select(SidebarItem{SidebarItem::Kind::today, {}}); });
    on(commands::showUpcoming, [this] { select(SidebarItem{SidebarItem::Kind::upcoming, {}}); });
    on(commands::toggleTimer, [this] { toggleTimer(); });
    on(commands::toggleTaskComplete, [this] { toggleTaskComplete(); });
    on(commands::logTime, [this] { logTime(); });
    m_observations.push_back(notifications.observe(commands::navigateToProject, [this](const Notification& command) {
        if (const auto* project = std::any_cast<Project*>(&command.object); project != nullptr && *project != nullptr)
            select(SidebarItem{SidebarItem::Kind::project, (*project)->id()});
    }));
}

void ContentView::restore() {
    ModelContext& context = m_environment.main.context();
    // Read before the selection clears them.
    const std::string task = m_scene.text(setting("selectedTaskID"));
    const std::string note = m_scene.text(setting("selectedNoteID"));
    const std::string entry = m_scene.text(setting("selectedTimeEntryID"));
    if (const auto item = SidebarItem::decode(m_scene.text(setting("sidebarSelectionKey")), context))
        select(item);
    m_environment.queue.post([this, task, note, entry, life = std::weak_ptr(m_life)] {
        if (life.expired())
            return;
        ModelContext& present = m_environment.main.context();
        if (const auto id = storedRecord<ProjectTask>(present, task))
            selectTask(id);
        if (const auto id = storedRecord<Note>(present, note))
            selectNote(id);
        if (const auto id = storedRecord<TimeEntry>(present, entry))
            selectTimeEntry(id);
        m_environment.timer.resumeRunningEntry(present);
    });
}

void ContentView::select(std::optional<SidebarItem> item) {
    if (item == m_sidebar)
        return;
    m_sidebar = item;
    m_scene.set(setting("sidebarSelectionKey"), Json(item ? item->key() : "today"));
    m_task.reset();
    m_note.reset();
    m_entry.reset();
    store(setting("selectedTaskID"), std::nullopt);
    store(setting("selectedNoteID"), std::nullopt);
    store(setting("selectedTimeEntryID"), std::nullopt);
    m_observers.tell();
}

void ContentView::store(const Setting& setting, const std::optional<UUID>& id) {
    m_scene.set(setting, Json(id ? id->string() : std::string()));
}

void ContentView::changeRecord(std::optional<UUID>& selection, std::optional<UUID> next, const Setting& setting) {
    if (selection == next)
        return;
    selection = next;
    store(setting, next);
    m_observers.tell();
}

void ContentView::selectTask(std::optional<UUID> task) {
    changeRecord(m_task, task, setting("selectedTaskID"));
}

void ContentView::selectNote(std::optional<UUID> note) {
    changeRecord(m_note, note, setting("selectedNoteID"));
}

void ContentView::selectTimeEntry(std::optional<UUID> entry) {
    changeRecord(m_entry, entry, setting("selectedTimeEntryID"));
}

ContentView::Column ContentView::contentColumn() const {
    using enum Column::Kind;
    if (!m_sidebar)
        return {.emptyState = {"sidebar.left", "Select an item", "Choose a project or smart list from the sidebar"}};
    if (const auto filter = m_sidebar->taskFilter())
        return {.kind = taskList, .filter = *filter};
    switch (m_sidebar->kind) {
    case SidebarItem::Kind::client:
        return {.kind = client, .record = m_sidebar->id};
    case SidebarItem::Kind::project:
        return {.kind = project, .record = m_sidebar->id};
    case SidebarItem::Kind::dailySummary:
        return {.kind = dailySummary};
    case SidebarItem::Kind::activityLog:
        return {.kind = activityLog};
    default:
        return {.kind = allNotes};
    }
}

ContentView::Detail ContentView::detailColumn() const {
    using enum Detail::Kind;
    ModelContext& context = m_environment.main.context();
    if (m_task && context.find<ProjectTask>(*m_task) != nullptr)
        return {.kind = task, .record = *m_task};
    if (m_note && context.find<Note>(*m_note) != nullptr)
        return {.kind = note, .record = *m_note};
    if (m_entry && context.find<TimeEntry>(*m_entry) != nullptr)
        return {.kind = timeEntry, .record = *m_entry};
    return {.emptyState = {"doc.text", "No Selection", "Select a task or note to view details"}};
}

void ContentView::showSheet(Sheet sheet) {
    m_sheet = sheet;
    m_sheetOpened = m_environment.clock.now();
    m_observers.tell();
}

void ContentView::closeSheet() {
    const Sheet closed = std::exchange(m_sheet, Sheet::none);
    if (closed == Sheet::newTask)
        selectNewestTask();
    m_observers.tell();
}

void ContentView::selectNewestTask() {
    const auto made = m_environment.main.context().fetch<ProjectTask>(
        {.where = "createdAt >= ?",
         .values = {std::int64_t{m_sheetOpened.time_since_epoch().count()}},
         .order = "createdAt DESC, key DESC LIMIT 1"});
    if (!made.empty())
        selectTask(made.front()->id());
}

void ContentView::toggleTimer() {
    TimerService& timer = m_environment.timer;
    ModelContext& context = m_environment.main.context();
    if (timer.isRunning()) {
        timer.stop(context);
    } else if (auto* task = m_task ? context.find<ProjectTask>(*m_task) : nullptr) {
        timer.start(*task, context);
        m_environment.main.save();
    }
}

void ContentView::toggleTaskComplete() {
    ModelContext& context = m_environment.main.context();
    const auto* task = m_task ? context.find<ProjectTask>(*m_task) : nullptr;
    if (task == nullptr)
        return;
    if (!task->isCompleted() && m_environment.timer.isActive(*task))
        m_environment.timer.stop(context);
    TaskEdits(m_environment).toggleCompleted({*m_task});
}

void ContentView::logTime() {
    const bool hasScope =
        m_sidebar && (m_sidebar->kind == SidebarItem::Kind::client || m_sidebar->kind == SidebarItem::Kind::project);
    if (hasScope || m_task)
        showSheet(Sheet::logTime);
}

ContentView::LogTarget ContentView::logTarget() const {
    if (m_task)
        return {.task = m_task};
    if (m_sidebar && m_sidebar->kind == SidebarItem::Kind::project)
        return {.project = m_sidebar->id};
    return {};
}

std::vector<ContentView::ClientChoice> ContentView::clientChoices() const {
    auto clients = m_environment.main.context().fetch<Client>({.where = "isArchived = 0"});
    sortByName(clients, m_environment.text);
    std::vector<ClientChoice> choices;
    choices.reserve(clients.size());
    for (const Client* client : clients)
        choices.push_back({client->id(), client->name()});
    return choices;
}

} // namespace quillorn
