#include "Records/SentenceRequest.h"

#include "Models/ParsedTaskResult.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Models/TaskDefaults.h"
#include "Store/ModelContext.h"

namespace quillorn {

namespace {

template <class Object>
std::optional<UUID> idOfName(ModelContext& context, const std::string& name, const char* condition) {
    const auto found = context.fetch<Object>({.where = condition, .values = {name}});
    return found.empty() ? std::nullopt : std::optional(found.front()->id());
}

} // namespace

CreateTaskRequest requestOf(const ParsedTaskResult& sentence, ModelContext& context, SettingsStore& settings) {
    CreateTaskRequest request;
    request.title = sentence.title;
    request.description = sentence.description;
    request.dueDate = sentence.dueDate;
    request.priority = static_cast<std::int64_t>(sentence.priority ? *sentence.priority : usualPriority(settings));
    if (sentence.projectName)
        request.projectId = idOfName<Project>(context, *sentence.projectName, "isArchived = 0 AND name = ?");
    std::vector<UUID>& tags = request.tagIds.emplace();
    for (const std::string& name : sentence.tagNames)
        if (const auto id = idOfName<Tag>(context, name, "name = ?"))
            tags.push_back(*id);
    return request;
}

} // namespace quillorn
