#pragma once

#include "Store/ChangeSet.h"
#include "Store/EntityType.h"
#include "Store/KeyCondition.h"

#include <algorithm>
#include <string>
#include <vector>

namespace quillorn {

/// The keys of the rows of one type that have other columns than before, or are gone; sorted.
inline std::vector<RowKey> changedKeys(const ChangeSet& changes, const EntityType& type) {
    std::vector<RowKey> keys;
    for (const ChangeSet::Row& row : changes.rows)
        if (row.type == &type && row.change != RowChange::related)
            keys.push_back(row.key);
    std::ranges::sort(keys);
    return keys;
}

inline bool isAmong(RowKey key, const std::vector<RowKey>& sorted) {
    return std::ranges::binary_search(sorted, key);
}

} // namespace quillorn
