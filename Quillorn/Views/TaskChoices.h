#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillorn {

class ModelContext;
class ProjectTask;
class Text;

/// Open tasks whose title holds the text, at most that many: those in progress first, then what was changed last.
std::vector<ProjectTask*> openTasks(ModelContext& context, const Text& text, std::string_view search, std::size_t most);

} // namespace quillorn
