#pragma once

#include "Store/ModelContext.h"

#include <string>
#include <vector>

namespace quillorn {

/// A statement over the rows that a column names by key: "{}" behind the column in `sql` becomes a
/// KeyCondition, which may let rows of other keys through.
StatementLoan restrictedStatement(ModelContext& context, std::string sql, const std::vector<RowKey>& keys);

template <class Object>
std::vector<RowKey> keysOf(const std::vector<Object*>& objects) {
    std::vector<RowKey> keys;
    keys.reserve(objects.size());
    for (const Object* object : objects)
        keys.push_back(object->key());
    return keys;
}

} // namespace quillorn
