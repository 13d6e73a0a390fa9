#pragma once

#include "Models/Client.h"

namespace quillorn {

class ProjectTask;

/// A coloured label on tasks, across projects.
class Tag final : public Entity {
  public:
    struct Arguments {
        std::string name{};
        std::string color = defaultColor;
    };

    static const EntityType& entityType();

    const std::string& name() const { return m_name; }
    void setName(std::string name);
    const std::string& color() const { return m_color; }
    void setColor(std::string color);
    Date createdAt() const { return m_createdAt; }
    Date updatedAt() const { return m_updatedAt; }
    void setUpdatedAt(Date date);

    const List<ProjectTask>& tasks() const;

  private:
    friend class ModelContext;
    struct Table;

    Tag() = default;
    void initialize(Arguments arguments, Date now);

    std::string m_name;
    std::string m_color = defaultColor;
    Date m_createdAt{};
    Date m_updatedAt{};
    List<ProjectTask> m_tasks;
};

} // namespace quillorn
