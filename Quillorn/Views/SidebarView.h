#pragma once

#include "Models/TaskActions.h"
#include "Platform/NotificationCenter.h"
#include "Platform/Observers.h"
#include "Store/ObservedQuery.h"
#include "Views/ObservableList.h"
#include "Views/ProjectScope.h"
#include "Views/SceneStorage.h"
#include "Views/SidebarItem.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class Client;
class Tag;

enum class SidebarSection : std::uint8_t { smartLists, clients, unassigned, tags, archived };

struct SidebarRow {
    enum class Kind : std::uint8_t { section, smartList, client, group, project, tag, addClient, addProject, addTag };
    enum class Disclosure : std::uint8_t { none, closed, open };

    struct Id {
        Kind kind;
        SidebarSection section;
        /// The client, group, project or tag; nil for the others.
        UUID record{};
        SidebarItem::Kind item = SidebarItem::Kind::today; // of a smart list

        friend bool operator==(const Id&, const Id&) = default;
    };

    Id id;
    std::uint32_t depth = 0;
    Disclosure disclosure = Disclosure::none;
    std::string title;
    std::string symbol{};
    std::string color{};
    /// Tasks of Today, members of a group; empty for none.
    std::string countText{};
    /// Of what discloses: "Expand group".
    std::string help{};
    /// Whether its title is being edited.
    bool isRenaming = false;

    /// What selecting the row selects.
    std::optional<SidebarItem> item() const;

    friend bool operator==(const SidebarRow&, const SidebarRow&) = default;
};

/// What a menu or a button of the sidebar does. Those that end in dots open a sheet or ask first.
enum class SidebarAction : std::uint8_t {
    newProject,
    newGroup,
    edit,
    archive,
    unarchive,
    remove,
    rename,
    toggle,
    moveUp,
    moveDown,
    moveToGroup,
    ungroup
};

struct SidebarMenuItem {
    SidebarAction action;
    std::string title;
    std::string symbol{};
    std::optional<UUID> group{}; // the destination of moveToGroup; absent for none

    friend bool operator==(const SidebarMenuItem&, const SidebarMenuItem&) = default;
};

/// A sheet that the sidebar asks for.
struct SidebarSheet {
    enum class Kind : std::uint8_t { client, project, tag };
    Kind kind;
    /// What is edited; absent for a new one.
    std::optional<UUID> record{};
    /// Whose new project it is.
    std::optional<UUID> client{};

    friend bool operator==(const SidebarSheet&, const SidebarSheet&) = default;
};

/// Smart lists, clients with their projects, unassigned projects, tags, the archive. Belongs to the main thread.
class SidebarView {
  public:
    SidebarView(const ViewEnvironment& environment, SceneStorage& scene, NotificationCenter& notifications);
    ~SidebarView() = default;
    SidebarView(const SidebarView&) = delete;
    SidebarView& operator=(const SidebarView&) = delete;

    ObservableList<SidebarRow>& rows() { return m_rows; }
    /// Told when anything but the rows has changed.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    bool isExpanded(SidebarSection section) const;
    void toggleSection(SidebarSection section);
    /// Of a client or a group.
    void toggle(const SidebarRow::Id& row);

    std::vector<SidebarMenuItem> menu(const SidebarRow::Id& row) const;
    void perform(SidebarAction action, const SidebarRow::Id& row, const std::optional<UUID>& group = std::nullopt);
    void add(SidebarRow::Kind kind);

    /// The group whose title is being edited.
    const std::optional<UUID>& renamingGroup() const { return m_renaming; }
    void finishRenaming(const std::string& title);
    void cancelRenaming();

    /// Where a row that is dropped on another one goes; `into` is for a project on a group.
    enum class DropPlace : std::uint8_t { none, into, above, below };
    DropPlace dropPlace(const SidebarRow::Id& dragged, const SidebarRow::Id& target) const;
    /// Does nothing where there is no such place.
    void drop(const SidebarRow::Id& dragged, const SidebarRow::Id& target);

    /// Whether tasks can be dropped on the row: on a project, to move them there; on a tag, to give it to them.
    static bool takesTasks(const SidebarRow::Id& row);
    void dropTasks(const std::vector<UUID>& tasks, const SidebarRow::Id& row);

    /// What the row offers for that key: to rename, or to edit; absent for what has no name of the user's.
    std::optional<SidebarAction> renaming(const SidebarRow::Id& row) const;
    /// One place up or down in the manual order; false, and nothing done, where there is none.
    bool move(const SidebarRow::Id& row, Direction direction);

    const std::optional<SidebarSheet>& sheet() const { return m_sheet; }
    void closeSheet();
    /// What to ask before what is at stake is deleted; absent when nothing is.
    std::optional<Confirmation> deletion() const;
    void confirmDeletion();
    void cancelDeletion();

  private:
    void layOut();
    std::vector<SidebarRow> build() const;
    void addSection(std::vector<SidebarRow>& rows, SidebarSection section, std::string_view title) const;
    void addSmartLists(std::vector<SidebarRow>& rows) const;
    void addClients(std::vector<SidebarRow>& rows, SidebarSection section) const;
    void addScope(std::vector<SidebarRow>& rows, SidebarSection section, const Client* client,
                  std::uint32_t depth) const;
    void addGroup(std::vector<SidebarRow>& rows, SidebarSection section, const ScopeLayout& layout, std::size_t place,
                  std::uint32_t depth) const;
    void addTags(std::vector<SidebarRow>& rows) const;
    void addArchivedProjects(std::vector<SidebarRow>& rows) const;
    ScopeLayout layoutOf(const Client* client) const;
    /// The scope in which a project or a group stands.
    ProjectScope scopeOf(const SidebarRow::Id& row) const;
    std::vector<SidebarMenuItem> projectMenu(const SidebarRow::Id& row) const;
    std::vector<SidebarMenuItem> groupMenu(const SidebarRow::Id& row) const;
    void setArchived(const SidebarRow::Id& row, bool archived);
    bool offers(const SidebarRow::Id& row, SidebarAction action) const;
    void toggleGroup(const UUID& group);
    bool isCollapsed(const UUID& group) const;
    void dayChanged();

    ViewEnvironment m_environment;
    SceneStorage& m_scene;
    ObservedQuery<Client> m_clients;
    ObservedQuery<Project> m_projects;
    ObservedQuery<ProjectDivider> m_groups;
    ObservedQuery<Tag> m_tags;
    ObservedCount m_today;
    IdSet m_expanded; // clients
    std::optional<UUID> m_renaming;
    std::optional<SidebarSheet> m_sheet;
    std::optional<SidebarRow::Id> m_atStake;
    ObservableList<SidebarRow> m_rows;
    Observers<> m_observers;
    std::vector<Observation> m_observations;
};

} // namespace quillorn

template <>
struct std::hash<quillorn::SidebarRow::Id> {
    std::size_t operator()(const quillorn::SidebarRow::Id& id) const noexcept {
        return std::hash<quillorn::UUID>()(id.record) ^ (static_cast<std::size_t>(id.kind) << 16U) ^
               (static_cast<std::size_t>(id.section) << 8U) ^ static_cast<std::size_t>(id.item);
    }
};
