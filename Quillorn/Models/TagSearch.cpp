#include "Models/TagSearch.h"

#include "Models/SearchConditions.h"
#include "Models/Sorting.h"

namespace quillorn {

std::vector<Tag*> findTags(ModelContext& context, const TagSearch& search, const Text& text) {
    auto tags = context.fetch<Tag>();
    keepContaining(tags, text, search.name, &Tag::name);
    sortByName(tags, text);
    return tags;
}

} // namespace quillorn
