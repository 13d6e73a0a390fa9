#include "Integration/ServerProcess.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Services/BackupError.h"
#include "Services/BackupFolder.h"
#include "Services/StoreSnapshot.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <csignal>
#include <gmock/gmock.h>

// Backups and restores on a disk that fails at each of their calls in turn. By default a sample of the calls; all of
// them with QUILLORN_WHOLE_SWEEP=1.

namespace quillorn {
namespace {

namespace fs = std::filesystem;

struct FaultSweep : testing::Test, StoreSurroundings {
    FaultSweep() {
        fs::create_directories(original / "data/Quillorn");
        const auto container = open(original / "data/Quillorn/Quillorn.store");
        const auto setName = [&](const char* name) {
            change(*container, [&](ModelContext& context) {
                const auto tags = context.fetch<Tag>();
                (tags.empty() ? make<Tag>(context) : *tags[0]).setName(name);
            });
        };
        setName("restored");
        change(*container, [](ModelContext& context) {
            for (int i = 0; i < 100; ++i)
                make<ProjectTask>(context, {.title = "A task of some length " + std::to_string(i)});
        });
        const fs::path backups = original / "data/Quillorn/Backups";
        snapshotStore(original / "data/Quillorn/Quillorn.store", backups, [&](int) { return earlier; }, random);
        fs::copy_file(backups / earlier, original / "chosen");
        setName("live");
    }

    struct Run {
        bool cameToThat; // the call number was reached
        int status;
        std::string errors;
    };

    Run run(std::vector<std::string> arguments, const std::string& kind, int call) const {
        fs::remove_all(home);
        fs::copy(original, home, fs::copy_options::recursive);
        fs::create_directory(home / "tmp");
        const fs::path mark = folder / "mark";
        fs::remove(mark);
        if (arguments[0] == "restore")
            arguments.insert(arguments.end(), {(home / "chosen").string(), "--yes"});
        std::map<std::string, std::string> environment{
            {"TMPDIR", home / "tmp"},
            {"FAULT_ROOT", home},
            {"FAULT_AT", std::to_string(call)},
            {"FAULT_KIND", kind},
            {"FAULT_MARK", mark},
#ifdef QUILLORN_FAULTY_DISK
            {"LD_PRELOAD", QUILLORN_FAULTY_DISK},
#endif
        };
        ProgramProcess program(home, {.arguments = arguments, .environment = environment});
        const int status = program.wait();
        return {fs::exists(mark), status, program.errors()};
    }

    /// Whatever bears a backup's name is one.
    void expectSoundBackups(std::size_t least) const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(home / "data/Quillorn/Backups")) {
            if (!entry.path().filename().string().starts_with("Quillorn-"))
                continue;
            const fs::path copy = folder / "copy";
            fs::remove(copy);
            EXPECT_NO_THROW(unpackBackup(entry.path(), copy)) << entry.path();
            ++count;
        }
        EXPECT_GE(count, least);
    }

    std::string nameInStore() const {
        ForeignConnection look(home / "data/Quillorn/Quillorn.store");
        EXPECT_EQ(look.text("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(look.integer("SELECT count(*) FROM ProjectTask"), 100);
        return look.text("SELECT name FROM Tag");
    }

    void sweep(const std::string& command) {
#ifndef QUILLORN_FAULTY_DISK
        GTEST_SKIP() << "not beside a sanitizer";
#endif
        const bool isWhole = std::getenv("QUILLORN_WHOLE_SWEEP") != nullptr;
        for (const std::string kind : {"EIO", "ENOSPC", "KILL"}) {
            int calls = 0, undecided = 0;
            for (int call = 1;; call += isWhole ? 1 : 1 + call / 2) {
                SCOPED_TRACE(command + " " + kind + " at call " + std::to_string(call));
                const Run outcome = run({command}, kind, call);
                if (!outcome.cameToThat)
                    break;
                ++calls;
                if (kind == "KILL")
                    EXPECT_EQ(outcome.status, -SIGKILL);
                else
                    EXPECT_TRUE(outcome.status == 0 || (outcome.status == 1 && !outcome.errors.empty()))
                        << outcome.status << outcome.errors;
                expectSoundBackups(outcome.status == 0 ? 2 : 1);
                const std::string name = nameInStore();
                if (command == "backup")
                    EXPECT_EQ(name, "live");
                else if (outcome.status == 0)
                    EXPECT_EQ(name, "restored");
                else if (kind == "KILL")
                    EXPECT_TRUE(name == "live" || name == "restored") << name;
                else
                    undecided += name == "live" ? 0 : 1;
                if (HasFailure())
                    return;
            }
            EXPECT_GT(calls, isWhole ? 50 : 6);
            // Where the sync of the commit fails the log may hold it all the same, and SQLite can't take it back.
            EXPECT_LE(undecided, 1);
        }
    }

    const std::string earlier = backupFileName(SystemClock().now() - std::chrono::hours(3), Calendar("UTC", "en_US"));
    TemporaryFolder folder;
    const fs::path original = folder / "original", home = folder / "home";
};

TEST_F(FaultSweep, ofBackups) {
    sweep("backup");
}

TEST_F(FaultSweep, ofRestores) {
    sweep("restore");
}

} // namespace
} // namespace quillorn
