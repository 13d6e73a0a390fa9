#pragma once

#include "Models/ParsedTaskResult.h"

#include <string>
#include <vector>

namespace quillorn {

class ModelContext;
class Text;

/// The names that a sentence may refer to.
struct TaskNames {
    std::vector<std::string> projects;
    std::vector<std::string> tags;

    /// Those of the projects that are not archived and of the tags, each sorted.
    static TaskNames of(ModelContext& context, const Text& text);
};

/// Drops the project and the tags that are not on offer: a model may have made them up.
void keepNames(ParsedTaskResult& result, const TaskNames& names);

} // namespace quillorn
