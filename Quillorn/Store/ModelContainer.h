#pragma once

#include "Store/ChangeLog.h"
#include "Store/ConnectionPool.h"
#include "Store/Migration.h"
#include "Store/WriteLock.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace quillorn {

class Clock;
class NotificationCenter;
class RandomSource;
class StoreLostError;

/// Where a container keeps its data.
struct ModelConfiguration {
    std::string name;
    /// The store file; absent for a store in memory, which goes with its container.
    std::optional<std::filesystem::path> url;
    /// The container of a cloud mirror. Kept as configuration: no platform of ours mirrors yet.
    std::string cloudContainerIdentifier;
    /// Whether a short log stays on closing, to be read by the next opening. It spares a program that ends at once the
    /// half dozen syncs of a checkpoint.
    bool keepsShortLog = false;
};

/// What the store needs of the outside world. Referred to, not owned.
struct StoreEnvironment {
    RandomSource& random;
    NotificationCenter& notifications;
    /// Called, on the thread that would have written, when the store's files were removed or replaced: the container is
    /// of no use from then on.
    std::function<void(const StoreLostError& error)> lost{};
};

/// One open store: its schema, its connections and its write lock. Safe to share between threads; work happens in a
/// ModelContext.
class ModelContainer {
  public:
    /// Opens or creates the store. With a plan the file must have a version of the plan, and is migrated along it;
    /// without one, whatever is missing is inferred and added. Throws StoreError; a file that can't be opened stays as
    /// it was, byte for byte.
    ModelContainer(const Schema& schema, const MigrationPlan* plan, ModelConfiguration configuration,
                   StoreEnvironment environment);
    ~ModelContainer();
    ModelContainer(const ModelContainer&) = delete;
    ModelContainer& operator=(const ModelContainer&) = delete;

    const Schema& schema() const { return m_schema; }
    const ModelConfiguration& configuration() const { return m_configuration; }
    bool isInMemory() const { return !m_configuration.url; }
    RandomSource& random() const { return m_environment.random; }
    NotificationCenter& notifications() const { return m_environment.notifications; }

    /// A number that is another one after each commit to the file, by whatever process; absent for a store in memory.
    /// Throws StoreError.
    std::optional<std::int64_t> fileVersion();

    /// To be called now and then: gives back what busier times have left behind.
    void releaseUnusedMemory();

    /// Statements run so far by all contexts, for tests and benchmarks.
    std::uint64_t executedStatements() const { return m_pool.executions(); }

  private:
    friend class ModelContext;
    friend class ContextSave;
    friend class MainContext;
    friend void replaceStoreContents(ModelContainer& source, ModelContainer& live);

    void open(const MigrationPlan* plan);
    /// What every writer begins with. Throws StoreError; one that this container's files are lost is told to the
    /// environment before.
    [[nodiscard]] WriteLock::Guard lockForWriting(std::chrono::milliseconds patience = WriteLock::usualPatience);
    /// Whether the store's own files are still there, before a connection is opened; under the lock, and for the
    /// connection that will write, whether it writes into them. A loss is told to the environment, and thrown.
    void checkFiles(const Database* database = nullptr) const;
    void reportLoss(const StoreLostError& error) const;
    /// After a commit, under the write lock: keeps the write-ahead log short.
    void checkpointIfDue(Database& database);
    /// Posts storeDidSave; never throws.
    void publish() noexcept;

    const Schema& m_schema;
    ModelConfiguration m_configuration;
    StoreEnvironment m_environment;
    WriteLock m_writeLock;
    ConnectionPool m_pool;
    OwnEntries m_ownEntries;
    std::optional<StoreFiles> m_files; // absent for a store in memory
    /// Keeps a store in memory alive while no context is open.
    std::unique_ptr<Database> m_anchor;
    /// Stays open, since it is one connection that is told of the commits of all others. It makes none.
    std::unique_ptr<Database> m_watch;
    std::mutex m_watchMutex;
};

} // namespace quillorn
