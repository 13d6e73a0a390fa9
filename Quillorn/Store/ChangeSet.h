#pragma once

#include "Platform/UUID.h"
#include "Store/Relation.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace quillorn {

struct EntityType;

/// What became of one row. A later case outdoes an earlier one, except that a row which was inserted and then updated
/// is inserted to everybody else.
enum class RowChange {
    /// None of its columns: one of its lists has got or lost a member.
    related,
    updated,
    inserted,
    deleted,
};

/// What commits have written: every row once, the rows of cascades included.
struct ChangeSet {
    struct Row {
        const EntityType* type = nullptr;
        RowKey key = 0;
        RowChange change = RowChange::related;
        UUID id{};
        /// Whether another process has written it.
        bool isOfOthers = false;
    };
    std::vector<Row> rows;
    /// Any row may have changed, by whomever: what was replaced, or written where nobody kept count.
    bool isEverything = false;

    bool isEmpty() const { return rows.empty() && !isEverything; }
    bool includesOthers() const { return isEverything || std::ranges::any_of(rows, &Row::isOfOthers); }
};

/// Posted after each commit of this process, on the thread that made it. MainContext tells what was changed.
inline constexpr std::string_view storeDidSave = "storeDidSave";

} // namespace quillorn
