#include "Models/SchemaVersions.h"

#include "Models/ChatMessage.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Platform/SystemLog.h"
#include "Store/EntityType.h"
#include "Store/StoreError.h"

#include <fmt/core.h>

namespace quillorn {

const Schema& QuillornSchemaV3() {
    static const Schema schema = [] {
        Schema live;
        live.applicationId = 0x5175696C; // "Quil"
        live.version = 3;
        live.entities = {
            &Client::entityType(), &ProjectDivider::entityType(), &Project::entityType(), &ProjectTask::entityType(),
            &Tag::entityType(),    &TimeEntry::entityType(),      &Note::entityType(),    &ChatMessage::entityType(),
        };
        for (const EntityType* type : live.entities)
            live.tables.push_back(tableSchema(*type));
        live.links = {{"ProjectTask_Tag", "task", "ProjectTask", "tag", "Tag"}};
        return live;
    }();
    return schema;
}

const MigrationPlan& QuillornMigrationPlan() {
    static const MigrationPlan plan{
        .schemas = {&QuillornSchemaV1(), &QuillornSchemaV2(), &QuillornSchemaV3()},
        .stages = {{1, 2, MigrationStage::Kind::lightweight}, {2, 3, MigrationStage::Kind::lightweight}},
    };
    return plan;
}

const Schema& currentSchema() {
    return *QuillornMigrationPlan().schemas.back();
}

std::unique_ptr<ModelContainer> openContainer(const ModelConfiguration& configuration, StoreEnvironment environment,
                                              SystemLog& log) {
    try {
        return std::make_unique<ModelContainer>(currentSchema(), &QuillornMigrationPlan(), configuration, environment);
    } catch (const StoreError& managed) {
        log.log(fmt::format("QuillornMigrationPlan: managed open failed ({}); retrying with inferred migration",
                            managed.what()));
        try {
            return std::make_unique<ModelContainer>(currentSchema(), nullptr, configuration, environment);
        } catch (const StoreError&) {
            throw StoreError(managed);
        }
    }
}

} // namespace quillorn
