#include "Reminders/ReminderTriage.h"

#include "Platform/Json.h"
#include "Platform/Text.h"

#include <algorithm>
#include <fmt/core.h>
#include <map>

namespace quillorn {

namespace {

constexpr std::size_t descriptionLength = 120;

std::string textOf(const Json& item, const char* key) {
    const Json* value = item.find(key);
    return value && value->asString() ? *value->asString() : std::string();
}

TaskPriority priorityOf(const Json& item) {
    const Json* value = item.find("priority");
    const std::int64_t* number = value ? value->asInteger() : nullptr;
    const auto known = number ? enumFromRaw<TaskPriority>(*number) : std::nullopt;
    return known.value_or(TaskPriority::medium);
}

double confidenceOf(const Json& item) {
    const Json* value = item.find("confidence");
    if (value && value->asInteger())
        return static_cast<double>(*value->asInteger());
    return value && value->asDouble() ? *value->asDouble() : 0;
}

std::optional<ReminderDecision> decisionOf(const Json& item) {
    const Json* id = item.find("reminder_id");
    if (!id || !id->asString())
        return std::nullopt;
    const Json* isItem = item.find("is_project_item");
    return ReminderDecision{
        .reminderID = *id->asString(),
        .isProjectItem = isItem && isItem->asBool() && *isItem->asBool(),
        .projectID = UUID::parse(textOf(item, "project_id")),
        .taskTitle = textOf(item, "task_title"),
        .description = textOf(item, "description"),
        .priority = priorityOf(item),
        .confidence = confidenceOf(item),
        .reason = textOf(item, "reason"),
    };
}

/// Holds decisions against the rules, in their order.
class Rules {
  public:
    Rules(const std::vector<OpenTask>& openTasks, std::span<const ReminderImportProject> projects) {
        for (const auto& [project, title] : openTasks)
            m_taken.insert(dedupKey(project, title));
        for (const ReminderImportProject& project : projects)
            m_projects.insert(project.id);
    }

    ReminderImportRow row(const ReminderItem& item, const ReminderDecision& decision) {
        ReminderImportRow row{
            .reminder = item,
            .projectID = decision.projectID,
            .title = decision.taskTitle.empty() ? item.title : decision.taskTitle,
            .description = decision.description,
            .priority = decision.priority,
            .confidence = decision.confidence,
            .reason = decision.reason,
            .skipReason = fault(decision),
        };
        row.include = !row.skipReason;
        if (!isKnown(row.projectID))
            row.projectID.reset();
        return row;
    }

  private:
    bool isKnown(const std::optional<UUID>& project) const { return project && m_projects.contains(*project); }

    /// The first rule that fails; what passes takes its place among the tasks.
    std::optional<std::string> fault(const ReminderDecision& decision) {
        const std::string_view title = trimWhitespaceAndNewlines(decision.taskTitle);
        if (!decision.isProjectItem)
            return "Not a project item";
        if (decision.projectID && !isKnown(decision.projectID))
            return "Unknown project";
        if (!decision.projectID)
            return "No project chosen";
        if (!(decision.confidence >= reminderConfidenceThreshold))
            return fmt::format("Low confidence ({:.2f})", decision.confidence);
        if (title.empty())
            return "Empty title";
        if (!m_taken.insert(dedupKey(decision.projectID, title)).second)
            return "Duplicate of an open task";
        return std::nullopt;
    }

    std::set<std::string> m_taken;
    std::set<UUID> m_projects;
};

} // namespace

std::string_view reminderTriagePrompt() {
    return "You triage personal Apple Reminders into a project-management app (Quillorn).\n"
           "For EACH reminder decide whether it is work for one of the listed projects.\n"
           "- is_project_item=true only if it clearly belongs to exactly one listed project (by name, product, client "
           "or "
           "obvious topic).\n"
           "- Personal errands, shopping, household, health, social plans and vague notes -> is_project_item=false, "
           "project_id=null.\n"
           "- project_id must be copied exactly from the catalog. Never invent ids.\n"
           "- task_title: concise imperative title (strip any project-name prefix). description: short, only facts "
           "from "
           "the reminder.\n"
           "- priority: 0 low, 1 medium (default), 2 high, 3 urgent (only if the reminder says so).\n"
           "- confidence: 0..1 for the project assignment. reason: at most 15 words.\n"
           "Reply with ONLY this JSON, one item per reminder, reminder_id copied verbatim:\n"
           "{\"items\":[{\"reminder_id\":\"\",\"is_project_item\":true,\"project_id\":null,\"task_title\":\"\","
           "\"description\":\"\",\"priority\":1,\"confidence\":0.0,\"reason\":\"\"}]}";
}

std::string reminderTriageInput(std::span<const ReminderItem> batch, std::span<const ReminderImportProject> projects) {
    std::string text = "PROJECTS:";
    if (projects.empty())
        text += '\n';
    for (const ReminderImportProject& project : projects)
        text += fmt::format("\n- id={} | {} | client={} | {}", project.id.string(), project.name, project.clientName,
                            characterPrefix(project.description, descriptionLength));
    text += "\n\nREMINDERS:";
    for (const ReminderItem& item : batch)
        text += '\n' + Json(Json::Object{{"due", item.dueDate ? formatISO8601(*item.dueDate) : ""},
                                         {"id", item.id},
                                         {"list", item.listName},
                                         {"notes", item.notes},
                                         {"title", item.title}})
                           .text();
    return text;
}

std::vector<ReminderDecision> reminderDecisions(const Json& answer) {
    std::vector<ReminderDecision> decisions;
    const Json* items = answer.find("items");
    if (!items || !items->asArray())
        return decisions;
    for (const Json& item : *items->asArray())
        if (auto decision = decisionOf(item))
            decisions.push_back(std::move(*decision));
    return decisions;
}

std::string dedupKey(const std::optional<UUID>& projectID, std::string_view title) {
    return (projectID ? projectID->string() : "-") + '|' + normalizedText(title);
}

std::vector<ReminderImportRow> buildRows(const std::vector<ReminderDecision>& decisions,
                                         const std::vector<OpenTask>& openTasks,
                                         std::span<const ReminderImportProject> projects,
                                         std::span<const ReminderItem> items) {
    std::map<std::string_view, const ReminderDecision*> byReminder; // of several the last
    for (const ReminderDecision& decision : decisions)
        byReminder[decision.reminderID] = &decision;
    Rules rules(openTasks, projects);
    std::vector<ReminderImportRow> rows;
    for (const ReminderItem& item : items) {
        const auto found = byReminder.find(item.id);
        if (found != byReminder.end())
            rows.push_back(rules.row(item, *found->second));
        else
            rows.push_back({.reminder = item, .title = item.title, .skipReason = std::string(noDecisionReason)});
    }
    return rows;
}

ReminderPartition partitionKnown(const std::vector<ReminderItem>& items, const SkippedReminders& skipped) {
    ReminderPartition partition;
    for (const ReminderItem& item : items) {
        const auto found = skipped.find(item.id);
        if (found == skipped.end() || found->second.fingerprint != reminderFingerprint(item)) {
            partition.fresh.push_back(item);
            continue;
        }
        const SkippedReminder& entry = found->second;
        partition.known.push_back({.reminder = item,
                                   .projectID = entry.projectID,
                                   .title = entry.title.empty() ? item.title : entry.title,
                                   .skipReason = "Skipped earlier: " + entry.reason});
    }
    return partition;
}

void updateSkipped(SkippedReminders& skipped, std::span<const ReminderImportRow> rows,
                   const std::set<std::string>& imported, const std::set<std::string>& openIDs,
                   std::span<const std::string> lists, Date now) {
    std::erase_if(skipped, [&](const auto& each) {
        const bool wasScanned = std::find(lists.begin(), lists.end(), each.second.listName) != lists.end();
        return imported.contains(each.first) || (wasScanned && !openIDs.contains(each.first));
    });
    for (const ReminderImportRow& row : rows) {
        const std::string& id = row.reminder.id;
        if (imported.contains(id) || row.skipReason == noDecisionReason)
            continue;
        std::string fingerprint = reminderFingerprint(row.reminder);
        const auto found = skipped.find(id);
        if (found != skipped.end() && found->second.fingerprint == fingerprint)
            continue; // the first date and reason stay
        skipped.insert_or_assign(id, SkippedReminder{std::move(fingerprint),
                                                     row.skipReason.value_or("Not imported in review"), row.projectID,
                                                     row.title, row.reminder.listName, now});
    }
}

std::string importResult(std::size_t fresh, std::size_t created, std::size_t rows, std::size_t known,
                         const std::vector<std::string>& failures) {
    std::string words = fmt::format("Checked {} new: imported {}, skipped {}", fresh, created, rows - created);
    if (known > 0)
        words += fmt::format(" ({} reviewed earlier, not re-checked)", known);
    if (!failures.empty())
        words += fmt::format(", {} problem(s): {}", failures.size(), failures.front());
    return words;
}

} // namespace quillorn
