#include "Reminders/ReminderApply.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Settings.h"
#include "Models/Tag.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/ReminderStore.h"
#include "Platform/SettingsStore.h"
#include "Platform/Text.h"
#include "Reminders/ReminderMemory.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/core.h>
#include <initializer_list>
#include <optional>

namespace quillorn {

namespace {

constexpr const char* tagName = "from-reminders";
constexpr const char* tagColor = "#8E8E93";

/// Where the task came from stands in its text.
std::string descriptionOf(const ReminderImportRow& row) {
    std::string description;
    const std::string origin = fmt::format("From Reminders list \"{}\"", row.reminder.listName);
    for (const std::string_view piece : {trimWhitespaceAndNewlines(row.description),
                                         trimWhitespaceAndNewlines(row.reminder.notes), std::string_view(origin)})
        if (!piece.empty())
            description.append(description.empty() ? "" : "\n\n").append(piece);
    return description;
}

Tag& importTag(ModelContext& context, Date now) {
    const std::vector<Tag*> found =
        context.fetch<Tag>({.where = "name = ?", .values = {tagName}, .order = "key LIMIT 1"});
    return found.empty() ? context.insert<Tag>(Tag::Arguments{.name = tagName, .color = tagColor}, now)
                         : *found.front();
}

class Application {
  public:
    Application(const ReminderApplyEnvironment& environment, bool complete, std::span<const std::string> lists)
        : m_environment(environment),
          m_complete(complete),
          m_lists(lists) {}

    void apply(const ReminderImportRow& row) {
        const std::string& id = row.reminder.id;
        if (!row.include || !row.projectID || trimWhitespaceAndNewlines(row.title).empty() ||
            m_environment.memory.read()->ledger.contains(id))
            return;
        try {
            if (!makeTask(row))
                return;
        } catch (const std::exception& error) {
            return fail(row, error.what());
        }
        ++m_result.created;
        m_result.importedIDs.insert(id);
        if (m_complete)
            completeReminder(row);
    }

    ApplyResult takeResult() { return std::move(m_result); }

  private:
    /// False, with a failure noted, where the project is gone.
    bool makeTask(const ReminderImportRow& row) {
        const Date now = m_environment.clock.now();
        ModelContext context(m_environment.container);
        auto* project = context.find<Project>(*row.projectID);
        if (!project) {
            fail(row, "project no longer exists");
            return false;
        }
        auto& task = context.insert<ProjectTask>(
            ProjectTask::Arguments{
                .title = std::string(trimWhitespaceAndNewlines(row.title)),
                .taskDescription = descriptionOf(row),
                .dueDate = row.reminder.dueDate,
                .priority = row.priority,
                .project = project,
            },
            now);
        task.setTags({&importTag(context, now)});
        const std::string taskID = task.id().string();
        m_environment.memory.update([&](ReminderRecords& records) { records.pending[row.reminder.id] = taskID; });
        context.save();
        keep(row, taskID);
        noteRecent(fmt::format("{} · {} → {}", m_environment.calendar.abbreviatedDateAndTime(now), task.title(),
                               project->name()));
        return true;
    }

    /// What can't be written now is settled by what is pending.
    void keep(const ReminderImportRow& row, const std::string& taskID) {
        try {
            m_environment.memory.update([&](ReminderRecords& records) {
                records.ledger[row.reminder.id] = taskID;
                records.pending.clear();
            });
        } catch (const std::exception& error) {
            fail(row, error.what());
        }
    }

    void noteRecent(std::string line) {
        const Setting& recent = setting("reminderImportRecent");
        Settings settings(m_environment.settings);
        Json::Array lines{std::move(line)};
        const Json former = settings.value(recent);
        if (former.asArray())
            lines.insert(lines.end(), former.asArray()->begin(), former.asArray()->end());
        lines.resize(std::min(lines.size(), recentLength));
        try {
            settings.set(recent, std::move(lines));
        } catch (const std::runtime_error&) {
            // A line for people to look at; the task is there.
        }
    }

    void completeReminder(const ReminderImportRow& row) {
        if (m_environment.hasDemoReminders) {
            ++m_result.completed;
            return;
        }
        const auto found = m_environment.reminders.reminder(row.reminder.localID);
        if (!found || std::find(m_lists.begin(), m_lists.end(), found->listTitle) == m_lists.end())
            return fail(row, "task created, reminder not found in chosen lists");
        try {
            m_environment.reminders.complete(row.reminder.localID);
            ++m_result.completed;
        } catch (const ReminderError&) {
            fail(row, "task created, could not complete reminder");
        }
    }

    void fail(const ReminderImportRow& row, std::string_view words) {
        m_result.failures.push_back(fmt::format("{}: {}", row.reminder.title, words));
    }

    const ReminderApplyEnvironment& m_environment;
    const bool m_complete;
    const std::span<const std::string> m_lists;
    ApplyResult m_result;
};

} // namespace

std::string importedLine(const ApplyResult& result, bool completes) {
    std::string words = fmt::format("Created {} task{}", result.created, result.created == 1 ? "" : "s");
    if (completes)
        words += fmt::format(", completed {} reminder{}", result.completed, result.completed == 1 ? "" : "s");
    return words;
}

ApplyResult applyRows(const ReminderApplyEnvironment& environment, std::span<const ReminderImportRow> rows,
                      bool complete, std::span<const std::string> lists, const std::stop_token& stop) {
    Application application(environment, complete, lists);
    for (const ReminderImportRow& row : rows) {
        if (stop.stop_requested())
            break;
        application.apply(row);
    }
    return application.takeResult();
}

void settlePending(ModelContainer& container, ReminderMemory& memory) {
    if (memory.read()->pending.empty())
        return;
    ModelContext context(container);
    memory.update([&](ReminderRecords& records) {
        for (const auto& [reminder, task] : records.pending)
            if (const auto id = UUID::parse(task); id && context.find<ProjectTask>(*id))
                records.ledger[reminder] = task;
        records.pending.clear();
    });
}

} // namespace quillorn
