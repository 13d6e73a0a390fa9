#pragma once

#include "Models/Project.h"
#include "Platform/Observers.h"
#include "Platform/UUID.h"
#include "Store/MainContext.h"
#include "Store/ObservedQuery.h"
#include "Views/EditHistory.h"
#include "Views/EditedText.h"
#include "Views/ViewEnvironment.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

/// A step of the way to a record.
struct PathStep {
    enum class Kind { client, project, task };

    UUID id;
    Kind kind = Kind::project;
    std::string name;
    std::string color{};

    friend bool operator==(const PathStep&, const PathStep&) = default;
};
std::vector<PathStep> pathTo(const Project* project);
/// Of a task: project, then the tasks above it.
std::vector<PathStep> pathTo(const ProjectTask& task);

/// A figure with its label, of an overview.
struct DetailFigure {
    std::string_view label;
    std::string value;
    std::string detail{};

    friend bool operator==(const DetailFigure&, const DetailFigure&) = default;
};
/// A tab of a detail screen.
struct DetailTab {
    std::string_view tag, label, symbol;
};

/// "3 projects", "1 project".
std::string counted(std::size_t count, std::string_view noun);
/// Cut to what a row can show.
std::string bounded(const std::string& text, std::size_t most);

/// What detail screens of one record have in common: they follow it and what belongs to it, and show it anew once a
/// turn. Belongs to the main thread.
class DetailView {
  public:
    static constexpr std::string_view deleteButton = "Delete";
    static constexpr std::string_view cancelButton = "Cancel";

    DetailView(const DetailView&) = delete;
    DetailView& operator=(const DetailView&) = delete;
    virtual ~DetailView() = default;

    /// Told when anything has changed, lists apart.
    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }
    const UUID& id() const { return m_id; }
    /// Why the last edit was not kept; empty when it was.
    const std::string& error() const { return m_error; }

  protected:
    DetailView(const ViewEnvironment& environment, const UUID& id);

    const ViewEnvironment& environment() const { return m_environment; }
    ModelContext& context() const { return m_environment.main.context(); }
    void tell() const { m_observers.tell(); }
    /// Rows of the query have changed: all is shown when the turn's changes have come in.
    template <class Type>
    void follow(ObservedQuery<Type>& query) {
        m_tokens.push_back(query.observe([this](const RowSteps&) { m_isBehind = true; }));
    }
    /// The same for any row of a type, where what is shown adds many of them up.
    void follow(const EntityType& type) { m_types.push_back(&type); }
    /// Takes what the records hold by now.
    virtual void show() = 0;
    void refresh();

    /// Runs the edit as one step to undo, and shows what came of it; false where it failed, as error() says.
    bool perform(std::string name, const EditHistory::Edit& edit);
    bool refuse(const std::vector<std::string>& faults);
    /// Deletes without a way back, and saves.
    void remove(Entity& record);

  private:
    ViewEnvironment m_environment;
    UUID m_id;
    std::string m_error;
    bool m_isBehind = false;
    std::vector<const EntityType*> m_types;
    Observers<> m_observers;
    std::vector<Observation> m_tokens;
    Observation m_changes;
    Observation m_day;
};

} // namespace quillorn
