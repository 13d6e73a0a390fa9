#include "Views/ClientDetailView.h"

#include "Models/CollapsedGroups.h"
#include "Models/DeletionQuestions.h"
#include "Models/Formatters.h"
#include "Models/ProjectOrder.h"
#include "Models/ProjectTask.h"
#include "Models/Settings.h"
#include "Models/TimeEntry.h"
#include "Platform/Clock.h"
#include "Platform/SettingsStore.h"
#include "Records/ClientRequests.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"

#include <fmt/core.h>

namespace quillorn {

ClientDetailView::ClientDetailView(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                                   const UUID& client)
    : ScopeDetailView(environment, ai, scene, {ChatContext::Kind::client, client}, setting("clientDetailTabs")),
      m_client(environment.main, {.where = "id = ?", .values = {client}}),
      m_projects(environment.main,
                 {.where = "NOT isArchived AND client IN (SELECT key FROM Client WHERE id = ?)", .values = {client}}),
      m_groups(environment.main, {.where = "clientID = ?", .values = {client}}),
      m_settingsChanges(environment.settings.observe(environment.queue, [this] { showProjects(); })) {
    follow(m_client);
    follow(m_projects);
    follow(m_groups);
    follow(ProjectTask::entityType()); // for the sums
    follow(TimeEntry::entityType());
    show();
}

void ClientDetailView::show() {
    Client* shown = client();
    if (shown == nullptr)
        return;
    showNames(shown->name(), shown->clientDescription().value_or(""), shown->color());
    m_icon = shown->icon();
    m_totals.emplace(context(), std::vector{shown}, environment().clock.now());
    const ClientTotals totals = m_totals->of(*shown);
    const auto projects = static_cast<std::size_t>(totals.activeProjectCount);
    const auto open = static_cast<std::size_t>(totals.activeTaskCount);
    setSubtitle(fmt::format("{} · {}", counted(projects, "project"), counted(open, "open task")));
    showFigures({{"Projects", fmt::format("{}", projects), fmt::format("{} in all", totals.projectCount)},
                 {"Open", fmt::format("{}", open), open == 1 ? "task" : "tasks"},
                 {"Completed", fmt::format("{}", totals.totalTaskCount - totals.activeTaskCount),
                  fmt::format("of {}", counted(static_cast<std::size_t>(totals.totalTaskCount), "task"))},
                 {"Total Tracked", hoursAndMinutes(totals.totalTimeSpent), ""}},
                shown->isArchived());
    showProjects();
}

void ClientDetailView::showProjects() {
    if (!m_totals)
        return;
    std::vector<Project*> projects;
    projects.reserve(m_projects.size());
    for (std::size_t place = 0; place < m_projects.size(); ++place)
        projects.push_back(&m_projects[place]);
    std::vector<ProjectDivider*> groups;
    groups.reserve(m_groups.size());
    for (std::size_t place = 0; place < m_groups.size(); ++place)
        groups.push_back(&m_groups[place]);
    const ScopeLayout layout = scopeLayout(projects, groups, environment().text);
    const CollapsedGroups collapsed(Settings(environment().settings).text(setting("collapsedGroupIDs")));

    std::vector<Row> rows;
    const auto add = [&](const Project& project, bool isInGroup) {
        const ProjectTotals sums = m_totals->projects().of(project);
        Row row{.id = project.id(), .isInGroup = isInGroup, .name = project.name(), .color = project.color()};
        row.detail =
            fmt::format("{} open · {}", sums.taskCount - sums.completedTaskCount, hoursAndMinutes(sums.totalTimeSpent));
        if (sums.taskCount > 0)
            row.progress = static_cast<double>(sums.completedTaskCount) / static_cast<double>(sums.taskCount);
        rows.push_back(std::move(row));
    };
    for (const Project* project : layout.loose)
        add(*project, false);
    for (const auto& [group, members] : layout.groups) {
        const bool isCollapsed = collapsed.contains(group->id());
        rows.push_back({.id = group->id(),
                        .isGroup = true,
                        .isCollapsed = isCollapsed,
                        .name = group->title().empty() ? std::string(untitledGroup) : group->title(),
                        .detail = fmt::format("{}", members.size())});
        if (!isCollapsed)
            for (const Project* project : members)
                add(*project, true);
    }
    m_rows.assign(std::move(rows));
}

void ClientDetailView::toggleGroup(const UUID& group) {
    Settings values(environment().settings);
    CollapsedGroups collapsed(values.text(setting("collapsedGroupIDs")));
    collapsed.toggle(group);
    values.set(setting("collapsedGroupIDs"), collapsed.text());
    showProjects();
}

bool ClientDetailView::write(Field field, const std::string& text) {
    UpdateClientRequest request;
    (field == Field::name ? request.name : request.description) = text;
    return change("Edit Client", request);
}

bool ClientDetailView::change(std::string name, const UpdateClientRequest& request) {
    return !refuse(request.faults()) && perform(std::move(name), [&](ModelContext& records, Date now) {
        updateClient(records, findOrThrow<Client>(records, id()), request, now);
    });
}

void ClientDetailView::setColor(const std::string& color) {
    UpdateClientRequest request;
    request.color = color;
    change("Edit Client", request);
}

void ClientDetailView::setIcon(const std::string& icon) {
    UpdateClientRequest request;
    request.icon = icon;
    change("Edit Client", request);
}

void ClientDetailView::setArchived(bool isArchived) {
    UpdateClientRequest request;
    request.isArchived = isArchived;
    change(isArchived ? "Archive Client" : "Unarchive Client", request);
}

std::optional<Confirmation> ClientDetailView::deletion() const {
    return isGone() ? std::nullopt : std::optional(deletionOfClient(*client()));
}

void ClientDetailView::remove() {
    if (!isGone())
        DetailView::remove(*client());
}

} // namespace quillorn
