#pragma once

#include "Store/Schema.h"
#include "Support/TestStore.h"

namespace quillorn {

/// A store as an older build made it, with one row in each table; then runs `more`.
inline void makeFrozenStore(const std::filesystem::path& file, const Schema& schema, const std::string& more = "") {
    ForeignConnection old(file);
    const auto create = [&](const auto& things) {
        for (const auto& thing : things)
            for (const std::string& statement : creationStatements(thing))
                old.execute(statement);
    };
    create(schema.tables);
    create(schema.links);
    old.execute("PRAGMA application_id = " + std::to_string(schema.applicationId) +
                "; PRAGMA user_version = " + std::to_string(schema.version));
    old.execute(R"(
        INSERT INTO Client (id, name, createdAt, updatedAt) VALUES (randomblob(16), 'client', 1, 2);
        INSERT INTO ProjectDivider (id, title, createdAt) VALUES (randomblob(16), 'divider', 1);
        INSERT INTO Project (id, name, createdAt, updatedAt, client) VALUES (randomblob(16), 'project', 1, 2, 1);
        INSERT INTO ProjectTask (id, title, dueDate, status, createdAt, updatedAt, project, parentTask)
            VALUES (randomblob(16), 'task', 5, 2, 1, 2, 1, NULL), (randomblob(16), 'sub', NULL, 0, 1, 2, NULL, 1);
        INSERT INTO Tag (id, name, createdAt, updatedAt) VALUES (randomblob(16), 'tag', 1, 2);
        INSERT INTO TimeEntry (id, title, startTime, task) VALUES (randomblob(16), 'entry', 1, 1);
        INSERT INTO Note (id, content, createdAt, updatedAt, task) VALUES (randomblob(16), 'said', 1, 2, 1);
        INSERT INTO ChatMessage (id, content, createdAt, client) VALUES (randomblob(16), 'chat', 1, 1);
        INSERT INTO ProjectTask_Tag (task, tag) VALUES (1, 1))");
    old.execute(more);
}

} // namespace quillorn
