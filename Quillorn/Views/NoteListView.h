#pragma once

#include "Models/Note.h"
#include "Models/TaskActions.h"
#include "Platform/Observers.h"
#include "Store/ObservedQuery.h"
#include "Views/ObservableList.h"
#include "Views/TaskListTexts.h"
#include "Views/ViewEnvironment.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// Whose notes a list holds.
struct NoteScope {
    enum class Kind { all, client, project };

    Kind kind = Kind::all;
    /// Of the client or project.
    UUID id{};
};

/// The notes of everything that is not archived, of a client or of a project; comments stand with their tasks. Pinned
/// ones first, then what was changed last. Belongs to the main thread.
class NoteListView {
  public:
    static constexpr std::string_view searchPrompt = "Search notes";
    static constexpr std::string_view newTitle = "Untitled Note";

    struct Row {
        UUID id;
        std::string title;
        std::string preview;
        std::string when;
        /// Of a list that holds those of several projects.
        std::string project{};
        std::string color{};
        bool isPinned = false;
        std::string_view pinButton{};

        friend bool operator==(const Row&, const Row&) = default;
    };

    NoteListView(const ViewEnvironment& environment, NoteScope scope);
    ~NoteListView() = default;
    NoteListView(const NoteListView&) = delete;
    NoteListView& operator=(const NoteListView&) = delete;

    /// Told when anything but the rows has changed.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }
    ObservableList<Row>& rows() { return m_rows; }

    const std::string& searchText() const { return m_searchText; }
    /// In title and content, case ignored.
    void setSearchText(std::string text);
    /// "12 notes".
    std::string countText() const;
    /// What stands in place of rows; absent where there are some.
    std::optional<EmptyState> emptyState() const;

    /// An empty note in the scope's project, and its id; absent where it could not be made.
    std::optional<UUID> add();
    void togglePin(const UUID& note);
    /// What to ask before remove(); absent for a note that is gone.
    std::optional<Confirmation> deletion(const UUID& note) const;
    void remove(const UUID& note);

  private:
    void show();
    Row rowOf(const Note& note) const;

    ViewEnvironment m_environment;
    NoteScope m_scope;
    std::string m_searchText;
    ObservedQuery<Note> m_notes;
    ObservableList<Row> m_rows;
    Observers<> m_observers;
    bool m_isBehind = false;
    Observation m_steps;
    Observation m_changes;
    Observation m_day;
};

} // namespace quillorn
