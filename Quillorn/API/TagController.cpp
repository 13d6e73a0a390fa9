#include "API/TagController.h"

#include "API/TagRequests.h"
#include "API/TaskDTO.h"
#include "Models/ProjectTask.h"
#include "Models/Sorting.h"

namespace quillorn {

HttpResponse TagController::list(const HttpRequest&) const {
    return listOf([&](ModelContext& context) {
        auto tags = context.fetch<Tag>();
        sortByName(tags, text());
        return tags;
    });
}

HttpResponse TagController::create(const HttpRequest& request) const {
    return createFrom<CreateTagRequest>(
        request, [](ModelContext& context, const CreateTagRequest& body, Date now) -> Tag& {
            return context.insert<Tag>(Tag::Arguments{body.name, body.color.value_or(defaultColor)}, now);
        });
}

HttpResponse TagController::update(const HttpRequest& request) const {
    return updateFrom<UpdateTagRequest>(request, [](ModelContext&, Tag& tag, const UpdateTagRequest& body, Date now) {
        if (body.name)
            tag.setName(*body.name);
        if (body.color)
            tag.setColor(*body.color);
        tag.setUpdatedAt(now);
    });
}

HttpResponse TagController::tasks(const HttpRequest& request) const {
    return listInside<TaskRows>(
        request, [](const Tag& tag) { return std::vector<ProjectTask*>(tag.tasks().begin(), tag.tasks().end()); });
}

} // namespace quillorn
