#pragma once

#include "Models/TaskActions.h"

#include <cstdint>

namespace quillorn {

class Client;
class Tag;
class TimeEntry;

// What is asked before a record of the sidebar is deleted; of tasks and notes see TaskActions.h.

Confirmation deletionOfClient(const Client& client);
Confirmation deletionOfProject(const Project& project);
/// `taskCount` is how many tasks have the tag.
Confirmation deletionOfTag(const Tag& tag, std::int64_t taskCount);
Confirmation deletionOfTimeEntry(const TimeEntry& entry);

} // namespace quillorn
