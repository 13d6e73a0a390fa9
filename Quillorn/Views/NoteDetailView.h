#pragma once

#include "Models/Note.h"
#include "Models/TaskActions.h"
#include "Views/DetailView.h"
#include "Views/RecordForm.h"
#include "Views/SceneStorage.h"

namespace quillorn {

/// A note: its text is edited as plain text, and read as Markdown. Fields are kept when they are left.
class NoteDetailView final : public DetailView {
  public:
    static constexpr std::string_view titlePrompt = "Untitled Note";
    static constexpr std::string_view contentPrompt = "Write in Markdown";
    static constexpr std::string_view previewLabel = "Preview";
    static constexpr std::string_view gone = "This note was deleted";

    NoteDetailView(const ViewEnvironment& environment, SceneStorage& scene, const UUID& note);

    bool isGone() const { return note() == nullptr; }

    enum class Field { title, content };
    const EditedText& field(Field field) const { return m_fields.at(static_cast<std::size_t>(field)); }
    void type(Field field, std::string text);
    /// Keeps what was typed; false where it can't be, as error() says: then it stays in the field.
    bool leave(Field field);
    bool leaveAll();
    void revert(Field field);

    /// Whether Markdown is shown, which the window keeps; what was typed is kept before.
    bool isPreview() const;
    void setPreview(bool isPreview);
    /// Markdown, to be drawn without anything that it refers to.
    const std::string& preview() const { return field(Field::content).text(); }

    bool isPinned() const { return m_isPinned; }
    static constexpr std::string_view pinButton(bool isPinned) { return isPinned ? "Unpin" : "Pin"; }
    /// "Edited 9:05 AM".
    const std::string& edited() const { return m_edited; }
    /// To its project, or to the task that it comments.
    const std::vector<PathStep>& path() const { return m_path; }

    void togglePin();
    std::vector<FormChoice> projectChoices() const;
    /// To no project without one.
    void move(const std::optional<UUID>& project);
    std::optional<Confirmation> deletion() const;
    void remove();

  private:
    using Edit = std::function<void(Note& note, Date now)>;

    Note* note() const { return m_note.size() > 0 ? &m_note[0] : nullptr; }
    bool edit(std::string name, const Edit& edit);
    void show() override;

    SceneStorage& m_scene;
    ObservedQuery<Note> m_note;
    std::array<EditedText, 2> m_fields;
    std::string m_edited;
    std::vector<PathStep> m_path;
    bool m_isPinned = false;
};

} // namespace quillorn
