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

namespace {

/// The last version, made of the live classes.
const Schema& liveSchema() {
    static const Schema schema = [] {
        Schema live;
        live.applicationId = 0x5175696C; // "Quil"
        live.version = describedSchemas().back().version;
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

MigrationPlan makePlan() {
    MigrationPlan plan;
    for (const Schema& schema : describedSchemas())
        plan.schemas.push_back(&schema);
    plan.schemas.back() = &liveSchema();
    for (const Schema& schema : describedSchemas())
        if (schema.version > 1)
            plan.stages.push_back({schema.version - 1, schema.version, MigrationStage::Kind::lightweight});
    return plan;
}

} // namespace

const MigrationPlan& QuillornMigrationPlan() {
    static const MigrationPlan plan = makePlan();
    return plan;
}

const Schema& QuillornSchemaV1() {
    return *QuillornMigrationPlan().schemas[0];
}

const Schema& QuillornSchemaV2() {
    return *QuillornMigrationPlan().schemas[1];
}

const Schema& QuillornSchemaV3() {
    return *QuillornMigrationPlan().schemas[2];
}

const Schema& currentSchema() {
    return *QuillornMigrationPlan().schemas.back();
}

std::unique_ptr<ModelContainer> openContainer(const ModelConfiguration& configuration,
                                              const StoreEnvironment& environment, SystemLog& log) {
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
