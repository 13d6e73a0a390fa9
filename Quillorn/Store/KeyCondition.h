#pragma once

#include "Store/Relation.h"
#include "Store/Statement.h"

#include <cstddef>
#include <string>
#include <vector>

namespace quillorn {

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

/// Restricts a statement to the rows in which a column holds one of these keys. Where there are so many of them that
/// reading everything is faster, it doesn't: there are rows of other keys then.
class KeyCondition {
  public:
    static constexpr std::size_t lookupLimit = 500;

    explicit KeyCondition(const std::vector<RowKey>& keys) : m_count(keys.size()) {
        if (m_count == 1)
            m_values.emplace_back(std::int64_t{keys.front()});
        else if (looksUp())
            m_values.emplace_back(keyList(keys));
    }

    /// What stands behind the column. One key needs no list, which SQLite would turn into a table first.
    const char* sql() const {
        if (m_count == 1)
            return " = ?1";
        return looksUp() ? " IN (SELECT value FROM json_each(?1))" : " IS NOT NULL";
    }
    /// The parameters of that.
    const std::vector<SQLValue>& values() const { return m_values; }

  private:
    bool looksUp() const { return m_count <= lookupLimit; }

    std::size_t m_count;
    std::vector<SQLValue> m_values;
};

} // namespace quillorn
