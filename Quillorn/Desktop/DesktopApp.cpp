#include "Desktop/DesktopApp.h"

#include "AI/AIEnvironment.h"
#include "API/APIServer.h"
#include "App/MachineServices.h"
#include "App/WindowOnBus.h"
#include "Models/TimeEntry.h"
#include "Services/TaskAgentClipboard.h"
#include "Store/MainContext.h"
#include "Views/GoToChoices.h"
#include "Views/MenuCommands.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QUrl>
#include <algorithm>
#include <iterator>

namespace quillorn {

namespace {

std::shared_ptr<LoginItem> loginItem(const Paths& paths) {
    return systemLoginItem(paths, {.identifier = windowbus::name,
                                   .name = "Quillorn",
                                   .program = QCoreApplication::applicationFilePath().toStdString()});
}

} // namespace

DesktopApp::DesktopApp(AppSession& world, const ViewEnvironment& environment, SystemLog& log, GlobalShortcut* shortcut)
    : m_world(world),
      m_environment(environment),
      m_scene(environment.settings),
      m_content(environment, m_scene, world.notifications()),
      m_sidebar(environment, m_scene, world.notifications()),
      m_timer({environment.main, environment.timer, environment.clock, environment.calendar, environment.text}),
      m_settingsTabs(environment.settings, environment.queue),
      m_generalSettings(environment.settings, environment.queue),
      m_desktopSettings(
          {environment.settings, environment.queue, world.app().background(), loginItem(world.paths()), shortcut}),
      m_apiSettings(world.app().apiServer(), environment.settings, environment.queue),
      m_syncSettings({world.app().machineServices()->syncMonitor(), environment.clock, environment.calendar}),
      m_backupSettings({world.app().backupService(), environment.settings, environment.queue, environment.clock, log}),
      m_notificationSettings(
          world.machine()->notifications,
          [&world] { world.app().machineServices()->notificationService().refreshAll(); }, environment.settings,
          environment.queue),
      m_aiSettings(world.app().aiEnvironment().httpClient, environment.settings),
      m_reminderSettings(world.app().reminderImport(), environment.settings, environment.clock) {
    m_observations.push_back(m_content.observe([this] { update(); }));
    m_observations.push_back(environment.history.observe(telling()));
    m_observations.push_back(world.app().apiServer().observe(telling()));
    m_observations.push_back(environment.days.observe([this] { dayChanged(); }));
    connect(&m_sidebar, &Screen::changed, this, &DesktopApp::showSheet);
    for (Screen* screen : {static_cast<Screen*>(&m_sidebar), static_cast<Screen*>(&m_timer),
                           static_cast<Screen*>(&m_settingsTabs), static_cast<Screen*>(&m_generalSettings),
                           static_cast<Screen*>(&m_desktopSettings), static_cast<Screen*>(&m_apiSettings),
                           static_cast<Screen*>(&m_backupSettings), static_cast<Screen*>(&m_notificationSettings),
                           static_cast<Screen*>(&m_aiSettings), static_cast<Screen*>(&m_reminderSettings)})
        watched(screen);
    update();
}

QString DesktopApp::selection() const {
    return m_content.sidebarSelection() ? toQString(m_content.sidebarSelection()->key()) : QString();
}

QString DesktopApp::title() const {
    return m_content.sidebarSelection() ? toQString(m_content.sidebarSelection()->label(m_environment.main.context()))
                                        : QString();
}

QString DesktopApp::column() const {
    constexpr const char* names[] = {"nothing",      "taskList",    "client",  "project",
                                     "dailySummary", "activityLog", "allNotes"};
    return names[static_cast<int>(m_content.contentColumn().kind)];
}

QString DesktopApp::serverState() const {
    const APIServer& server = m_world.app().apiServer();
    if (server.isRunning())
        return QString("API on port %1").arg(server.port());
    return server.lastError() ? QString("API: %1").arg(toQString(*server.lastError())) : QString("API is off");
}

bool DesktopApp::isServing() const {
    return m_world.app().apiServer().isRunning();
}

void DesktopApp::selectRow(int row) {
    if (const std::optional<SidebarItem> item = m_sidebar.item(row))
        m_content.select(*item);
}

void DesktopApp::selectNote(const QString& note) {
    m_content.selectTask(std::nullopt);
    m_content.selectNote(toId(note));
}

void DesktopApp::show(const QString& kind, const QString& record) {
    if (kind == "task")
        m_content.selectTask(toId(record));
    else if (kind == "note")
        selectNote(record);
    else if (const auto item = SidebarItem::decode((record.isEmpty() ? kind : kind + ":" + record).toStdString(),
                                                   m_environment.main.context()))
        m_content.select(*item);
}

void DesktopApp::showActivity(int kind, const QString& record) {
    switch (static_cast<ActivityItem::Kind>(kind)) {
    case ActivityItem::Kind::taskCompleted:
    case ActivityItem::Kind::taskUpdated:
        return show("task", record);
    case ActivityItem::Kind::noteUpdated:
        return show("note", record);
    case ActivityItem::Kind::projectUpdated:
        return show("project", record);
    case ActivityItem::Kind::clientUpdated:
        return show("client", record);
    case ActivityItem::Kind::timeEntry:
        return editEntry(record);
    }
}

void DesktopApp::command(const QString& name) {
    const std::string wanted = name.toStdString();
    const auto* command = std::ranges::find(menuCommands, wanted, &MenuCommand::name);
    if (command == std::end(menuCommands))
        return;
    if (command->isPosted)
        attempt([&] { m_world.notifications().post({.name = wanted, .object = {}, .userInfo = {}}); });
    else if (wanted == commands::undo)
        undo();
    else if (wanted == commands::redo)
        redo();
    else if (wanted == commands::quickAdd)
        openQuickAdd();
    else
        Q_EMIT commanded(name);
}

void DesktopApp::undo() {
    attempt([&] {
        if (!m_environment.history.undo())
            Q_EMIT failed(toQString(m_environment.history.refusal()));
    });
}

void DesktopApp::redo() {
    attempt([&] {
        if (!m_environment.history.redo())
            Q_EMIT failed(toQString(m_environment.history.refusal()));
    });
}

void DesktopApp::open(const QString& address) {
    const QUrl url(address);
    if (url.scheme() == "quillorn")
        show(url.host(), url.path().mid(1));
}

void DesktopApp::update() {
    if (m_shown != m_content.sidebarSelection()) {
        m_shown = m_content.sidebarSelection();
        showColumn(m_content.contentColumn());
    }
    showDetail();
    showSheet();
    Q_EMIT changed();
}

void DesktopApp::showColumn(const ContentView::Column& column) {
    using Kind = ContentView::Column::Kind;
    if (m_record)
        m_record->leaveAll();
    m_tasks.set(nullptr);
    m_notes.set(nullptr);
    m_record.set(nullptr);
    m_time.set(nullptr);
    m_chat.set(nullptr);
    m_summary.set(nullptr);
    m_activity.set(nullptr);
    const ViewEnvironment& all = m_environment;
    switch (column.kind) {
    case Kind::nothing:
        break;
    case Kind::taskList:
        showTasks(column.filter);
        break;
    case Kind::client:
    case Kind::project:
        showRecord(column.kind == Kind::project, column.record.value_or(UUID()));
        break;
    case Kind::dailySummary:
        m_summary.keep(0, [&all] { return new TodaySummaryScreen(all.main, all.clock, all.calendar); });
        m_summary->update();
        break;
    case Kind::activityLog:
        m_activity.keep(
            0, [this, &all] { return new ActivityLogScreen(all.main, m_scene, all.clock, all.calendar, all.text); });
        m_activity->update();
        break;
    case Kind::allNotes:
        showNotes({});
        break;
    }
}

void DesktopApp::showTasks(const TaskFilter& filter) {
    const auto make = [this, filter] { return watched(new TaskListScreen(m_environment, m_scene, filter)); };
    if (!filter.isSmartList())
        return m_tasks.setLater(make);
    m_tasks.keep(static_cast<int>(filter.kind), make);
    m_tasks->view().reopen();
}

void DesktopApp::showNotes(const NoteScope& scope) {
    m_notes.setLater([this, scope] { return watched(new NoteListScreen(m_environment, scope)); });
}

void DesktopApp::showRecord(bool isProject, const UUID& id) {
    showTasks({isProject ? TaskFilter::Kind::project : TaskFilter::Kind::client, id});
    showNotes({isProject ? NoteScope::Kind::project : NoteScope::Kind::client, id});
    const AIEnvironment assistant = m_world.app().aiEnvironment();
    m_record.set(watched(new RecordScreen(m_environment, assistant, m_scene, isProject, id)));
    const TimeScope scope{isProject ? TimeScope::Kind::project : TimeScope::Kind::client, id};
    m_time.setLater([this, scope] {
        return watched(new TimeDashboardScreen(m_environment.main, m_environment.clock, m_environment.calendar, scope));
    });
    const ChatContext subject{isProject ? ChatContext::Kind::project : ChatContext::Kind::client, id};
    m_chat.setLater([this, assistant, subject] { return watched(new ChatScreen(assistant, subject)); });
}

void DesktopApp::showDetail() {
    const std::optional<UUID>& task = m_content.selectedTask();
    if ((m_task ? m_task->taskId() : QString()) != textOf(task)) {
        if (m_task)
            m_task->leaveAll();
        const auto config = [this] {
            return APIConfig::fromSettings(m_world.settings(), QSysInfo::machineHostName().toStdString(), isServing());
        };
        m_task.set(task ? watched(new TaskDetailScreen(m_environment, *task, config)) : nullptr);
    }
    const std::optional<UUID>& note = m_content.selectedNote();
    if ((m_note ? m_note->noteId() : QString()) != textOf(note)) {
        if (m_note)
            m_note->leaveAll();
        m_note.set(note ? watched(new NoteScreen(m_environment, m_scene, *note)) : nullptr);
    }
}

void DesktopApp::showSheet() {
    using Sheet = ContentView::Sheet;
    if (m_form || m_entry)
        return;
    if (const QVariantMap sheet = m_sidebar.sheet(); !sheet.isEmpty()) {
        m_isSidebarsForm = true;
        const QString kind = sheet["kind"].toString();
        const std::optional<UUID> record = toId(sheet["record"].toString());
        FormScreen::Start start{.client = toId(sheet["client"].toString())};
        return openForm(record ? FormScreen::forRecord(m_environment, kind, *record)
                               : FormScreen::forNew(m_environment, kind, start));
    }
    m_isSidebarsForm = false;
    FormScreen::Start start;
    if (const auto& item = m_content.sidebarSelection()) {
        if (item->kind == SidebarItem::Kind::client)
            start.client = item->id;
        else if (item->kind == SidebarItem::Kind::project)
            start.project = item->id;
        else if (item->kind == SidebarItem::Kind::tag)
            start.tag = item->id;
    }
    switch (m_content.sheet()) {
    case Sheet::newProject:
        return openForm(FormScreen::forNew(m_environment, "project", start));
    case Sheet::newTask:
        return openForm(FormScreen::forNew(m_environment, "task", start));
    case Sheet::newNote:
        return openForm(FormScreen::forNew(m_environment, "note", start));
    case Sheet::logTime: {
        const ContentView::LogTarget target = m_content.logTarget();
        m_entry.set(watched(new TimeEntryScreen(entryEnvironment(), {target.project, target.task})));
        Q_EMIT changed();
        return;
    }
    case Sheet::reminderImport:
        return openReminderImport();
    case Sheet::none:
        return;
    }
}

QVariantMap DesktopApp::goToWords() {
    return {{"prompt", toVariant(goToPrompt)}, {"nothing", toVariant(goToNothing)}};
}

void DesktopApp::dropTasks(const QString& task, int row) {
    if (const std::optional<UUID> id = toId(task))
        m_sidebar.dropTasks(m_tasks ? m_tasks->view().targets(*id) : TaskIds{*id}, row);
}

void DesktopApp::openQuickAdd() {
    if (!m_quickAdd)
        m_quickAdd.set(watched(new QuickAddScreen(m_environment)));
    Q_EMIT changed();
    Q_EMIT commanded(toQString(commands::quickAdd));
}

void DesktopApp::closeQuickAdd() {
    m_quickAdd.set(nullptr);
    Q_EMIT changed();
}

void DesktopApp::openReminderImport() {
    if (m_reminderImport)
        return;
    m_reminderImport.set(watched(
        new ReminderImportScreen(m_world.app().reminderImport(), m_world.settings(), m_environment.main.context())));
    m_reminderImport->appear();
    Q_EMIT changed();
}

void DesktopApp::closeReminderImport() {
    m_reminderImport.set(nullptr);
    if (m_content.sheet() == ContentView::Sheet::reminderImport)
        m_content.closeSheet();
    Q_EMIT changed();
}

/// What the view models don't follow by themselves.
void DesktopApp::dayChanged() {
    if (m_time)
        m_time->update();
    if (m_summary)
        m_summary->update();
    if (m_activity)
        m_activity->update();
    Q_EMIT changed();
}

void DesktopApp::openForm(std::unique_ptr<FormScreen> form) {
    if (!form) {
        m_sidebar.closeSheet();
        return;
    }
    m_form.set(watched(form.release()));
    Q_EMIT changed();
}

void DesktopApp::closeForm(const QString& saved) {
    if (!m_form)
        return;
    const QString kind = m_form->kind();
    m_form.set(nullptr);
    if (m_isSidebarsForm)
        m_sidebar.closeSheet();
    else
        m_content.closeSheet();
    if (!saved.isEmpty() && kind != "task")
        show(kind, saved);
    Q_EMIT changed();
}

void DesktopApp::editEntry(const QString& entry) {
    const std::optional<UUID> id = toId(entry);
    const TimeEntry* found = id ? m_environment.main.context().find<TimeEntry>(*id) : nullptr;
    if (found == nullptr || m_form || m_entry)
        return;
    m_entry.set(watched(new TimeEntryScreen(entryEnvironment(), *found)));
    Q_EMIT changed();
}

void DesktopApp::closeEntry() {
    m_entry.set(nullptr);
    if (m_content.sheet() == ContentView::Sheet::logTime)
        m_content.closeSheet();
    Q_EMIT changed();
}

TimeEntryFormSheet::Environment DesktopApp::entryEnvironment() const {
    return {m_environment.main, m_environment.timer, m_environment.clock, m_environment.calendar, m_environment.text};
}

} // namespace quillorn
