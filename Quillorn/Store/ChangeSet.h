#pragma once

#include "Store/Database.h"
#include "Store/Relation.h"

#include <string_view>
#include <vector>

namespace quillorn {

struct EntityType;

/// What one save wrote: every row once, the rows of cascades included. A change of links alone counts as an update of
/// the row whose list was changed.
struct ChangeSet {
    struct Row {
        const EntityType* type;
        RowKey key;
        RowChange change;
    };
    std::vector<Row> rows;
};

/// Posted after each save of this process, on the saving thread; the user info holds the ChangeSet as
/// std::shared_ptr<const ChangeSet> under "changes", null when everything was replaced.
inline constexpr std::string_view storeDidSave = "storeDidSave";

} // namespace quillorn
