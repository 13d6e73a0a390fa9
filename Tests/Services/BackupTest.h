#pragma once

#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/LZFSE.h"
#include "Services/BackupService.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/ScopedEnvironment.h"
#include "Support/StoreTest.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <thread>

namespace quillorn {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// A store with a service, and a folder for temporary files whose name is a trap for SQL.
struct BackupTest : testing::Test, TestStore {
    BackupTest() { fs::create_directory(temporary); }

    std::unique_ptr<BackupService> makeService(bool schedule = false) {
        return std::make_unique<BackupService>(BackupEnvironment{clock, calendar, settings, queue, *background, log},
                                               file(), *container, schedule);
    }
    /// Lets what is under way come to its end.
    void finish() {
        while (service->isBackingUp() || service->isRestoring()) {
            queue.runPosted();
            std::this_thread::yield();
        }
    }
    void backUp(bool force = true) {
        service->runBackup(force);
        finish();
    }
    void restore(const fs::path& backup) {
        service->restoreFromFile(backup);
        finish();
    }
    /// "result" or "! error".
    std::string outcome() const {
        EXPECT_FALSE(service->lastResult() && service->lastError());
        return service->lastError() ? "! " + *service->lastError() : service->lastResult().value_or("");
    }
    fs::path backups() const { return folder / "Backups"; }
    std::vector<std::string> backupNames() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(backups(), none))
            names.push_back(entry.path().filename());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// The newest backup, made now.
    fs::path backup() {
        backUp();
        return backups() / backupNames().back();
    }
    /// Leaves the store's file to the test; the service gets another container for what else it wants of one.
    void letGoOfTheFile() {
        container.reset();
        for (const char* suffix : {"-wal", "-shm"})
            fs::remove(file().string() + suffix);
        container = StoreSurroundings::open(folder / "elsewhere");
        service = makeService();
    }
    void addTag(const std::string& name) {
        change(*container, [&](ModelContext& context) { make<Tag>(context, {.name = name}); });
    }
    std::vector<std::string> tags() {
        ModelContext context(*container);
        return namesOf(context.fetch<Tag>());
    }
    static void setModified(const fs::path& path, Date date) {
        const timespec time{std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count(), 0};
        const timespec times[] = {time, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }

    const fs::path temporary = folder / "it's temporary";
    const ScopedEnvironment temporaryFolder{"TMPDIR", temporary.string()};
    FakeClock clock;
    ManualQueue queue{clock};
    std::unique_ptr<Background> background = std::make_unique<Background>(queue);
    MemorySettings settings;
    Calendar calendar{"Europe/Berlin", "ar_EG"}; // whose digits are not for file names
    std::unique_ptr<BackupService> service = makeService();
};

} // namespace quillorn
