#pragma once

#include "Models/TaskActions.h"

#include <cstddef>
#include <string>

namespace quillorn {

// What is asked before a record is deleted that others belong to.

Confirmation deletionOfClient(const std::string& name, std::size_t projects);
Confirmation deletionOfProject(const std::string& name);
Confirmation deletionOfTag(const std::string& name, std::size_t tasks);

} // namespace quillorn
