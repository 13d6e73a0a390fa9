#include "Views/TaskChoices.h"

#include "Models/ProjectTask.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"

namespace quillorn {

std::vector<ProjectTask*> openTasks(ModelContext& context, const Text& text, std::string_view search,
                                    std::size_t most) {
    // By titles alone: most tasks are not shown, and need no object.
    const std::string_view wanted = trimBlanks(search);
    const Text::Needle needle = text.needle(wanted);
    std::vector<RowKey> keys;
    {
        const StatementLoan rows = context.statement(
            "SELECT key, title FROM ProjectTask WHERE completedAt IS NULL ORDER BY status = 1 DESC, updatedAt DESC");
        while (keys.size() < most && rows->step())
            if (wanted.empty() || needle.isIn(rows->text(1)))
                keys.push_back(rows->integer(0));
    }
    std::vector<ProjectTask*> tasks;
    for (const RowKey key : keys)
        if (auto* task = context.find<ProjectTask>(key))
            tasks.push_back(task);
    return tasks;
}

} // namespace quillorn
