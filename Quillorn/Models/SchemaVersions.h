#pragma once

#include "Store/Migration.h"
#include "Store/ModelContainer.h"

#include <memory>

namespace quillorn {

class SystemLog;

/// The history of the data model. The last version is made of the live entity classes; the earlier ones are frozen and
/// never change again.
const Schema& QuillornSchemaV1();
/// Added ProjectTask.sourceTitle and sourceURL.
const Schema& QuillornSchemaV2();
/// Added ProjectTask.dueHasTime.
const Schema& QuillornSchemaV3();

const MigrationPlan& QuillornMigrationPlan();

/// The last of these: what this program works with.
const Schema& currentSchema();

/// Opens the store with the migration plan and, when that fails, once more by inference. Throws the first attempt's
/// StoreError when both fail: it says more about a version problem.
std::unique_ptr<ModelContainer> openContainer(const ModelConfiguration& configuration, StoreEnvironment environment,
                                              SystemLog& log);

} // namespace quillorn
