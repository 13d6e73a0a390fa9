#pragma once

#include "Models/Enums.h"
#include "Reminders/ReminderItem.h"

#include <cstddef>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

class Json;

/// The AI only proposes: all that it says is held against what the program knows, and a rule that fails leaves the
/// reminder alone, with a reason.

/// A project as the AI may choose it.
struct ReminderImportProject {
    UUID id{};
    std::string name{};
    /// Empty without a client.
    std::string clientName{};
    std::string description{};
};

/// What the AI says of one reminder. What is missing, or of another type, has the value that fails a rule.
struct ReminderDecision {
    std::string reminderID{};
    bool isProjectItem = false;
    std::optional<UUID> projectID{};
    std::string taskTitle{};
    std::string description{};
    TaskPriority priority = TaskPriority::medium;
    double confidence = 0;
    std::string reason{};
};

/// A reminder with what is to become of it; a person may change all but the reminder.
struct ReminderImportRow {
    ReminderItem reminder{};
    std::optional<UUID> projectID{};
    std::string title{};
    std::string description{};
    TaskPriority priority = TaskPriority::medium;
    /// Absent when the AI has not decided.
    std::optional<double> confidence{};
    std::string reason{};
    /// Why the program will not file it; absent for one that passes.
    std::optional<std::string> skipReason{};
    bool include = false;
};

/// Where a task that is not completed stands, and its title.
using OpenTask = std::pair<std::optional<UUID>, std::string>;

inline constexpr double reminderConfidenceThreshold = 0.8;
inline constexpr std::size_t reminderBatchSize = 20;
/// Of a reminder that the AI passed over, which is to be asked about again.
inline constexpr std::string_view noDecisionReason = "AI returned no decision";

/// What the AI is told to do.
std::string_view reminderTriagePrompt();
/// What it is to decide upon.
std::string reminderTriageInput(std::span<const ReminderItem> batch, std::span<const ReminderImportProject> projects);
/// The decisions in its answer; an item that can't be one is left out.
std::vector<ReminderDecision> reminderDecisions(const Json& answer);

/// The same for tasks that a person would call the same.
std::string dedupKey(const std::optional<UUID>& projectID, std::string_view title);

/// A row for each reminder, in their order, with the first rule that it fails.
std::vector<ReminderImportRow> buildRows(const std::vector<ReminderDecision>& decisions,
                                         const std::vector<OpenTask>& openTasks,
                                         std::span<const ReminderImportProject> projects,
                                         std::span<const ReminderItem> items);

/// Reminders by whether they were decided against before and have not changed since.
struct ReminderPartition {
    std::vector<ReminderItem> fresh;
    std::vector<ReminderImportRow> known;
};
ReminderPartition partitionKnown(const std::vector<ReminderItem>& items, const SkippedReminders& skipped);

/// Forgets what was imported and what is no longer open in the lists that were scanned, and remembers the rows that
/// were not imported.
void updateSkipped(SkippedReminders& skipped, std::span<const ReminderImportRow> rows,
                   const std::set<std::string>& imported, const std::set<std::string>& openIDs,
                   std::span<const std::string> lists, Date now);

/// "Checked 3 new: imported 1, skipped 2 (4 reviewed earlier, not re-checked), 1 problem(s): …".
std::string importResult(std::size_t fresh, std::size_t created, std::size_t rows, std::size_t known,
                         const std::vector<std::string>& failures);

} // namespace quillorn
