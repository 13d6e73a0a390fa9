#include "MCP/ToolLists.h"
#include "Models/TagSearch.h"
#include "Models/TaskActions.h"
#include "Models/TaskSearch.h"
#include "Records/Edits.h"
#include "Records/Lookup.h"
#include "Records/TagRequests.h"

#include <algorithm>

namespace quillorn {

namespace {

struct TagArguments {
    UUID tagId;
};

struct UpdateTagArguments : UpdateTagRequest {
    UUID tagId;
};

struct AddTagsArguments {
    UUID taskId;
    std::vector<UUID> tagIds;
};

struct RemoveTagArguments {
    UUID taskId;
    UUID tagId;
};

struct ListByTagArguments {
    UUID tagId;
    bool includeArchived = false;
};

ProjectTask& addTags(const ToolCall& call, const AddTagsArguments& arguments) {
    auto& task = findOrThrow<ProjectTask>(call.context, arguments.taskId);
    const auto tags = findTags(call.context, arguments.tagIds);
    for (const UUID& id : arguments.tagIds)
        if (std::ranges::find(tags, id, &Tag::id) == tags.end())
            throw RecordNotFound(resourceWord<Tag>, id);
    addTagsToTask(task, tags, call.now);
    return task;
}

ProjectTask& removeTag(const ToolCall& call, const RemoveTagArguments& arguments) {
    auto& task = findOrThrow<ProjectTask>(call.context, arguments.taskId);
    removeTagFromTask(task, arguments.tagId, call.now);
    return task;
}

std::vector<ProjectTask*> tasksOfTag(const ToolCall& call, const ListByTagArguments& arguments) {
    findOrThrow<Tag>(call.context, arguments.tagId);
    const TaskSearch search{.includeArchived = arguments.includeArchived, .tagId = arguments.tagId};
    return findTasks(call.context, search, call.text);
}

} // namespace

std::vector<Tool> tagTools() {
    using Create = CreateTagRequest;
    using Update = UpdateTagArguments;
    return {
        readingTool<TagSearch>(
            "list_tags", "List all tags. Optionally filter by name.",
            {{"name", &TagSearch::name, "Filter by name (case-insensitive contains)"}},
            [](const ToolCall& call, const TagSearch& search) { return findTags(call.context, search, call.text); }),
        changingTool<Create>("create_tag", "Create a new tag with a name and optional color.",
                             {{"name", &Create::name, "Tag name (required)"},
                              {"color", &Create::color, "Hex color code", hexColor(defaultColor)}},
                             [](const ToolCall& call, const Create& arguments) -> Tag& {
                                 return createTag(call.context, arguments, call.now);
                             }),
        changingTool<Update>("update_tag", "Update a tag's name or color.",
                             {{"tagId", &Update::tagId, "Tag UUID (required)"},
                              {"name", &Update::name, "New tag name"},
                              {"color", &Update::color, "New hex color code", hexColor()}},
                             [](const ToolCall& call, const Update& arguments) -> Tag& {
                                 auto& tag = findOrThrow<Tag>(call.context, arguments.tagId);
                                 updateTag(call.context, tag, arguments, call.now);
                                 return tag;
                             }),
        changingTool<TagArguments>("delete_tag", "Delete a tag. Removes it from all tasks.",
                                   {{"tagId", &TagArguments::tagId, "Tag UUID"}},
                                   [](const ToolCall& call, const TagArguments& arguments) {
                                       call.context.remove(findOrThrow<Tag>(call.context, arguments.tagId));
                                   }),
        changingTool<AddTagsArguments>("add_tags_to_task", "Add one or more tags to a task.",
                                       {{"taskId", &AddTagsArguments::taskId, "Task UUID (required)"},
                                        {"tagIds", &AddTagsArguments::tagIds, "Array of tag UUIDs to add"}},
                                       addTags),
        changingTool<RemoveTagArguments>("remove_tag_from_task", "Remove a tag from a task.",
                                         {{"taskId", &RemoveTagArguments::taskId, "Task UUID (required)"},
                                          {"tagId", &RemoveTagArguments::tagId, "Tag UUID to remove (required)"}},
                                         removeTag),
        readingTool<ListByTagArguments>(
            "list_tasks_by_tag",
            "List all tasks that have a specific tag. By default excludes tasks under archived projects or clients.",
            {{"tagId", &ListByTagArguments::tagId, "Tag UUID"},
             {"includeArchived", &ListByTagArguments::includeArchived,
              "Include tasks under archived projects or clients"}},
            tasksOfTag),
    };
}

} // namespace quillorn
