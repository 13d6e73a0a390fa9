#pragma once

#include "Models/TimeEntry.h"
#include "Store/KeyMap.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quillorn {

class ModelContext;

/// What a listing shows of the tasks and projects that time entries are linked to, as last saved. Read in two
/// statements, and with no object made: a long list would otherwise load nearly all tasks with all that they have.
class TimeEntryLinks {
  public:
    struct Link {
        UUID id;
        /// The title of a task, the name of a project.
        std::string name;
    };

    TimeEntryLinks(ModelContext& context, const std::vector<TimeEntry*>& entries);

    /// Null for none.
    const Link* taskOf(const TimeEntry& entry) const { return m_tasks.find(entry.taskKey()); }
    const Link* projectOf(const TimeEntry& entry) const { return m_projects.find(entry.projectKey()); }

  private:
    class Table {
      public:
        /// `sql` selects key, id and name, and ends in the condition of restrictedStatement.
        void read(ModelContext& context, const char* sql, const std::vector<RowKey>& keys);
        const Link* find(RowKey key) const;

      private:
        std::vector<Link> m_links;
        KeyMap<std::uint32_t> m_places;
    };

    Table m_tasks;
    Table m_projects;
};

} // namespace quillorn
