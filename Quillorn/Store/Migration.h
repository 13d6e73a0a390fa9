#pragma once

#include "Store/Schema.h"

#include <vector>

namespace quillorn {

class Database;

/// A step from one schema version to the next. Lightweight is the only kind so far: it adds what the newer version
/// has more, with the defaults.
struct MigrationStage {
    enum class Kind { lightweight };
    int from = 0;
    int to = 0;
    Kind kind = Kind::lightweight;
};

/// The known versions, oldest first, and the stages between them.
struct MigrationPlan {
    std::vector<const Schema*> schemas;
    std::vector<MigrationStage> stages;
};

/// What a look at a store file showed; nothing has been written.
enum class StoreContent { empty, ours };

/// Tells whether the file is empty or one that `schema` or an older version of it made. Throws StoreError for other
/// files and for versions newer than `schema`.
StoreContent inspectStore(Database& database, const Schema& schema);

/// Makes the tables of a new store, in one transaction.
void createStore(Database& database, const Schema& schema);

/// Brings a store to `schema` along the plan, each stage in one transaction. Throws StoreError when the file's version
/// is not in the plan, or when the file does not have what its version says.
void migrateStore(Database& database, const Schema& schema, const MigrationPlan& plan);

/// Brings a store to `schema` by adding whatever table or column it lacks, whatever version it claims to have. Throws
/// StoreError when adding is not enough.
void migrateStoreByInference(Database& database, const Schema& schema);

} // namespace quillorn
