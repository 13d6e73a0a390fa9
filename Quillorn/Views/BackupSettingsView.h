#pragma once

#include "Models/TaskActions.h"
#include "Views/SettingsPane.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

class BackupService;
class Clock;
class SystemLog;

/// Where the user chooses the folder of the backups, takes one, and brings one back. Belongs to the main thread.
class BackupSettingsView : public SettingsPane {
  public:
    static constexpr std::string_view automaticTitle = "Automatic Backups";
    static constexpr std::string_view automaticLabel = "Back up automatically every hour";
    static constexpr std::string_view folderLabel = "Folder";
    static constexpr std::string_view chooseButton = "Choose…";
    static constexpr std::string_view choosePrompt = "Use for Backups";
    static constexpr std::string_view showButton = "Show in Finder";
    static constexpr std::string_view warningSymbol = "exclamationmark.triangle.fill";
    static constexpr std::string_view tip = "Tip: choose a folder in iCloud Drive or Dropbox for an off-machine copy.";
    static constexpr std::string_view lastLabel = "Last backup";
    static constexpr std::string_view backUpButton = "Back Up Now";
    static constexpr std::string_view restoreTitle = "Restore";
    static constexpr std::string_view restoreText =
        "Restoring replaces your current data with the chosen backup. Your current data is snapshotted to the backup "
        "folder first, so you can undo by restoring that snapshot.";
    static constexpr std::string_view restorePrompt = "Restore";
    /// The buttons of the question before a restore; only the first one goes on.
    static constexpr std::string_view confirmButton = "Restore";
    static constexpr std::string_view cancelButton = "Cancel";

    /// Referred to, not owned.
    struct Environment {
        BackupService& service;
        SettingsStore& settings;
        MainQueue& mainQueue;
        const Clock& clock;
        SystemLog& log;
    };
    explicit BackupSettingsView(Environment environment);

    bool isAutomatic() const;
    /// Throws std::runtime_error where it can't be kept.
    void setAutomatic(bool isAutomatic);

    /// Where backups go, and where the pickers begin.
    std::filesystem::path folder() const;
    /// What can't be used or kept is refused, with a line in the log; the folder stays then.
    void chooseFolder(const std::filesystem::path& folder);
    /// Absent while the chosen folder can be written.
    std::optional<std::string> folderWarning() const;

    /// "5 minutes ago", or "Never".
    std::string lastBackup() const;
    bool isBackingUp() const;
    void backUpNow();
    std::optional<std::string> lastResult() const;
    std::optional<std::string> lastError() const;

    bool isRestoring() const;
    std::string_view restoreButton() const { return isRestoring() ? "Restoring…" : "Restore from Backup…"; }
    static Confirmation confirmationFor(const std::filesystem::path& file);
    void restore(const std::filesystem::path& file);

  private:
    Environment m_environment;
    Observation m_serviceChanges;
};

} // namespace quillorn
