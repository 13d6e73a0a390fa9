#include "Views/DetailView.h"

#include "Models/ProjectTask.h"
#include "Platform/Text.h"
#include "Records/Lookup.h"
#include "Services/DayChangeObserver.h"
#include "Views/RecordForm.h"

#include <algorithm>
#include <fmt/core.h>
#include <unordered_set>

namespace quillorn {

std::vector<PathStep> pathTo(const Project* project) {
    std::vector<PathStep> path;
    if (project == nullptr)
        return path;
    if (const Client* client = project->client())
        path.push_back({client->id(), PathStep::Kind::client, client->name(), client->color()});
    path.push_back({project->id(), PathStep::Kind::project, project->name(), project->color()});
    return path;
}

std::vector<PathStep> pathTo(const ProjectTask& task) {
    std::vector<PathStep> above;
    std::unordered_set<const ProjectTask*> seen{&task}; // a chain may run into a circle
    for (const ProjectTask* each = task.parentTask(); each != nullptr && seen.insert(each).second;
         each = each->parentTask())
        above.push_back({each->id(), PathStep::Kind::task, each->title()});
    std::vector<PathStep> path = pathTo(task.project());
    path.insert(path.end(), above.rbegin(), above.rend());
    return path;
}

std::string counted(std::size_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string bounded(const std::string& text, std::size_t most) {
    if (text.size() <= most || characterCount(text) <= most)
        return text;
    return std::string(characterPrefix(text, most)) + "…";
}

DetailView::DetailView(const ViewEnvironment& environment, const UUID& id)
    : m_environment(environment),
      m_id(id),
      m_changes(environment.main.observe([this](const ChangeSet& changes) {
          const auto isFollowed = [this](const ChangeSet::Row& row) {
              return std::ranges::find(m_types, row.type) != m_types.end();
          };
          if (std::exchange(m_isBehind, false) || changes.isEverything || std::ranges::any_of(changes.rows, isFollowed))
              refresh();
      })),
      m_day(environment.days.observe([this] { refresh(); })) {}

void DetailView::refresh() {
    show();
    tell();
}

bool DetailView::perform(std::string name, const EditHistory::Edit& edit) {
    m_error.clear();
    try {
        m_environment.history.perform(std::move(name), edit);
    } catch (const RecordNotFound& gone) {
        m_error = wasDeleted(gone);
    } catch (const std::exception& error) {
        m_error = error.what();
    }
    refresh();
    return m_error.empty();
}

bool DetailView::refuse(const std::vector<std::string>& faults) {
    m_error.clear();
    for (const std::string& fault : faults)
        m_error += (m_error.empty() ? "" : "\n") + fault;
    if (!faults.empty())
        tell();
    return !faults.empty();
}

void DetailView::remove(Entity& record) {
    context().remove(record);
    m_environment.main.save();
    refresh();
}

} // namespace quillorn
