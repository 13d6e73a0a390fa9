#include "API/TagController.h"

#include "Models/ProjectTask.h"
#include "Models/TagSearch.h"
#include "Records/Edits.h"
#include "Records/TagRequests.h"
#include "Records/TaskDTO.h"

namespace quillorn {

HttpResponse TagController::list(const HttpRequest& request) const {
    return listOf(request, [&](ModelContext& context) { return findTags(context, TagSearch{}, text()); });
}

HttpResponse TagController::create(const HttpRequest& request) const {
    return createFrom<CreateTagRequest>(request, createTag);
}

HttpResponse TagController::update(const HttpRequest& request) const {
    return updateFrom<UpdateTagRequest>(request, updateTag);
}

HttpResponse TagController::tasks(const HttpRequest& request) const {
    return listInside<TaskRows>(
        request, [](const Tag& tag) { return std::vector<ProjectTask*>(tag.tasks().begin(), tag.tasks().end()); });
}

} // namespace quillorn
