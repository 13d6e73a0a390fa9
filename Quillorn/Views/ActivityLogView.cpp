#include "Views/ActivityLogView.h"

#include "Models/Client.h"
#include "Models/Formatters.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/TimeEntry.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Store/KeyMap.h"
#include "Store/MainContext.h"
#include "Store/StoreError.h"
#include "Views/ChangedKeys.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <iterator>
#include <tuple>
#include <type_traits>
#include <unordered_map>

namespace quillorn {

namespace {

using ActivityKind = ActivityItem::Kind;

/// How the marks of a type are read: key, first date, second date or whether it is over, task, project and client.
std::string_view selectFor(const EntityType& type) {
    if (&type == &ProjectTask::entityType())
        return "SELECT it.key, completedAt, it.updatedAt, it.key, Project.key, client FROM ProjectTask AS it "
               "LEFT JOIN Project ON Project.key = it.project";
    if (&type == &TimeEntry::entityType())
        return "SELECT it.key, startTime, endTime, task, Project.key, client FROM TimeEntry AS it "
               "LEFT JOIN ProjectTask ON ProjectTask.key = task "
               "LEFT JOIN Project ON Project.key = COALESCE(it.project, ProjectTask.project)";
    if (&type == &Note::entityType())
        return "SELECT it.key, it.updatedAt, NULL, task, Project.key, client FROM Note AS it "
               "LEFT JOIN ProjectTask ON ProjectTask.key = task "
               "LEFT JOIN Project ON Project.key = COALESCE(it.project, ProjectTask.project)";
    if (&type == &Project::entityType())
        return "SELECT key, updatedAt, NULL, NULL, key, client FROM Project AS it";
    return "SELECT key, updatedAt, NULL, NULL, NULL, key FROM Client AS it";
}

/// The same where all are read, of what the row itself says: to look up the owners of each is most of the work.
std::string_view selectAllOf(const EntityType& type) {
    if (&type == &ProjectTask::entityType())
        return "SELECT key, completedAt, updatedAt, key, project, NULL FROM ProjectTask";
    if (&type == &TimeEntry::entityType())
        return "SELECT key, startTime, endTime, task, project, NULL FROM TimeEntry";
    if (&type == &Note::entityType())
        return "SELECT key, updatedAt, NULL, task, project, NULL FROM Note";
    return selectFor(type);
}

bool isTask(ActivityKind kind) {
    return kind == ActivityKind::taskCompleted || kind == ActivityKind::taskUpdated;
}

auto orderOf(Date timestamp, ActivityKind kind, RowKey record) {
    return std::tuple(timestamp, kind, record);
}

} // namespace

ActivityLogView::ActivityLogView(MainContext& main, const Clock& clock, const Calendar& calendar, const Text& text,
                                 std::string clientFilterRaw)
    : m_main(main),
      m_clock(clock),
      m_calendar(calendar),
      m_text(text),
      m_filter(std::move(clientFilterRaw)) {
    load();
    m_changes = main.observe([this](const ChangeSet& changes) { follow(changes); });
}

void ActivityLogView::update() {
    if (m_isStale)
        return load();
    if (m_calendar.startOfDay(m_clock.now()) != m_day)
        m_shelf.clear(); // times of yesterday are said in other words
    std::erase_if(m_shelf, [](const auto& entry) { return entry.second.mark.isRunning; });
    show();
}

void ActivityLogView::setClientFilterRaw(std::string filter) {
    if (filter == m_filter)
        return;
    m_filter = std::move(filter);
    m_limit = pageSize;
    show();
}

std::vector<ActivityLogView::FilterChoice> ActivityLogView::filterChoices() const {
    auto clients = m_main.context().fetch<Client>();
    sortByName(clients, m_text);
    std::vector<FilterChoice> choices{{std::nullopt, std::string(allClients)}};
    for (const Client* client : clients)
        choices.push_back({client->id(), client->name()});
    return choices;
}

void ActivityLogView::showMore() {
    m_limit += pageSize;
    show();
}

std::string_view ActivityLogView::emptyMessage() const {
    return UUID::parse(m_filter) ? "No activity for this client yet" : "Activity will appear here as you work";
}

void ActivityLogView::read(const EntityType& type, const std::string& condition, const SQLValue& value,
                           std::vector<Mark>& marks) const {
    const StatementLoan rows = m_main.context().statement(condition.empty() ? std::string(selectAllOf(type))
                                                                            : std::string(selectFor(type)) + condition);
    if (!condition.empty())
        rows->bindValue(1, value);
    const auto date = [&](int column) { return Date(std::chrono::microseconds(rows->integer(column))); };
    const bool isTask = &type == &ProjectTask::entityType();
    const bool isEntry = &type == &TimeEntry::entityType();
    const ActivityKind kind = isEntry                           ? ActivityKind::timeEntry
                              : &type == &Note::entityType()    ? ActivityKind::noteUpdated
                              : &type == &Project::entityType() ? ActivityKind::projectUpdated
                                                                : ActivityKind::clientUpdated;
    while (rows->step()) {
        Mark mark{date(1), rows->integer(0), rows->integer(3), rows->integer(4), rows->integer(5), kind};
        if (!isTask) {
            mark.isRunning = isEntry && rows->isNull(2);
            marks.push_back(mark);
            continue;
        }
        const bool isCompleted = !rows->isNull(1);
        mark.kind = ActivityKind::taskCompleted;
        if (isCompleted)
            marks.push_back(mark);
        mark.kind = ActivityKind::taskUpdated;
        mark.timestamp = date(2);
        if (!isCompleted || isEditedAside(date(1), date(2)))
            marks.push_back(mark);
    }
}

void ActivityLogView::load() {
    m_isStale = true;
    try {
        std::vector<Mark> marks;
        for (const EntityType* type : {&ProjectTask::entityType(), &TimeEntry::entityType(), &Note::entityType(),
                                       &Project::entityType(), &Client::entityType()})
            read(*type, "", {}, marks);
        addOwners(marks);
        m_marks = std::move(marks);
        std::ranges::sort(m_marks, {},
                          [](const Mark& mark) { return orderOf(mark.timestamp, mark.kind, mark.record); });
        m_isStale = false;
    } catch (const StoreError&) {
        // It shows what it had, and reads anew when the store has changed again or time has moved on.
    }
    m_shelf.clear();
    show();
}

void ActivityLogView::addOwners(std::vector<Mark>& marks) {
    KeyMap<RowKey> projects; // of tasks
    KeyMap<RowKey> clients;  // of projects
    for (const Mark& mark : marks)
        if (isTask(mark.kind))
            projects[mark.record] = mark.project;
        else if (mark.kind == ActivityKind::projectUpdated)
            clients[mark.record] = mark.client;
    for (Mark& mark : marks) {
        if (mark.project == 0)
            if (const RowKey* project = projects.find(mark.task))
                mark.project = *project;
        if (const RowKey* client = clients.find(mark.project))
            mark.client = *client;
    }
}

void ActivityLogView::follow(const ChangeSet& changes) {
    if (m_isStale || changes.isEverything)
        return load();
    Changed changed{changedKeys(changes, ProjectTask::entityType()), changedKeys(changes, TimeEntry::entityType()),
                    changedKeys(changes, Note::entityType()), changedKeys(changes, Project::entityType()),
                    changedKeys(changes, Client::entityType())};
    if (changed.tasks.empty() && changed.entries.empty() && changed.notes.empty() && changed.projects.empty() &&
        changed.clients.empty())
        return;
    try {
        const auto marks = readChanged(changed);
        if (!marks)
            return load();
        std::erase_if(m_marks, [&](const Mark& mark) { return isOf(mark, changed); });
        for (const Mark& mark : *marks) {
            const auto key = [](const Mark& each) { return orderOf(each.timestamp, each.kind, each.record); };
            m_marks.insert(std::ranges::upper_bound(m_marks, key(mark), {}, key), mark);
        }
    } catch (const StoreError&) {
        return load();
    }
    std::erase_if(m_shelf, [&](const auto& entry) {
        return isOf(entry.second.mark, changed) || mentions(entry.second.mark, changed);
    });
    show();
}

std::optional<std::vector<ActivityLogView::Mark>> ActivityLogView::readChanged(Changed& changed) const {
    std::vector<Mark> marks;
    const auto readKeys = [&](const EntityType& type, const std::vector<RowKey>& keys) {
        if (!keys.empty())
            read(type, " WHERE it.key IN (SELECT value FROM json_each(?))", keyList(keys), marks);
    };
    readKeys(ProjectTask::entityType(), changed.tasks);
    readKeys(Project::entityType(), changed.projects);
    readKeys(Client::entityType(), changed.clients);
    const auto moved = movedTasks(marks, changed);
    if (!moved)
        return std::nullopt;
    addOfTasks("TimeEntry", *moved, changed.entries);
    addOfTasks("Note", *moved, changed.notes);
    readKeys(TimeEntry::entityType(), changed.entries);
    readKeys(Note::entityType(), changed.notes);
    return marks;
}

void ActivityLogView::addOfTasks(std::string_view table, const std::vector<RowKey>& tasks,
                                 std::vector<RowKey>& keys) const {
    if (tasks.empty())
        return;
    const StatementLoan rows = m_main.context().statement(
        fmt::format("SELECT key FROM {} WHERE task IN (SELECT value FROM json_each(?))", table));
    rows->bind(1, std::string_view(keyList(tasks)));
    while (rows->step())
        keys.push_back(rows->integer(0));
    std::ranges::sort(keys);
    keys.erase(std::ranges::unique(keys).begin(), keys.end());
}

std::optional<std::vector<RowKey>> ActivityLogView::movedTasks(const std::vector<Mark>& read,
                                                               const Changed& changed) const {
    std::unordered_map<RowKey, RowKey> projects; // of tasks, as they were
    std::unordered_map<RowKey, RowKey> clients;  // of projects
    if (!changed.tasks.empty() || !changed.projects.empty())
        for (const Mark& mark : m_marks) {
            if (isTask(mark.kind) && isAmong(mark.record, changed.tasks))
                projects[mark.record] = mark.project;
            else if (mark.kind == ActivityKind::projectUpdated && isAmong(mark.record, changed.projects))
                clients[mark.record] = mark.client;
        }
    std::vector<RowKey> moved;
    for (const Mark& mark : read) {
        const auto former = isTask(mark.kind) ? projects.find(mark.record) : projects.end();
        if (former != projects.end() && former->second != mark.project)
            moved.push_back(mark.record);
        const auto owner = mark.kind == ActivityKind::projectUpdated ? clients.find(mark.record) : clients.end();
        if (owner != clients.end() && owner->second != mark.client)
            return std::nullopt;
    }
    return moved;
}

bool ActivityLogView::isOf(const Mark& mark, const Changed& changed) {
    switch (mark.kind) {
    case ActivityKind::taskCompleted:
    case ActivityKind::taskUpdated:
        return isAmong(mark.record, changed.tasks);
    case ActivityKind::timeEntry:
        return isAmong(mark.record, changed.entries);
    case ActivityKind::noteUpdated:
        return isAmong(mark.record, changed.notes);
    case ActivityKind::projectUpdated:
        return isAmong(mark.record, changed.projects);
    case ActivityKind::clientUpdated:
        return isAmong(mark.record, changed.clients);
    }
    return false;
}

bool ActivityLogView::mentions(const Mark& mark, const Changed& changed) {
    return isAmong(mark.task, changed.tasks) || isAmong(mark.project, changed.projects) ||
           isAmong(mark.client, changed.clients);
}

void ActivityLogView::show() {
    const auto id = UUID::parse(m_filter);
    const Client* client = id ? m_main.context().find<Client>(*id) : nullptr;
    const RowKey key = client != nullptr ? client->key() : 0;
    std::vector<Mark> left;
    if (id && key != 0)
        std::ranges::copy_if(m_marks, std::back_inserter(left), [&](const Mark& mark) { return mark.client == key; });
    const std::span<const Mark> marks = id ? std::span<const Mark>(left) : std::span<const Mark>(m_marks);

    ActivityDashboardHeader::KindCounts kinds{};
    for (const Mark& mark : marks)
        ++kinds[static_cast<std::size_t>(mark.kind)];
    const auto placeOf = [&](Date date) { return std::ranges::lower_bound(marks, date, {}, &Mark::timestamp); };
    const Date now = m_clock.now();
    m_header.emplace([&](Date from, Date end) { return static_cast<std::size_t>(placeOf(end) - placeOf(from)); }, kinds,
                     now, m_calendar);
    m_day = m_calendar.startOfDay(now);
    m_count = marks.size();
    m_shown = std::min(m_limit, m_count);
    m_hasRunning = std::ranges::any_of(marks.last(m_shown), &Mark::isRunning);
    showRows(marks.last(m_shown));
    m_observers.tell();
}

/// In one statement for each type, where rowOf() would need one for each record.
void ActivityLogView::fetchRecords(std::span<const Mark> marks) const {
    Changed wanted;
    for (const Mark& mark : marks) {
        if (m_shelf.contains({mark.kind, mark.record}))
            continue;
        std::array lists = {&wanted.tasks, &wanted.tasks,    &wanted.entries,
                            &wanted.notes, &wanted.projects, &wanted.clients};
        lists[static_cast<std::size_t>(mark.kind)]->push_back(mark.record);
    }
    const auto fetch = [&]<class Type>(std::type_identity<Type>, const std::vector<RowKey>& keys) {
        if (keys.size() > 1)
            (void)m_main.context().fetch<Type>(
                {.where = "key IN (SELECT value FROM json_each(?))", .values = {keyList(keys)}});
    };
    fetch(std::type_identity<ProjectTask>(), wanted.tasks);
    fetch(std::type_identity<TimeEntry>(), wanted.entries);
    fetch(std::type_identity<Note>(), wanted.notes);
    fetch(std::type_identity<Project>(), wanted.projects);
    fetch(std::type_identity<Client>(), wanted.clients);
}

void ActivityLogView::showRows(std::span<const Mark> marks) {
    fetchRecords(marks);
    const Date now = m_clock.now();
    Shelf shelf;
    std::array<std::vector<Row>, 4> sections;
    for (auto mark = marks.rbegin(); mark != marks.rend(); ++mark) {
        const std::pair place(mark->kind, mark->record);
        const auto made = m_shelf.find(place);
        std::optional<Row> row = made != m_shelf.end() ? std::optional(std::move(made->second.row)) : rowOf(*mark);
        if (!row)
            continue; // it has gone since, and the view is about to hear of it
        const DateGroup group = dateGroup(mark->timestamp, now, m_calendar);
        std::vector<Row>& section = sections[static_cast<std::size_t>(group)];
        if (section.empty())
            section.push_back(
                {.id = std::string(labelOf(group)), .isHeading = true, .title = std::string(labelOf(group))});
        section.push_back(*row);
        shelf.emplace(place, Shown{*mark, std::move(*row)});
    }
    m_shelf = std::move(shelf);
    std::vector<Row> rows;
    for (std::vector<Row>& section : sections)
        std::ranges::move(section, std::back_inserter(rows));
    m_rows.assign(std::move(rows));
}

std::optional<ActivityLogView::Row> ActivityLogView::rowOf(const Mark& mark) const {
    const Date now = m_clock.now();
    ModelContext& context = m_main.context();
    const auto row = [&](const Entity* record, const auto& describe) -> std::optional<Row> {
        if (record == nullptr)
            return std::nullopt;
        ActivityItem item = describe();
        return Row{.id = std::move(item.id),
                   .title = std::move(item.title),
                   .subtitle = item.subtitle.value_or(""),
                   .time = smartDate(mark.timestamp, now, m_calendar),
                   .icon = item.icon,
                   .color = std::move(item.iconColor),
                   .kind = item.kind,
                   .record = record->id()};
    };
    switch (mark.kind) {
    case ActivityKind::taskCompleted:
    case ActivityKind::taskUpdated: {
        const auto* task = context.find<ProjectTask>(mark.record);
        return row(task, [&] { return activityItem(*task, mark.kind); });
    }
    case ActivityKind::timeEntry: {
        const auto* entry = context.find<TimeEntry>(mark.record);
        return row(entry, [&] { return activityItem(*entry, now); });
    }
    case ActivityKind::noteUpdated: {
        const auto* note = context.find<Note>(mark.record);
        return row(note, [&] { return activityItem(*note); });
    }
    case ActivityKind::projectUpdated: {
        const auto* project = context.find<Project>(mark.record);
        return row(project, [&] { return activityItem(*project); });
    }
    case ActivityKind::clientUpdated: {
        const auto* client = context.find<Client>(mark.record);
        return row(client, [&] { return activityItem(*client); });
    }
    }
    return std::nullopt;
}

} // namespace quillorn
