#pragma once

#include "Store/Entity.h"

#include <string>

namespace quillorn {

class Project;
class ProjectTask;

/// A text on a project or, with a task, a comment on that task.
class Note final : public Entity {
  public:
    struct Arguments {
        std::string title = "Untitled Note";
        std::string content{};
        Project* project = nullptr;
        ProjectTask* task = nullptr;
    };

    static const EntityType& entityType();

    const std::string& title() const { return m_title; }
    void setTitle(std::string title);
    const std::string& content() const { return m_content; }
    void setContent(std::string content);
    Date createdAt() const { return m_createdAt; }
    Date updatedAt() const { return m_updatedAt; }
    void setUpdatedAt(Date date);
    bool isPinned() const { return m_isPinned; }
    void setPinned(bool pinned);
    /// Turns the pin over and notes the change.
    void togglePin(Date now);

    Project* project() const;
    void setProject(Project* project);
    ProjectTask* task() const;
    void setTask(ProjectTask* task);

    /// The content on one line, cut to 250 characters.
    std::string preview() const;
    /// The heading in lists.
    std::string displayTitle() const;
    /// The line under that heading.
    std::string listPreview() const;
    std::string activitySummary() const;

  private:
    friend class ModelContext;
    struct Table;

    Note() = default;
    void initialize(Arguments arguments, Date now);
    /// The title without blanks around it; empty for an untitled note.
    std::string_view givenTitle() const;

    std::string m_title = "Untitled Note";
    std::string m_content;
    Date m_createdAt{};
    Date m_updatedAt{};
    bool m_isPinned = false;
    Reference<Project> m_project;
    Reference<ProjectTask> m_task;
};

} // namespace quillorn
