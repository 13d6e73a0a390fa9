#pragma once

#include "Store/Migration.h"
#include "Store/ModelContainer.h"

#include <memory>
#include <vector>

namespace quillorn {

class SystemLog;

/// The history of the data model as FrozenSchemas.cpp tells it, which once shipped never changes again. Stores of the
/// last version are those of the live entity classes, which have the same columns.
const std::vector<Schema>& describedSchemas();

/// The first of those versions.
const Schema& QuillornSchemaV1();
/// Added ProjectTask.sourceTitle and sourceURL.
const Schema& QuillornSchemaV2();
/// Added ProjectTask.dueHasTime.
const Schema& QuillornSchemaV3();

/// All versions, the last one made of the live classes.
const MigrationPlan& QuillornMigrationPlan();

/// The last of these: what this program works with.
const Schema& currentSchema();

/// Opens the store with the migration plan and, when that fails, once more by inference. Throws the first attempt's
/// StoreError when both fail: it says more about a version problem.
std::unique_ptr<ModelContainer> openContainer(const ModelConfiguration& configuration,
                                              const StoreEnvironment& environment, SystemLog& log);

} // namespace quillorn
