#pragma once

#include "Models/ProjectDivider.h"
#include "Models/ProjectTotals.h"
#include "Views/ObservableList.h"
#include "Views/ScopeDetailView.h"

namespace quillorn {

struct UpdateClientRequest;

/// A client: overview, projects in their groups, time, notes and chat.
class ClientDetailView final : public ScopeDetailView {
  public:
    static constexpr std::string_view projectsTitle = "Projects";
    static constexpr std::string_view noProjectsTitle = "No Projects";
    static constexpr std::string_view noProjectsText = "Projects of this client stand here.";

    static constexpr std::array<DetailTab, 5> allTabs = {{{"overview", "Overview", "square.grid.2x2"},
                                                          {"projects", "Projects", "folder"},
                                                          {"time", "Time", "clock"},
                                                          {"notes", "Notes", "note.text"},
                                                          {"chat", "Chat", "sparkles"}}};
    static constexpr std::string_view untitledGroup = "Group";

    ClientDetailView(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                     const UUID& client);

    std::span<const DetailTab> tabs() const override { return allTabs; }
    bool isGone() const override { return client() == nullptr; }
    const std::string& icon() const { return m_icon; }
    void setIcon(const std::string& icon);
    void setColor(const std::string& color) override;
    void setArchived(bool isArchived) override;
    std::optional<Confirmation> deletion() const override;
    void remove() override;

    /// The header of a group, or a project; those in a group follow its header.
    struct Row {
        UUID id;
        bool isGroup = false;
        bool isInGroup = false;
        bool isCollapsed = false;
        std::string name{};
        std::string color{};
        /// Of a project "12 open · 128h 20m", of a group the number of its projects.
        std::string detail{};
        /// The completed part of a project, from 0 to 1.
        double progress = 0;

        friend bool operator==(const Row&, const Row&) = default;
    };
    /// Projects that are not archived: the loose ones, then the groups.
    ObservableList<Row>& projects() { return m_rows; }
    void toggleGroup(const UUID& group);

  protected:
    bool write(Field field, const std::string& text) override;

  private:
    Client* client() const { return m_client.size() > 0 ? &m_client[0] : nullptr; }
    bool change(std::string name, const UpdateClientRequest& request);
    void show() override;
    void showProjects();

    ObservedQuery<Client> m_client;
    ObservedQuery<Project> m_projects;
    ObservedQuery<ProjectDivider> m_groups;
    std::optional<ClientTotalsTable> m_totals; // absent while there has been no client
    std::string m_icon;
    ObservableList<Row> m_rows;
    Observation m_settingsChanges;
};

} // namespace quillorn
