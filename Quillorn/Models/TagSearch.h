#pragma once

#include "Models/Tag.h"

#include <optional>
#include <string>
#include <vector>

namespace quillorn {

class ModelContext;
class Text;

/// Which tags a listing shows; an absent condition does not restrict.
struct TagSearch {
    /// Contained in the name, without regard to case.
    std::optional<std::string> name{};
};

/// The tags that match, by name. `text` compares in the user's locale.
std::vector<Tag*> findTags(ModelContext& context, const TagSearch& search, const Text& text);

} // namespace quillorn
