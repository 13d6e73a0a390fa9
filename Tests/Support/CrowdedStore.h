#pragma once

#include "Support/TestRecords.h"

#include <fmt/format.h>
#include <map>
#include <string>
#include <vector>

namespace quillorn {

/// By the names of their kinds.
using StoreIds = std::map<std::string, std::string>;

/// `count` clients, projects, tasks, tags, entries and notes, most of them around the first of each; the others have
/// every kind of link too. Returns the ids of the first ones and of a client, a project and a tag to link to.
inline StoreIds crowd(ModelContext& context, int count) {
    std::vector<Client*> clients;
    std::vector<Project*> projects;
    std::vector<ProjectTask*> tasks;
    std::vector<Tag*> tags;
    std::vector<TimeEntry*> entries;
    std::vector<Note*> notes;
    for (int i = 0; i < count; ++i) {
        const std::string name = fmt::format("A {}", i);
        clients.push_back(&make<Client>(context, {.name = name}));
        projects.push_back(&make<Project>(context, {.name = name}));
        projects.back()->setClient(clients[i % 2 == 0 ? 0 : clients.size() - 1]);
        tags.push_back(&make<Tag>(context, {.name = name}));
        tasks.push_back(
            &make<ProjectTask>(context, {.title = name, .project = projects[i % 2 == 0 ? 0 : projects.size() - 1]}));
        tasks.back()->setTags({tags.front(), tags.back()});
        if (i > 0)
            tasks.back()->setParentTask(tasks.front());
        for (ProjectTask* task : {tasks.front(), tasks.back()}) {
            entries.push_back(&make<TimeEntry>(
                context, {.task = task, .project = projects[static_cast<std::size_t>(i) / 2], .startTime = testNow}));
            if (entries.size() > 1) // each that runs is a row that completion changes
                entries.back()->setEndTime(testNow);
            notes.push_back(&make<Note>(context, {.content = name, .project = projects.front(), .task = task}));
        }
    }
    context.save();
    return {{"client", clients[0]->id().string()},   {"otherClient", clients[1]->id().string()},
            {"project", projects[0]->id().string()}, {"otherProject", projects[1]->id().string()},
            {"task", tasks[0]->id().string()},       {"tag", tags[0]->id().string()},
            {"entry", entries[0]->id().string()},    {"note", notes[0]->id().string()}};
}

/// `pattern` with the ids in place of "{task}" and so on.
inline std::string withIds(std::string pattern, const StoreIds& ids) {
    for (const auto& [name, id] : ids)
        for (auto at = pattern.find("{" + name + "}"); at != std::string::npos; at = pattern.find("{" + name + "}"))
            pattern.replace(at, name.size() + 2, id);
    return pattern;
}

} // namespace quillorn
