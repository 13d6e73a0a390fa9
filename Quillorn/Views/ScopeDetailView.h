#pragma once

#include "AI/AIEnvironment.h"
#include "AI/ChatContext.h"
#include "Models/TaskActions.h"
#include "Views/AIChatView.h"
#include "Views/DetailView.h"
#include "Views/NoteListView.h"
#include "Views/TaskListView.h"
#include "Views/TimeDashboard.h"

#include <memory>
#include <span>

namespace quillorn {

/// What the screens of a client, a project and a tag have in common: a name that is edited in place.
class NamedDetailView : public DetailView {
  public:
    enum class Field { name, description };
    const EditedText& field(Field field) const { return m_fields.at(static_cast<std::size_t>(field)); }
    void type(Field field, std::string text);
    /// Keeps what was typed; false where it can't be, as error() says: then it stays in the field.
    bool leave(Field field);
    bool leaveAll() { return leave(Field::name) && leave(Field::description); }
    void revert(Field field);

    virtual bool isGone() const = 0;
    const std::string& color() const { return m_color; }
    virtual void setColor(const std::string& color) = 0;
    /// The line under the name.
    const std::string& subtitle() const { return m_subtitle; }
    /// What to ask before remove(); absent where there is nothing any more.
    virtual std::optional<Confirmation> deletion() const = 0;
    virtual void remove() = 0;

  protected:
    using DetailView::DetailView;

    void showNames(const std::string& name, const std::string& description, const std::string& color);
    void setSubtitle(std::string words) { m_subtitle = std::move(words); }
    /// Checks and keeps a text; false where it is refused.
    virtual bool write(Field field, const std::string& text) = 0;

  private:
    std::array<EditedText, 2> m_fields;
    std::string m_color;
    std::string m_subtitle;
};

/// What the screens of a client and of a project have in common: tabs, with time, notes and chat made when they are
/// first looked at, as is the list of tasks.
class ScopeDetailView : public NamedDetailView {
  public:
    /// The tag of the tab that shows, which the window keeps; the first one where it keeps none of them.
    std::string_view tab() const;
    /// A tag that is unknown changes nothing.
    void selectTab(std::string_view tag);
    virtual std::span<const DetailTab> tabs() const = 0;

    const std::vector<DetailFigure>& figures() const { return m_figures; }
    bool isArchived() const { return m_isArchived; }
    /// "Archive" or "Unarchive".
    std::string_view archiveButton() const { return m_isArchived ? "Unarchive" : "Archive"; }
    virtual void setArchived(bool isArchived) = 0;

    TaskListView& tasks();
    TimeDashboard& time();
    NoteListView& notes();
    AIChatView& chat();

  protected:
    /// `tabSetting` is the value of the window that holds the tab.
    ScopeDetailView(const ViewEnvironment& environment, const AIEnvironment& ai, SceneStorage& scene,
                    ChatContext subject, const Setting& tabSetting);

    void showFigures(std::vector<DetailFigure> figures, bool isArchived);

  private:
    AIEnvironment m_ai;
    SceneStorage& m_scene;
    ChatContext m_subject;
    const Setting& m_tabSetting;
    bool m_isArchived = false;
    std::vector<DetailFigure> m_figures;
    std::unique_ptr<TaskListView> m_tasks;
    std::unique_ptr<TimeDashboard> m_time;
    std::unique_ptr<NoteListView> m_notes;
    std::unique_ptr<AIChatView> m_chat;
};

} // namespace quillorn
