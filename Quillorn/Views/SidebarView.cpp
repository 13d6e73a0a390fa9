#include "Views/SidebarView.h"

#include "Models/Client.h"
#include "Models/CollapsedGroups.h"
#include "Models/DeletionQuestions.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Models/TaskTotals.h"
#include "Platform/Clock.h"
#include "Platform/SettingsStore.h"
#include "Services/DayChangeObserver.h"
#include "Views/EditHistory.h"
#include "Views/TaskMembership.h"

#include <algorithm>
#include <utility>

namespace quillorn {

namespace {

using RowKind = SidebarRow::Kind;
using Disclosure = SidebarRow::Disclosure;

const Setting& expansionOf(SidebarSection section) {
    switch (section) {
    case SidebarSection::smartLists:
        return setting("sidebarSmartListsExpanded");
    case SidebarSection::clients:
        return setting("sidebarClientsExpanded");
    case SidebarSection::unassigned:
        return setting("sidebarUnassignedExpanded");
    case SidebarSection::tags:
        return setting("sidebarTagsExpanded");
    case SidebarSection::archived:
        break;
    }
    return setting("sidebarArchivedExpanded");
}

ObservedCondition todayCount(const ViewEnvironment& environment) {
    const Query query = todayCountQuery(TaskMoment::at(environment.clock.now(), environment.calendar));
    return {.where = query.where, .values = query.values};
}

SidebarRow addRow(RowKind kind, SidebarSection section, const char* title) {
    return {.id = {kind, section}, .title = title, .symbol = "plus"};
}

SidebarRow projectRow(const Project& project, SidebarSection section, std::uint32_t depth) {
    return {.id = {RowKind::project, section, project.id()},
            .depth = depth,
            .title = project.name(),
            .symbol = "folder.fill",
            .color = project.color()};
}

} // namespace

std::optional<SidebarItem> SidebarRow::item() const {
    switch (id.kind) {
    case RowKind::smartList:
        return SidebarItem{id.item, {}};
    case RowKind::client:
        return SidebarItem{SidebarItem::Kind::client, id.record};
    case RowKind::project:
        return SidebarItem{SidebarItem::Kind::project, id.record};
    case RowKind::tag:
        return SidebarItem{SidebarItem::Kind::tag, id.record};
    default:
        return std::nullopt;
    }
}

SidebarView::SidebarView(const ViewEnvironment& environment, SceneStorage& scene, NotificationCenter& notifications)
    : m_environment(environment),
      m_scene(scene),
      m_clients(environment.main),
      m_projects(environment.main),
      m_groups(environment.main),
      m_tags(environment.main),
      m_today(environment.main, ProjectTask::entityType(), todayCount(environment)),
      m_expanded(scene.ids(setting("expandedClientIDs"))) {
    const auto follow = [this](const RowSteps&) { layOut(); };
    m_observations.push_back(m_clients.observe(follow));
    m_observations.push_back(m_projects.observe(follow));
    m_observations.push_back(m_groups.observe(follow));
    m_observations.push_back(m_tags.observe(follow));
    m_observations.push_back(m_today.observe([this](std::size_t) { layOut(); }));
    m_observations.push_back(environment.days.observe([this] { dayChanged(); }));
    m_observations.push_back(environment.settings.observe(environment.queue, [this] { layOut(); }));
    m_observations.push_back(notifications.observe(
        "newClient", [this](const Notification&) { add(RowKind::addClient); }, &environment.queue));
    layOut();
}

void SidebarView::dayChanged() {
    m_today.assign(todayCount(m_environment));
}

void SidebarView::layOut() {
    m_rows.assign(build());
}

std::vector<SidebarRow> SidebarView::build() const {
    std::vector<SidebarRow> rows;
    addSection(rows, SidebarSection::smartLists, "Smart Lists");
    if (isExpanded(SidebarSection::smartLists))
        addSmartLists(rows);
    addSection(rows, SidebarSection::clients, "Clients");
    if (isExpanded(SidebarSection::clients)) {
        addClients(rows, SidebarSection::clients);
        rows.push_back(addRow(RowKind::addClient, SidebarSection::clients, "Add Client"));
    }
    addSection(rows, SidebarSection::unassigned, "Unassigned");
    if (isExpanded(SidebarSection::unassigned)) {
        addScope(rows, SidebarSection::unassigned, nullptr, 0);
        rows.push_back(addRow(RowKind::addProject, SidebarSection::unassigned, "Add Project"));
    }
    addSection(rows, SidebarSection::tags, "Tags");
    if (isExpanded(SidebarSection::tags)) {
        addTags(rows);
        rows.push_back(addRow(RowKind::addTag, SidebarSection::tags, "Add Tag"));
    }
    addSection(rows, SidebarSection::archived, "Archived");
    if (isExpanded(SidebarSection::archived)) {
        addClients(rows, SidebarSection::archived);
        addArchivedProjects(rows);
    }
    return rows;
}

void SidebarView::addSection(std::vector<SidebarRow>& rows, SidebarSection section, std::string_view title) const {
    const bool isOpen = isExpanded(section);
    rows.push_back({.id = {RowKind::section, section},
                    .disclosure = isOpen ? Disclosure::open : Disclosure::closed,
                    .title = std::string(title),
                    .help = (isOpen ? "Collapse " : "Expand ") + std::string(title)});
}

void SidebarView::addSmartLists(std::vector<SidebarRow>& rows) const {
    for (const SidebarItem::Kind kind : smartListKinds) {
        SidebarRow row{.id = {RowKind::smartList, SidebarSection::smartLists, {}, kind},
                       .title = std::string(textsOf(kind).label),
                       .symbol = std::string(textsOf(kind).symbol)};
        if (kind == SidebarItem::Kind::today && m_today.value() > 0)
            row.countText = std::to_string(m_today.value());
        rows.push_back(std::move(row));
    }
}

void SidebarView::addClients(std::vector<SidebarRow>& rows, SidebarSection section) const {
    std::vector<const Client*> clients;
    for (std::size_t place = 0; place < m_clients.size(); ++place)
        if (m_clients[place].isArchived() == (section == SidebarSection::archived))
            clients.push_back(&m_clients[place]);
    sortByName(clients, m_environment.text);
    for (const Client* client : clients) {
        const bool isOpen = m_expanded.contains(client->id());
        rows.push_back({.id = {RowKind::client, section, client->id()},
                        .disclosure = isOpen ? Disclosure::open : Disclosure::closed,
                        .title = client->name(),
                        .symbol = client->icon(),
                        .color = client->color()});
        if (isOpen)
            addScope(rows, section, client, 1);
    }
}

ScopeLayout SidebarView::layoutOf(const Client* client) const {
    std::vector<Project*> projects;
    for (std::size_t place = 0; place < m_projects.size(); ++place)
        if (Project& project = m_projects[place]; !project.isArchived() && project.client() == client)
            projects.push_back(&project);
    const auto id = client != nullptr ? std::optional(client->id()) : std::nullopt;
    std::vector<ProjectDivider*> groups;
    for (std::size_t place = 0; place < m_groups.size(); ++place)
        if (m_groups[place].clientID() == id)
            groups.push_back(&m_groups[place]);
    return scopeLayout(projects, groups, m_environment.text);
}

void SidebarView::addScope(std::vector<SidebarRow>& rows, SidebarSection section, const Client* client,
                           std::uint32_t depth) const {
    const ScopeLayout layout = layoutOf(client);
    for (const Project* project : layout.loose)
        rows.push_back(projectRow(*project, section, depth));
    for (std::size_t place = 0; place < layout.groups.size(); ++place)
        addGroup(rows, section, layout, place, depth);
}

void SidebarView::addGroup(std::vector<SidebarRow>& rows, SidebarSection section, const ScopeLayout& layout,
                           std::size_t place, std::uint32_t depth) const {
    const GroupHeaderRow head = groupHeader(layout, place, isCollapsed(layout.groups[place].group->id()));
    rows.push_back({.id = {RowKind::group, section, head.group},
                    .depth = depth,
                    .disclosure = head.isCollapsed ? Disclosure::closed : Disclosure::open,
                    .title = head.title,
                    .symbol = GroupHeaderRow::symbol,
                    .countText = head.memberCount,
                    .help = head.disclosureLabel,
                    .isRenaming = m_renaming == head.group});
    if (!head.isCollapsed)
        for (const Project* member : layout.groups[place].members)
            rows.push_back(projectRow(*member, section, depth + 1));
}

void SidebarView::addTags(std::vector<SidebarRow>& rows) const {
    std::vector<const Tag*> tags;
    tags.reserve(m_tags.size());
    for (std::size_t place = 0; place < m_tags.size(); ++place)
        tags.push_back(&m_tags[place]);
    sortByName(tags, m_environment.text);
    for (const Tag* tag : tags)
        rows.push_back({.id = {RowKind::tag, SidebarSection::tags, tag->id()},
                        .title = tag->name(),
                        .symbol = "tag.fill",
                        .color = tag->color()});
}

void SidebarView::addArchivedProjects(std::vector<SidebarRow>& rows) const {
    std::vector<Project*> archived;
    for (std::size_t place = 0; place < m_projects.size(); ++place)
        if (m_projects[place].isArchived())
            archived.push_back(&m_projects[place]);
    for (const Project* project : scopeLayout(archived, {}, m_environment.text).loose)
        rows.push_back(projectRow(*project, SidebarSection::archived, 0));
}

bool SidebarView::isExpanded(SidebarSection section) const {
    return m_scene.boolean(expansionOf(section));
}

void SidebarView::toggleSection(SidebarSection section) {
    m_scene.set(expansionOf(section), Json(!isExpanded(section)));
    layOut();
}

bool SidebarView::isCollapsed(const UUID& group) const {
    return CollapsedGroups(Settings(m_environment.settings).text(setting("collapsedGroupIDs"))).contains(group);
}

void SidebarView::toggleGroup(const UUID& group) {
    Settings settings(m_environment.settings);
    CollapsedGroups collapsed(settings.text(setting("collapsedGroupIDs")));
    collapsed.toggle(group);
    settings.set(setting("collapsedGroupIDs"), Json(collapsed.text()));
}

void SidebarView::toggle(const SidebarRow::Id& row) {
    if (row.kind == RowKind::group) {
        toggleGroup(row.record);
    } else {
        if (m_expanded.erase(row.record) == 0)
            m_expanded.insert(row.record);
        m_scene.set(setting("expandedClientIDs"), m_expanded);
    }
    layOut();
}

void SidebarView::add(SidebarRow::Kind kind) {
    const auto of = [&] {
        if (kind == RowKind::addClient)
            return SidebarSheet::Kind::client;
        return kind == RowKind::addProject ? SidebarSheet::Kind::project : SidebarSheet::Kind::tag;
    };
    m_sheet = SidebarSheet{of()};
    m_observers.tell();
}

void SidebarView::closeSheet() {
    m_sheet.reset();
    m_observers.tell();
}

void SidebarView::finishRenaming(const std::string& title) {
    const auto group = std::exchange(m_renaming, std::nullopt);
    if (group)
        ProjectScope(m_environment, std::nullopt).renameGroup(*group, title);
    layOut();
    m_observers.tell();
}

void SidebarView::cancelRenaming() {
    m_renaming.reset();
    layOut();
    m_observers.tell();
}

std::optional<Confirmation> SidebarView::deletion() const {
    if (!m_atStake)
        return std::nullopt;
    ModelContext& context = m_environment.main.context();
    const UUID& id = m_atStake->record;
    if (m_atStake->kind == RowKind::client) {
        const auto* client = context.find<Client>(id);
        return client != nullptr ? std::optional(deletionOfClient(*client)) : std::nullopt;
    }
    if (m_atStake->kind == RowKind::project) {
        const auto* project = context.find<Project>(id);
        return project != nullptr ? std::optional(deletionOfProject(*project)) : std::nullopt;
    }
    auto* tag = context.find<Tag>(id);
    if (tag == nullptr)
        return std::nullopt;
    return deletionOfTag(*tag, TagCounts(context, {tag}).of(*tag));
}

void SidebarView::confirmDeletion() {
    const auto row = std::exchange(m_atStake, std::nullopt);
    if (!row)
        return;
    ModelContext& context = m_environment.main.context();
    Entity* record = nullptr;
    if (row->kind == RowKind::client)
        record = context.find<Client>(row->record);
    else if (row->kind == RowKind::project)
        record = context.find<Project>(row->record);
    else if (row->kind == RowKind::tag)
        record = context.find<Tag>(row->record);
    if (record != nullptr)
        context.remove(*record);
    m_environment.main.save();
    m_observers.tell();
}

void SidebarView::cancelDeletion() {
    m_atStake.reset();
    m_observers.tell();
}

} // namespace quillorn
