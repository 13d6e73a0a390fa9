#pragma once

#include "Models/Client.h"

#include <cstdint>

namespace quillorn {

class Note;
class ProjectTask;
class TimeEntry;

/// A body of work, for a client or unassigned.
class Project final : public Entity {
  public:
    struct Arguments {
        std::string name{};
        std::optional<std::string> projectDescription{};
        std::string color = defaultColor;
    };

    static const EntityType& entityType();

    const std::string& name() const { return m_name; }
    void setName(std::string name);
    const std::optional<std::string>& projectDescription() const { return m_projectDescription; }
    void setProjectDescription(std::optional<std::string> description);
    const std::string& color() const { return m_color; }
    void setColor(std::string color);
    Date createdAt() const { return m_createdAt; }
    Date updatedAt() const { return m_updatedAt; }
    void setUpdatedAt(Date date);
    bool isArchived() const { return m_isArchived; }
    void setArchived(bool archived);
    /// The place in the manual order of its scope or group.
    std::int64_t sortOrder() const { return m_sortOrder; }
    void setSortOrder(std::int64_t order);
    /// The id of a ProjectDivider, by value: it may name one that is gone.
    const std::optional<UUID>& groupID() const { return m_groupID; }
    void setGroupID(std::optional<UUID> group);

    Client* client() const;
    void setClient(Client* client);
    const List<ProjectTask>& tasks() const;
    const List<Note>& notes() const;
    const List<TimeEntry>& directTimeEntries() const;
    const List<ChatMessage>& chatMessages() const;

    /// Whether listings hide what is in it: the project or its client is archived.
    bool isHidden() const;
    /// Those of the tasks, then the direct ones; of entries with one id the first.
    std::vector<TimeEntry*> allTimeEntries() const;

  private:
    friend class ModelContext;
    struct Table;

    Project() = default;
    void initialize(Arguments arguments, Date now);

    std::string m_name;
    std::optional<std::string> m_projectDescription;
    std::string m_color = defaultColor;
    Date m_createdAt{};
    Date m_updatedAt{};
    bool m_isArchived = false;
    std::int64_t m_sortOrder = 0;
    std::optional<UUID> m_groupID;
    Reference<Client> m_client;
    List<ProjectTask> m_tasks;
    List<Note> m_notes;
    List<TimeEntry> m_directTimeEntries;
    List<ChatMessage> m_chatMessages;
};

} // namespace quillorn
