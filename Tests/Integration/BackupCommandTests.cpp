#include "Integration/ProgramTest.h"
#include "Platform/LZFSE.h"
#include "Support/FrozenStore.h"

#include <algorithm>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace quillorn {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;
namespace fs = std::filesystem;

struct BackupCommands : ProgramTest {
    fs::path folder() const { return home / "data/Quillorn"; }
    fs::path store() const { return folder() / "Quillorn.store"; }
    Json::Array backups() const { return *Json::parse(outputOf({"backups", "--json"})).find("backups")->asArray(); }
    static std::string text(const Json& object, const char* key) { return *object.find(key)->asString(); }
    static std::string titles(const ServerProcess& server) {
        std::string all;
        const Json list = server.json("GET", "/api/tasks");
        for (const Json& task : *list.asArray())
            all += text(task, "title") + ".";
        return all;
    }
};

TEST_F(BackupCommands, workBesideTheServer) {
    ServerProcess server(home.path());
    EXPECT_THAT(outputOf({"backups"}), EndsWith("/Backups\n  No backups\n"));
    server.json("POST", "/api/tasks", R"({"title": "Then"})");
    const std::string said = outputOf({"backup"});
    EXPECT_THAT(said, MatchesRegex("Backed up [0-9]+ KB\n.*/Backups/Quillorn-[0-9]{8}-[0-9]{4}.store.lzfse\n"));
    const std::string file = said.substr(said.find('\n') + 1, said.size() - said.find('\n') - 2);
    server.json("POST", "/api/tasks", R"({"title": "Now"})");

    const Outcome unconfirmed = run({"restore", file});
    EXPECT_EQ(unconfirmed.status, 2);
    EXPECT_THAT(unconfirmed.errors, HasSubstr("needs --yes"));
    EXPECT_EQ(titles(server).size(), 9U);
    const std::string restored = outputOf({"restore", file, "--yes"}), undo = "\nTo undo this: quillorn restore ";
    EXPECT_THAT(restored, StartsWith("Restored from " + fs::path(file).filename().string() + undo));
    EXPECT_EQ(titles(server), "Then.");
    const std::string before = restored.substr(restored.find(undo) + undo.size());
    EXPECT_EQ(run({"restore", before.substr(0, before.size() - 1), "--yes"}).status, 0);
    EXPECT_EQ(titles(server).size(), 9U);
    EXPECT_EQ(*backups()[0].find("size"), Json(static_cast<std::int64_t>(fs::file_size(text(backups()[0], "file")))));

    const fs::path damaged = folder() / "Backups/Quillorn-20010101-0000.store.lzfse";
    writeFile(damaged, readFile(file).substr(0, 500));
    const Outcome list = run({"backups"});
    EXPECT_EQ(list.status, 1);
    EXPECT_THAT(list.output, AllOf(HasSubstr("years  500 bytes  none    Can't read " + damaged.string() +
                                             ": The compressed data is incomplete"),
                                   HasSubstr("  recent  sound\n")));
    EXPECT_EQ(run({"backups", "--no-check"}).status, 0);
    EXPECT_EQ(run({"restore", damaged, "--yes"}).status, 1);
    EXPECT_THAT(titles(server), HasSubstr("Now."));
}

TEST_F(BackupCommands, askOnATerminal) {
    {
        const ServerProcess server(home.path());
        server.json("POST", "/api/tasks", R"({"title": "Then"})");
    }
    run({"backup"});
    const std::string file = text(backups()[0], "file");
    for (const bool agrees : {false, true}) {
        const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
        ASSERT_TRUE(::grantpt(terminal) == 0 && ::unlockpt(terminal) == 0);
        const std::string itsName = ::ptsname(terminal);
        ProgramProcess program(home.path(), {.arguments = {"restore", file}, .prepare = [&] {
                                                 ::dup2(::open(itsName.c_str(), O_RDWR | O_NOCTTY), STDIN_FILENO);
                                             }});
        EXPECT_EQ(program.waitForLine("Replace"), "Replace all current data?");
        EXPECT_EQ(program.waitForLine("Restoring"),
                  "Restoring “" + fs::path(file).filename().string() +
                      "” replaces your current clients, projects, tasks, notes, and time entries. Your current data is "
                      "snapshotted to the backup folder first, so you can undo this.");
        const std::string answer = agrees ? "y\n" : "\n";
        ASSERT_EQ(::write(terminal, answer.data(), answer.size()), static_cast<ssize_t>(answer.size()));
        EXPECT_EQ(program.wait(), agrees ? 0 : 1);
        EXPECT_EQ(program.errors().find("Cancelled") == std::string::npos, agrees);
        EXPECT_EQ(program.output().find("Restored from ") != std::string::npos, agrees);
        ::close(terminal);
    }
    ProgramProcess demo(home.path(), {.arguments = {"backup", "-QUILLORN_DEMO"}});
    EXPECT_EQ(demo.wait(), 1);
    EXPECT_THAT(demo.errors(), HasSubstr("demo mode"));
}

TEST_F(BackupCommands, knowTheAgeOfABackupFromAnyZone) {
    run({"timer", "status"}); // makes a store
    std::string file = outputOf({"backup"});
    file = file.substr(file.find('\n') + 1, file.size() - file.find('\n') - 2);
    const std::time_t taken = std::time(nullptr);
    for (const int offset : {-12 * 60, -5 * 60, 5 * 60 + 45, 14 * 60}) {
        char name[] = "Quillorn-yyyymmdd-hhmm.store.lzfse";
        const std::time_t wall = taken + offset * 60;
        std::tm parts{};
        std::strftime(name, sizeof name, "Quillorn-%Y%m%d-%H%M.store.lzfse", gmtime_r(&wall, &parts));
        const fs::path elsewhere = folder() / "Backups" / name;
        fs::rename(file, elsewhere); // and keeps the date of the file
        file = elsewhere;
        EXPECT_THAT(outputOf({"backups"}), testing::ContainsRegex("lzfse +([0-9]+ seconds?|1 minute) ")) << name;
        EXPECT_THAT(outputOf({"doctor"}), testing::ContainsRegex("the last one ([0-9]+ seconds?|1 minute) ago\n"))
            << name;
    }
    fs::last_write_time(file, fs::last_write_time(file) - std::chrono::hours{99}); // the name is all that is left
    EXPECT_THAT(outputOf({"doctor"}), HasSubstr("none from before now"));
}

TEST_F(BackupCommands, bringBackWhatADiskHasLost) {
    fs::create_directory(home / "other disk");
    run({"settings", "set", "backupFolderPath", (home / "other disk").string()});
    {
        const ServerProcess server(home.path());
        server.json("POST", "/api/tasks", R"({"title": "Then"})");
    }
    EXPECT_EQ(run({"backup"}).status, 0);
    const std::string file = text(backups()[0], "file");
    EXPECT_THAT(file, StartsWith((home / "other disk").string()));
    // A store that can't be opened is not written to, by a restore neither.
    const std::string junk(5000, 'x');
    writeFile(store(), junk);
    const Outcome refused = run({"restore", file, "--yes"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.errors, HasSubstr("Quillorn couldn't open your data"));
    EXPECT_TRUE(readFile(store()) == junk);
    fs::remove_all(folder());
    EXPECT_EQ(run({"restore", file, "--yes"}).status, 0);
    EXPECT_EQ(titles(ServerProcess(home.path())), "Then.");
}

TEST_F(BackupCommands, leaveNothingBehindWhenTheyAreEnded) {
    run({"backup"});
    const std::string file = text(backups()[0], "file");
    ForeignConnection writer(store());
    writer.execute("BEGIN IMMEDIATE"); // so that a restore waits, with the backup unpacked
    for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
        ProgramProcess program(home.path(), {.arguments = {"restore", file, "--yes"}});
        const auto isUnpacked = [](const fs::directory_entry& entry) {
            return fs::exists(entry.path() / "source.store");
        };
        while (std::none_of(fs::directory_iterator(home / "tmp"), {}, isUnpacked))
            std::this_thread::yield();
        program.signal(signal);
        EXPECT_NE(program.wait(), 0);
        EXPECT_EQ(fs::is_empty(home / "tmp"), signal != SIGKILL);
        EXPECT_EQ(run({"backup"}).status, 0); // sweeps
        EXPECT_TRUE(fs::is_empty(home / "tmp"));
    }
}

struct Doctor : BackupCommands {
    /// What it says of a subject, behind a "!" when that is a fault.
    std::string finding(const std::string& subject) const {
        const Outcome outcome = run({"doctor", "--json"});
        const Json answer = Json::parse(outcome.output);
        EXPECT_EQ(outcome.status, *answer.find("isFine") == Json(true) ? 0 : 1);
        for (const Json& each : *answer.find("findings")->asArray())
            if (text(each, "subject") == subject)
                return (*each.find("isFine") == Json(true) ? "" : "! ") + text(each, "text");
        return "nothing";
    }
    std::string everything() const {
        std::string all;
        for (const auto& entry : fs::recursive_directory_iterator(home.path()))
            all += entry.path().string() + (entry.is_regular_file() ? readFile(entry.path()) : "") + "\n";
        return all;
    }
};

TEST_F(Doctor, findsWhatIsWrongAndChangesNothing) {
    const auto schemaOf = [&](const Schema& schema, const char* more) {
        return [this, &schema, more] { makeFrozenStore(store(), schema, more); };
    };
    const fs::path settings = home / "config/Quillorn/settings.json";
    const auto set = [settings](const char* text) { return [settings, text] { writeFile(settings, text); }; };
    struct Case {
        std::function<void()> prepare;
        const char* subject;
        std::string finding;
    };
    const auto nothing = [] {};
    const std::string current = std::to_string(currentSchema().version);
    const Case cases[] = {
        {nothing, "store", store().string() + " will be made at the first start"},
        {nothing, "schema", "nothing"},
        {nothing, "backups", "none yet; they will go to " + (folder() / "Backups").string()},
        {schemaOf(QuillornSchemaV1(), ""), "schema", "version 1, to become " + current + " at the next start"},
        {schemaOf(currentSchema(), ""), "store", "KB, sound"},
        {schemaOf(currentSchema(), "PRAGMA user_version = 9"), "schema",
         "! version 9, and this program knows versions up to " + current + ": update Quillorn"},
        {[&] { writeFile(store(), "Dear diary"); }, "store", "is damaged (file is not a database): move it away"},
        {[&] { writeFile(folder() / "Backups/Quillorn-20010101-0000.store.lzfse", ""); }, "store",
         "! " + store().string() + " is missing; \"quillorn backups\" shows"},
        {[&] {
             makeFrozenStore(store(), currentSchema());
             writeFile(folder() / "Backups/Quillorn-20010101-0000.store.lzfse", "");
         },
         "backups", "years ago; take one by \"quillorn backup\""},
        {[&] { fs::create_directory(store()); }, "store", "! could not look into " + store().string()},
        {[&] {
             writeFile(folder() / "Backups/Quillorn-20990101-0000.store.lzfse", "");
             fs::create_directories(store());
         },
         "backups",
         "none from before now; 1 of them dated later than now, which don't count (was the clock ahead?); take one"},
        {set("{"), "settings", "! " + settings.string() + " can't be read ("},
        {set(R"({"apiPort": "many"})"), "settings",
         "! apiPort is to be a whole number from 1 to 65535, and is not; \"quillorn settings reset apiPort\" mends it"},
        {set(R"({"apiPort": 70000})"), "port", "! 70000 is no port"},
        {set(R"({"backupFolderPath": "/no/such/folder"})"), "backups",
         "! Quillorn can no longer write to /no/such/folder. Choose the folder again to restore access; backups go to "
         "the default folder until then."},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.finding);
        for (const auto& entry : fs::directory_iterator(home.path()))
            fs::remove_all(entry);
        fs::create_directories(folder() / "Backups");
        fs::create_directories(settings.parent_path());
        fs::create_directory(home / "tmp");
        each.prepare();
        const std::string before = everything();
        EXPECT_THAT(finding(each.subject), HasSubstr(each.finding));
        EXPECT_TRUE(everything() == before);
    }
}

TEST_F(Doctor, looksIntoAStoreWithAnOpenLog) {
    ServerProcess server(home.path());
    server.json("POST", "/api/tasks", R"({"title": "In the log"})");
    run({"settings", "set", "apiPort", std::to_string(server.port())});
    EXPECT_EQ(finding("port"), "Quillorn serves on " + std::to_string(server.port()));
    EXPECT_THAT(finding("store"), EndsWith("sound"));
    server.signal(SIGKILL);
    server.wait();
    EXPECT_EQ(finding("port"), std::to_string(server.port()) + " is free");
    EXPECT_EQ(run({"backup"}).status, 0);
    EXPECT_EQ(run({"doctor"}).status, 0);
    // A log without its companion, as of files that were copied by hand.
    fs::remove(store().string() + "-shm");
    ForeignConnection(store()).execute("INSERT INTO Tag (id, name, color, createdAt, updatedAt) "
                                       "VALUES (randomblob(16), 'x', 'y', 1, 2)");
    fs::remove(store().string() + "-shm");
    ASSERT_GT(fs::file_size(store().string() + "-wal"), 0U);
    const std::string before = everything();
    EXPECT_THAT(finding("store"), EndsWith("sound"));
    EXPECT_TRUE(everything() == before);
}

} // namespace
} // namespace quillorn
