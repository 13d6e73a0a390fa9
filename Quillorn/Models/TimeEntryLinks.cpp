#include "Models/TimeEntryLinks.h"

#include "Models/RestrictedStatement.h"

#include <utility>

namespace quillorn {

namespace {

/// The keys that `keyOf` says of the entries, each once, without 0 for none.
std::vector<RowKey> linkedKeys(const std::vector<TimeEntry*>& entries, RowKey (TimeEntry::*keyOf)() const) {
    std::vector<RowKey> keys;
    KeyMap<bool> seen;
    for (const TimeEntry* entry : entries)
        if (const RowKey key = (entry->*keyOf)(); key != 0 && !std::exchange(seen[key], true))
            keys.push_back(key);
    return keys;
}

} // namespace

TimeEntryLinks::TimeEntryLinks(ModelContext& context, const std::vector<TimeEntry*>& entries) {
    m_tasks.read(context, "SELECT key, id, title FROM ProjectTask WHERE key{}",
                 linkedKeys(entries, &TimeEntry::taskKey));
    m_projects.read(context, "SELECT key, id, name FROM Project WHERE key{}",
                    linkedKeys(entries, &TimeEntry::projectKey));
}

void TimeEntryLinks::Table::read(ModelContext& context, const char* sql, const std::vector<RowKey>& keys) {
    m_links.reserve(keys.size());
    m_places.reserve(keys.size());
    const StatementLoan rows = restrictedStatement(context, sql, keys);
    while (rows->step()) {
        m_places[rows->integer(0)] = static_cast<std::uint32_t>(m_links.size());
        m_links.push_back({rows->uuid(1), std::string(rows->text(2))});
    }
}

const TimeEntryLinks::Link* TimeEntryLinks::Table::find(RowKey key) const {
    const std::uint32_t* place = key == 0 ? nullptr : m_places.find(key);
    return place == nullptr ? nullptr : &m_links[*place];
}

} // namespace quillorn
