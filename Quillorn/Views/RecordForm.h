#pragma once

#include "Models/Client.h"
#include "Platform/Observers.h"
#include "Platform/UUID.h"
#include "Views/ViewEnvironment.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class RecordNotFound;

/// What people are told of a record that an edit looks for in vain.
std::string wasDeleted(const RecordNotFound& gone);

/// A record to choose in a form.
struct FormChoice {
    UUID id;
    std::string name;
    std::string color{};

    friend bool operator==(const FormChoice&, const FormChoice&) = default;
};

/// What forms offer as colours; any other can be typed.
inline constexpr std::array<std::string_view, 10> formColors = {
    defaultColor, "#34C759", "#FF9500", "#FF3B30", "#AF52DE", "#5AC8FA", "#FFCC00", "#FF2D55", "#5856D6", "#8E8E93"};
/// Of the same, for who doesn't see them.
inline constexpr std::array<std::string_view, 10> formColorNames = {
    "Blue", "Green", "Orange", "Red", "Purple", "Light blue", "Yellow", "Pink", "Indigo", "Gray"};

/// A form in which a record is made or changed: what was entered is checked as requests are, and kept by one save,
/// which is one step to undo. Belongs to the main thread.
class RecordFormBase {
  public:
    static constexpr std::string_view saveButton = "Save";
    static constexpr std::string_view cancelButton = "Cancel";

    RecordFormBase(const RecordFormBase&) = delete;
    RecordFormBase& operator=(const RecordFormBase&) = delete;
    virtual ~RecordFormBase() = default;

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    bool isNew() const { return !m_record; }
    /// "New Client", "Edit Client".
    std::string windowTitle() const;
    /// In the empty fields of the name, and of what there is to say about it.
    virtual std::string_view namePrompt() const { return "Name"; }
    virtual std::string_view textPrompt() const { return "Description"; }
    /// What is wrong with what was entered, in the words of requests.
    virtual std::vector<std::string> faults() const = 0;
    bool canSave() const { return faults().empty(); }
    /// Whether anything differs from what the form began with.
    virtual bool isChanged() const = 0;
    /// Keeps what was entered, and of a record that there is only what was changed. The record's id; absent where there
    /// are faults, or where error() says what has happened meanwhile.
    std::optional<UUID> save();
    const std::string& error() const { return m_error; }

  protected:
    RecordFormBase(const ViewEnvironment& environment, std::string_view noun, std::optional<UUID> record)
        : m_environment(environment),
          m_noun(noun),
          m_record(record) {}

    const ViewEnvironment& environment() const { return m_environment; }
    ModelContext& context() const;
    const std::optional<UUID>& record() const { return m_record; }
    void tell() const { m_observers.tell(); }
    /// Makes or changes the record, and gives its id. Throws where a record is gone.
    virtual UUID write(ModelContext& context, Date now) = 0;

  private:
    ViewEnvironment m_environment;
    std::string_view m_noun;
    std::optional<UUID> m_record; // absent for a new one
    std::string m_error;
    Observers<> m_observers;
};

template <class Values>
class RecordForm : public RecordFormBase {
  public:
    const Values& values() const { return m_values; }
    template <class Field, class Value>
    void set(Field Values::* field, Value value) {
        Values next = m_values;
        next.*field = std::move(value);
        enter(std::move(next));
    }
    bool isChanged() const override { return !(m_values == m_given); }

  protected:
    RecordForm(const ViewEnvironment& environment, std::string_view noun, std::optional<UUID> record, Values given)
        : RecordFormBase(environment, noun, record),
          m_given(given),
          m_values(std::move(given)) {}

    void enter(Values next) {
        if (next == m_values)
            return;
        m_values = std::move(next);
        tell();
    }
    /// The value where it is to be written: of a record that there is, only where it was changed.
    template <class Field>
    std::optional<Field> written(Field Values::* field) const {
        return isNew() || isTouched(field) ? std::optional(m_values.*field) : std::nullopt;
    }
    template <class Field>
    bool isTouched(Field Values::* field) const {
        return m_values.*field != m_given.*field;
    }

  private:
    Values m_given;
    Values m_values;
};

/// The clients that are not archived, by name, and the chosen one in any case.
std::vector<FormChoice> clientChoices(const ViewEnvironment& environment, const std::optional<UUID>& chosen);
/// The same of projects; those of archived clients are archived too.
std::vector<FormChoice> projectChoices(const ViewEnvironment& environment, const std::optional<UUID>& chosen);
/// All tags, by name.
std::vector<FormChoice> tagChoices(const ViewEnvironment& environment);

} // namespace quillorn
