#pragma once

#include "Models/Tag.h"
#include "Views/ScopeDetailView.h"
#include "Views/TaskListView.h"

namespace quillorn {

/// A tag, over the list of its tasks.
class TagDetailView final : public NamedDetailView {
  public:
    TagDetailView(const ViewEnvironment& environment, SceneStorage& scene, const UUID& tag);

    bool isGone() const override { return tag() == nullptr; }
    void setColor(const std::string& color) override;
    std::optional<Confirmation> deletion() const override;
    void remove() override;

    TaskListView& tasks() { return m_tasks; }

  protected:
    bool write(Field field, const std::string& text) override;

  private:
    Tag* tag() const { return m_tag.size() > 0 ? &m_tag[0] : nullptr; }
    std::int64_t taskCount() const;
    void show() override;

    ObservedQuery<Tag> m_tag;
    TaskListView m_tasks;
};

} // namespace quillorn
