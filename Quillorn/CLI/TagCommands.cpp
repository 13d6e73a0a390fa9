#include "CLI/RecordCommandLine.h"
#include "CLI/RecordDefinitions.h"
#include "CLI/Table.h"
#include "Models/DeletionQuestions.h"
#include "Models/Tag.h"
#include "Models/TagSearch.h"
#include "Models/TaskTotals.h"
#include "Records/Edits.h"
#include "Records/RecordChoice.h"
#include "Records/TagDTO.h"
#include "Records/TagRequests.h"

#include <CLI/CLI.hpp>

namespace quillorn {

namespace {

struct TagOptions : RecordOptions {
    UpdateTagRequest fields;
};

void addColor(CLI::App* command, TagOptions& options) {
    command->add_option("--color", options.fields.color, "Its colour, as #RRGGBB")->type_name("COLOR");
}

void printRows(const std::vector<Tag*>& tags, StoreWork& work) {
    Table table({{"Id"}, {"Name"}, {"Color"}, {"Tasks", Table::Column::Align::right}});
    const TagCounts counts(work.context, tags);
    for (const Tag* tag : tags)
        table.add({{tag->id().string(), shortId(tag->id()), Paint::dim},
                   tag->name(),
                   tag->color(),
                   std::to_string(counts.of(*tag))});
    if (!table.isEmpty())
        table.print();
}

} // namespace

void addTagCommands(CLI::App& app, Action& chosen) {
    CLI::App* tag = addParent(app, "tag", "Keep tags");
    const RecordKind<TagRows> kind{
        tag, chosen, "TAG", "Tags: id, name, the beginning of an id or a part of a name; - reads them", chooseTag};
    addListing<TagRows>(
        tag, chosen, "Show the tags", std::make_shared<TagOptions>(),
        [](StoreWork& work, const TagOptions&) { return findTags(work.context, TagSearch{}, work.text()); }, printRows);
    auto made = std::make_shared<TagOptions>();
    addColor(addMaking<TagRows>(tag, chosen, "NAME", "What it is called", "Make a tag", made,
                                [](StoreWork& work, const TagOptions& options) -> Tag& {
                                    CreateTagRequest request;
                                    static_cast<TagFields&>(request) = static_cast<const TagFields&>(options.fields);
                                    request.name = joined(options.names);
                                    requireFaultless(request);
                                    return createTag(work.context, request, work.now);
                                }),
             *made);
    addShowing(kind, "Show a tag", [](Tag& shownTag, StoreWork& work) { printRows({&shownTag}, work); });
    auto changed = std::make_shared<TagOptions>();
    CLI::App* edit =
        addChanging(kind, "edit", "Change tags", "Changed", changed, [](StoreWork& work, const TagOptions& options) {
            requireFaultless(options.fields);
            return [&](Tag& each) -> Tag& {
                updateTag(work.context, each, options.fields, work.now);
                return each;
            };
        });
    edit->add_option("--name", changed->fields.name, "The new name")->type_name("NAME");
    addColor(edit, *changed);
    addDeleting(kind, "Delete tags; their tasks are kept", [](const std::vector<Tag*>& tags) {
        const TagCounts counts(tags.front()->context(), tags);
        return tags.size() == 1 ? deletionOfTag(*tags.front(), counts.of(*tags.front()))
                                : Confirmation{fmt::format("Delete {} Tags?", tags.size()),
                                               "They will be removed from all tasks. The tasks themselves are kept."};
    });
}

} // namespace quillorn
