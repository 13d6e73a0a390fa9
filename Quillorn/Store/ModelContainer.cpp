#include "Store/ModelContainer.h"

#include "Platform/NotificationCenter.h"
#include "Platform/Process.h"
#include "Platform/UUID.h"
#include "Store/StoreError.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace quillorn {

namespace {

/// Pages in the log from which a commit is followed by a checkpoint, as SQLite's own default, and from which it
/// tries to start the log over although readers may be in the way.
constexpr int checkpointPages = 1000;
constexpr int truncatePages = 16000;
/// A log that an opening reads in less than a millisecond, in bytes.
constexpr std::uintmax_t shortLog = 512 * 1024;

std::string location(const ModelConfiguration& configuration, RandomSource& random) {
    // The "memdb" file system shares a database in memory by its name.
    if (!configuration.url)
        return "file:/" + UUID::random(random).string() + "?vfs=memdb";
    return configuration.url->string();
}

/// Makes a missing file with the mode that all our files have, and reports one that can't be used in the system's
/// words; SQLite has only "unable to open database file" for all cases. An existing file is not opened: closing it
/// would drop the locks that SQLite holds on it for another container of this process.
void prepareFile(const std::filesystem::path& file) {
    const auto fail = [&](int error) {
        throw StoreError(fmt::format("Can't open {}: {}", file.string(), std::generic_category().message(error)));
    };
    std::error_code unknown;
    if (std::filesystem::is_directory(file, unknown))
        fail(EISDIR);
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (descriptor >= 0)
        ::close(descriptor);
    else if (errno != EEXIST || ::access(file.c_str(), R_OK | W_OK) != 0)
        fail(errno);
}

/// Links resolved once and for all, so that one store has one lock, whatever it is called.
ModelConfiguration resolved(ModelConfiguration configuration) {
    if (!configuration.url)
        return configuration;
    std::error_code unknown;
    if (const auto file = std::filesystem::weakly_canonical(*configuration.url, unknown); !unknown)
        configuration.url = file;
    return configuration;
}

std::optional<std::filesystem::path> prepareFiles(const ModelConfiguration& configuration) {
    if (!configuration.url)
        return std::nullopt;
    prepareFile(*configuration.url);
    return configuration.url->string() + "-lock";
}

} // namespace

ModelContainer::ModelContainer(const Schema& schema, const MigrationPlan* plan, ModelConfiguration configuration,
                               StoreEnvironment environment)
    : m_schema(schema),
      m_configuration(resolved(std::move(configuration))),
      m_environment(std::move(environment)),
      m_writeLock(prepareFiles(m_configuration)),
      m_pool(location(m_configuration, m_environment.random), [this] { checkFiles(); }) {
    try {
        open(plan);
    } catch (const StoreError& error) {
        if (isInMemory())
            throw;
        throw StoreError(fmt::format("Can't open {}: {}", m_configuration.url->string(), error.what()), error.code());
    }
}

ModelContainer::~ModelContainer() {
    if (isInMemory())
        return;
    try {
        // Connections don't checkpoint on closing, so that it happens under the lock, like every checkpoint.
        const WriteLock::Guard guard = m_writeLock.acquire();
        m_files->check();
        const auto database = m_pool.borrow();
        m_files->check(*database);
        if (m_configuration.keepsShortLog &&
            std::filesystem::file_size(m_configuration.url->string() + "-wal") <= shortLog)
            return;
        database->checkpoint(true);
    } catch (const std::exception&) {
        // The log keeps everything; the next opening reads it. Where the files are lost, a checkpoint could only do
        // harm.
    }
}

void ModelContainer::open(const MigrationPlan* plan) {
    const WriteLock::Guard guard = lockForWriting();
    auto database = m_pool.borrow();
    const StoreContent content = inspectStore(*database, m_schema);
    if (content == StoreContent::empty)
        createStore(*database, m_schema);
    else if (plan != nullptr)
        migrateStore(*database, m_schema, *plan);
    else
        migrateStoreByInference(*database, m_schema);
    // Last of all: it changes the file, and one that can't be brought to the schema must stay as it is.
    ChangeLog(*database, m_schema).prepare();
    if (isInMemory()) {
        m_anchor = m_pool.open();
        return;
    }
    database->execute("PRAGMA journal_mode = WAL");
    database->integer("SELECT count(*) FROM sqlite_schema"); // opens the log and its shared memory
    m_files.emplace(*m_configuration.url).note();
}

WriteLock::Guard ModelContainer::lockForWriting(std::chrono::milliseconds patience) {
    try {
        return m_writeLock.acquire(patience);
    } catch (const StoreLostError& error) {
        reportLoss(error);
        throw;
    }
}

void ModelContainer::checkFiles(const Database* database) const {
    if (!m_files)
        return;
    try {
        if (database != nullptr)
            m_files->check(*database);
        else
            m_files->check();
    } catch (const StoreLostError& error) {
        reportLoss(error);
        throw;
    }
}

void ModelContainer::reportLoss(const StoreLostError& error) const {
    if (m_environment.lost)
        m_environment.lost(error);
}

std::optional<std::int64_t> ModelContainer::fileVersion() {
    if (isInMemory())
        return std::nullopt;
    const std::lock_guard lock(m_watchMutex);
    if (!m_watch)
        m_watch = m_pool.open();
    return m_watch->integer("PRAGMA data_version");
}

void ModelContainer::releaseUnusedMemory() {
    if (m_pool.closeUnused() > 0)
        releaseFreeMemory();
}

void ModelContainer::checkpointIfDue(Database& database) {
    if (isInMemory() || database.logPages() < checkpointPages)
        return;
    database.checkpoint(database.logPages() >= truncatePages);
}

void ModelContainer::publish() noexcept {
    try {
        notifications().post({.name = std::string(storeDidSave), .object = {}, .userInfo = {}});
    } catch (...) {
        // The commit stands, whatever an observer makes of it.
    }
}

} // namespace quillorn
