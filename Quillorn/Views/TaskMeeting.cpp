#include "Views/TaskMeeting.h"

#include "Models/ProjectTask.h"
#include "Platform/Text.h"

#include <algorithm>
#include <unordered_map>

namespace quillorn {

std::string_view meetingKey(const ProjectTask& task) {
    if (task.sourceURL() && !task.sourceURL()->empty())
        return *task.sourceURL();
    return task.sourceTitle() ? std::string_view(*task.sourceTitle()) : std::string_view();
}

std::vector<TaskMeeting> meetingsOf(const std::vector<ProjectTask*>& tasks) {
    struct Group {
        const ProjectTask* latest;
        std::size_t count;
    };
    std::unordered_map<std::string_view, Group> groups;
    for (const ProjectTask* task : tasks) {
        const std::string_view key = meetingKey(*task);
        if (key.empty())
            continue;
        Group& group = groups.try_emplace(key, Group{task, 0}).first->second;
        ++group.count;
        if (group.latest->createdAt() < task->createdAt())
            group.latest = task;
    }
    std::vector<TaskMeeting> meetings;
    for (const auto& [key, group] : groups) {
        const std::string title = group.latest->sourceTitle().value_or("");
        meetings.push_back(
            {std::string(key), title.empty() ? std::string(key) : title, group.latest->createdAt(), group.count});
    }
    std::ranges::sort(meetings, [](const TaskMeeting& a, const TaskMeeting& b) {
        return a.latest != b.latest ? a.latest > b.latest : a.key < b.key;
    });
    return meetings;
}

std::vector<TaskMeeting> meetingsMatching(std::vector<TaskMeeting> meetings, std::string_view typed, const Text& text) {
    if (trimWhitespaceAndNewlines(typed).empty())
        return meetings;
    const Text::Needle needle = text.needle(typed);
    std::erase_if(meetings, [&](const TaskMeeting& meeting) { return !needle.isIn(meeting.title); });
    return meetings;
}

} // namespace quillorn
