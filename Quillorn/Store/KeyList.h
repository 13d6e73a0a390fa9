#pragma once

#include "Store/Relation.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quillorn {

/// Up to this many rows are looked up by their keys; for more, reading the whole table is faster.
inline constexpr std::size_t keyLookupLimit = 500;

/// "[1,2,3]", to be bound where a statement says "IN (SELECT value FROM json_each(?))": one statement serves lists of
/// every length.
inline std::string keyList(const std::vector<RowKey>& keys) {
    std::string text = "[";
    for (const RowKey key : keys) {
        if (text.size() > 1)
            text += ',';
        text += std::to_string(key);
    }
    return text + "]";
}

} // namespace quillorn
