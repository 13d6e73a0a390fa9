#pragma once

#include "Records/Tool.h"

#include <vector>

namespace quillorn {

// The catalogue in its order, by the kind of record that the tools are about.
std::vector<Tool> clientTools();
std::vector<Tool> projectTools();
std::vector<Tool> taskTools();
std::vector<Tool> timeEntryTools();
std::vector<Tool> noteTools();
std::vector<Tool> tagTools();

} // namespace quillorn
