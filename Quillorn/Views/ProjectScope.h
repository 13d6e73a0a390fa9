#pragma once

#include "Models/ProjectOrder.h"
#include "Platform/UUID.h"
#include "Views/ViewEnvironment.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

/// The head of a group of projects, ready to show.
struct GroupHeaderRow {
    static constexpr const char* symbol = "chevron.right";
    static constexpr const char* prompt = "Group name";

    UUID group;
    /// "Group" where it has no name.
    std::string title;
    std::string memberCount;
    bool isCollapsed = false;
    /// "Expand group" or "Collapse group".
    std::string disclosureLabel;
    bool canMoveUp = false;
    bool canMoveDown = false;

    friend bool operator==(const GroupHeaderRow&, const GroupHeaderRow&) = default;
};

/// Where a project can be put by menu.
struct ProjectOrderMenu {
    static constexpr const char* currentSymbol = "checkmark";

    struct Destination {
        std::optional<UUID> group; // absent for "None"
        std::string title;
        bool isCurrent = false;

        friend bool operator==(const Destination&, const Destination&) = default;
    };

    bool canMoveUp = false;
    bool canMoveDown = false;
    std::vector<Destination> moveToGroup;

    friend bool operator==(const ProjectOrderMenu&, const ProjectOrderMenu&) = default;
};

GroupHeaderRow groupHeader(const ScopeLayout& layout, std::size_t place, bool isCollapsed);
ProjectOrderMenu projectOrderMenu(const ScopeLayout& layout, const Project& project);

enum class Direction { up, down };

/// The manual order of the projects of one client, or of those without one, as the sidebar and the client's tab change
/// it. What is not in the scope is not moved. Each call is one step to undo.
class ProjectScope {
  public:
    ProjectScope(const ViewEnvironment& environment, std::optional<UUID> client)
        : m_environment(environment),
          m_client(client) {}

    /// Of the projects that are not archived, as last saved.
    ScopeLayout layout() const;

    void moveProject(const UUID& project, Direction direction);
    void moveToGroup(const UUID& project, const std::optional<UUID>& group);
    /// A project that is dropped on another one takes its place, in its group too.
    void dropProject(const UUID& dragged, const UUID& target);
    void moveGroup(const UUID& group, Direction direction);
    /// A group that is dropped on the head of another one takes its place.
    void dropGroup(const UUID& dragged, const UUID& target);
    /// The id of a group without a name, which is to be edited at once.
    std::optional<UUID> createGroup();
    void renameGroup(const UUID& group, const std::string& title);
    void ungroup(const UUID& group);

  private:
    ProjectDivider* group(const ScopeLayout& layout, const UUID& id) const;

    ViewEnvironment m_environment;
    std::optional<UUID> m_client;
};

} // namespace quillorn
