#include "Reminders/ReminderReading.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Platform/ReminderStore.h"
#include "Reminders/OrNothing.h"
#include "Store/ModelContext.h"

#include <algorithm>

namespace quillorn {

namespace {

std::vector<ReminderImportProject> activeProjects(ModelContainer& container) {
    ModelContext context(container);
    std::vector<ReminderImportProject> projects;
    for (const Project* project : context.fetch<Project>())
        if (!project->isHidden())
            projects.push_back({project->id(), project->name(), project->client() ? project->client()->name() : "",
                                project->projectDescription().value_or("")});
    return projects;
}

std::vector<OpenTask> openTasks(ModelContainer& container) {
    ModelContext context(container);
    std::vector<OpenTask> tasks;
    for (const ProjectTask* task : context.fetch<ProjectTask>({.where = "completedAt IS NULL"}))
        tasks.emplace_back(task->project() ? std::optional(task->project()->id()) : std::nullopt, task->title());
    return tasks;
}

} // namespace

std::vector<std::string> ReminderReading::listNames() const {
    std::set<std::string> titles;
    if (demo)
        for (const ReminderItem& item : *demo)
            titles.insert(item.listName);
    else
        for (const ReminderList& list : store.lists())
            titles.insert(list.title);
    return {titles.begin(), titles.end()};
}

std::vector<ReminderItem> ReminderReading::open(const std::vector<std::string>& lists) const {
    const auto records = memory->read();
    return open(lists, *records);
}

std::vector<ReminderItem> ReminderReading::open(const std::vector<std::string>& lists,
                                                const ReminderRecords& records) const {
    const auto isWanted = [&](const std::string& title) {
        return std::find(lists.begin(), lists.end(), title) != lists.end();
    };
    std::vector<ReminderItem> items;
    if (demo) {
        std::copy_if(demo->begin(), demo->end(), std::back_inserter(items),
                     [&](const ReminderItem& item) { return isWanted(item.listName); });
    } else {
        std::vector<ReminderList> wanted = store.lists();
        std::erase_if(wanted, [&](const ReminderList& each) { return !isWanted(each.title); });
        if (!wanted.empty())
            for (const Reminder& reminder : store.openReminders(wanted))
                items.push_back(ReminderItem::of(reminder));
    }
    std::erase_if(items, [&](const ReminderItem& item) { return records.ledger.contains(item.id); });
    return items;
}

GatheredReminders ReminderReading::gather(const std::vector<std::string>& lists) const {
    GatheredReminders gathered;
    const auto records = memory->read();
    const std::vector<ReminderItem> items = open(lists, *records);
    for (const ReminderItem& item : items)
        gathered.openIDs.insert(item.id);
    gathered.reminders = partitionKnown(items, records->skipped);
    if (!container || gathered.reminders.fresh.empty())
        return gathered;
    gathered.projects = orNothing([&] { return activeProjects(*container); });
    gathered.openTasks = orNothing([&] { return openTasks(*container); });
    return gathered;
}

} // namespace quillorn
