#pragma once

#include "Platform/Observers.h"
#include "Platform/Task.h"
#include "Reminders/ReminderImportService.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// Where a person decides on each open reminder: first on the lists, then on the rows, then sees what came of it.
/// Belongs to the main thread.
class ReminderImportSheet {
  public:
    enum class Stage { setup, review, result };

    static constexpr std::string_view title = "Import from Reminders";
    static constexpr std::string_view listsTitle = "Lists to scan";
    static constexpr std::string_view note = "Only open reminders are read. Reminders are never deleted.";
    static constexpr std::string_view notConfigured = "Set an AI endpoint and model in Settings → AI first.";
    static constexpr std::string_view noAccess = "Quillorn doesn't have access to Reminders. Allow it in System "
                                                 "Settings → Privacy & Security → Reminders.";
    static constexpr std::string_view nothingOpen = "No open reminders to import.";
    static constexpr std::string_view completesLabel = "Mark imported reminders complete";
    static constexpr std::string_view titlePrompt = "Task title";
    static constexpr std::string_view projectLabel = "Project";
    static constexpr std::string_view priorityLabel = "Priority";
    static constexpr std::string_view noProject = "No project";
    static constexpr std::string_view scanButton = "Scan";
    static constexpr std::string_view cancelButton = "Cancel";
    static constexpr std::string_view backButton = "Back";
    static constexpr std::string_view doneButton = "Done";
    static constexpr std::string_view resultSymbol = "checkmark.circle.fill";
    static constexpr std::string_view failureSymbol = "exclamationmark.triangle.fill";

    ReminderImportSheet(ReminderImportService& service, SettingsStore& settings, ModelContext& mainContext);

    [[nodiscard]] Observation observe(std::function<void()> handler) { return m_observers.add(std::move(handler)); }

    /// The sheet comes up: asks for access, and reads the lists.
    void appear();

    Stage stage() const { return m_stage; }
    bool isBusy() const { return m_isBusy; }
    /// While it is busy.
    std::string busyWords() const { return m_service.phase().value_or("Working…"); }
    const std::optional<std::string>& error() const { return m_error; }

    std::optional<bool> hasAccess() const { return m_hasAccess; }
    const std::vector<std::string>& listNames() const { return m_names; }
    bool isSelected(const std::string& list) const;
    void select(const std::string& list, bool isSelected);
    bool completes() const;
    /// Throws std::runtime_error where it can't be kept.
    void setCompletes(bool completes);
    bool isConfigured() const;
    bool canScan() const;
    /// Why there is nothing to do at this stage: no access, no AI, no open reminder; empty for no reason.
    std::string_view hindrance() const;
    void scan();

    /// To be edited in place.
    std::vector<ReminderImportRow>& rows() { return m_rows; }
    struct ProjectChoice {
        std::optional<UUID> id;
        std::string label;
    };
    /// None first, then the active projects.
    std::vector<ProjectChoice> projectChoices() const;
    /// "· 0.92", "· reason" and why the row will not be filed, as far as there is any.
    static std::vector<std::string> remarks(const ReminderImportRow& row);
    /// "5 reminders from Inbox, Work · 3 chosen"
    std::string summary() const;
    std::string importLabel() const;
    bool canImport() const;
    void import();
    /// To the setup, from an error or a review.
    void back();

    /// What came of it, in a line, and each failure.
    std::string resultLine() const;
    const ApplyResult& result() const { return m_result; }

  private:
    static Task<> load(ReminderImportSheet& sheet);
    static Task<> read(ReminderImportSheet& sheet, std::vector<std::string> lists);
    static Task<> apply(ReminderImportSheet& sheet);
    void setBusy(bool isBusy);
    std::size_t includedCount() const;

    ReminderImportService& m_service;
    SettingsStore& m_settings;
    ModelContext& m_context;
    Stage m_stage = Stage::setup;
    bool m_isBusy = false;
    std::optional<std::string> m_error;
    std::optional<bool> m_hasAccess;
    std::vector<std::string> m_names;
    std::vector<std::string> m_selected;
    ReminderScan m_scan;
    std::vector<ReminderImportRow> m_rows;
    bool m_completed = false;
    ApplyResult m_result;
    Observers<> m_observers;
    Observation m_ofService;
    TaskScope m_tasks;
};

} // namespace quillorn
