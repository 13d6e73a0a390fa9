#include "Models/TaskNames.h"

#include "Models/Project.h"
#include "Models/Sorting.h"
#include "Models/Tag.h"
#include "Store/ModelContext.h"

#include <algorithm>

namespace quillorn {

namespace {

template <class Object>
std::vector<std::string> sortedNames(std::vector<Object*> objects, const Text& text) {
    sortByName(objects, text);
    std::vector<std::string> names;
    names.reserve(objects.size());
    for (const Object* object : objects)
        names.push_back(object->name());
    return names;
}

bool isAmong(const std::vector<std::string>& names, const std::string& name) {
    return std::ranges::find(names, name) != names.end();
}

} // namespace

TaskNames TaskNames::of(ModelContext& context, const Text& text) {
    return {sortedNames(context.fetch<Project>({.where = "isArchived = 0"}), text),
            sortedNames(context.fetch<Tag>(), text)};
}

void keepNames(ParsedTaskResult& result, const TaskNames& names) {
    if (result.projectName && !isAmong(names.projects, *result.projectName))
        result.projectName.reset();
    std::erase_if(result.tagNames, [&](const std::string& tag) { return !isAmong(names.tags, tag); });
}

} // namespace quillorn
