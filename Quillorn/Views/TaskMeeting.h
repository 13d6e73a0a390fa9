#pragma once

#include "Platform/Date.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

class ProjectTask;
class Text;

/// What tasks that were made from one source have in common.
struct TaskMeeting {
    std::string key;
    /// As the latest of its tasks has it; the key where that one has none.
    std::string title;
    /// When the latest of its tasks was made.
    Date latest;
    std::size_t count = 0;

    /// "Weekly  3".
    std::string label() const { return title + "  " + std::to_string(count); }

    friend bool operator==(const TaskMeeting&, const TaskMeeting&) = default;
};

/// The task's source: its address, else its title. Empty for a task of no meeting.
std::string_view meetingKey(const ProjectTask& task);

/// The meetings of these tasks, the latest first.
std::vector<TaskMeeting> meetingsOf(const std::vector<ProjectTask*>& tasks);

/// Those with `typed` in their title, in either case; all of them when it is blank.
std::vector<TaskMeeting> meetingsMatching(std::vector<TaskMeeting> meetings, std::string_view typed, const Text& text);

} // namespace quillorn
