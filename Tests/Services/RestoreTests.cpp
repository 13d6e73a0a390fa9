#include "Services/BackupError.h"
#include "Services/BackupTest.h"
#include "Services/StoreSnapshot.h"
#include "Store/MainContext.h"
#include "Support/Dice.h"
#include "Support/FrozenStore.h"

namespace quillorn {
namespace {

using RestoreTest = BackupTest;

TEST_F(RestoreTest, bringsBackTheDataAndCanBeUndone) {
    MainContext main(*container, queue, log);
    int told = 0;
    const auto token = main.observe([&](const ChangeSet&) { ++told; });
    change(*container, [](ModelContext& context) {
        auto& task = make<ProjectTask>(context, {.title = "parent"});
        task.setTags({&make<Tag>(context, {.name = "then"})});
        make<ProjectTask>(context, {.title = "sub"}).setParentTask(&task);
    });
    queue.runPosted();
    auto& seen = named<Tag>(main.context(), "then");
    const UUID id = seen.id();
    const fs::path then = backup();
    change(*container, [](ModelContext& context) {
        for (ProjectTask* task : context.fetch<ProjectTask>())
            context.remove(*task);
        named<Tag>(context, "then").setName("now");
        make<Client>(context);
    });
    queue.runPosted();
    const int toldBefore = told;

    // In the same minute: the safety snapshot must not take the place of the file that is restored.
    service->restoreFromFile(then);
    service->restoreFromFile(then); // while one is under way it does nothing
    EXPECT_TRUE(service->isRestoring());
    finish();
    EXPECT_EQ(outcome(), "Restored from " + then.filename().string());
    EXPECT_THAT(backupNames(), ElementsAre("Quillorn-20260115-1300.store.lzfse", "Quillorn-20260115-1301.store.lzfse"));
    const auto expectThen = [&] {
        ModelContext context(*container);
        const auto& parent = named<ProjectTask>(context, "parent");
        EXPECT_THAT(namesOf(parent.tags()), ElementsAre("then"));
        EXPECT_THAT(namesOf(parent.subtasks()), ElementsAre("sub"));
        EXPECT_TRUE(context.fetch<Client>().empty());
        EXPECT_EQ(context.find<Tag>(id)->name(), "then");
    };
    expectThen();
    // The application sees it without being told to look.
    queue.runPosted();
    EXPECT_GT(told, toldBefore);
    EXPECT_EQ(main.context().fetch<ProjectTask>().size(), 2U);
    EXPECT_EQ(main.context().find<Tag>(id)->name(), "then");

    restore(backups() / "Quillorn-20260115-1301.store.lzfse"); // undo
    EXPECT_THAT(tags(), ElementsAre("now"));
    clock.advance(1h);
    restore(then); // and redo
    expectThen();
    EXPECT_EQ(backupNames().size(), 4U);
    EXPECT_TRUE(fs::is_empty(temporary));
}

TEST_F(RestoreTest, takesBackupsOfOlderVersions) {
    for (const Schema* schema : QuillornMigrationPlan().schemas) {
        SCOPED_TRACE(schema->version);
        const fs::path old = folder / ("old" + std::to_string(schema->version));
        makeFrozenStore(old, *schema);
        const std::string name = old.filename().string() + ".lzfse";
        restore(snapshotStore(old, folder.path(), [&](int) { return name; }, random));
        EXPECT_EQ(outcome(), "Restored from " + name);
        ModelContext context(*container);
        EXPECT_EQ(named<ProjectTask>(context, "task").project()->client()->name(), "client");
        EXPECT_EQ(ForeignConnection(file()).integer("PRAGMA user_version"), currentSchema().version);
        EXPECT_EQ(ForeignConnection(old).integer("PRAGMA user_version"), schema->version);
    }
}

TEST_F(RestoreTest, refusesWhatIsNoBackupAndLeavesTheDataAlone) {
    addTag("live");
    const fs::path good = backup();
    const std::string goodBytes = readFile(good);
    std::string broken(decompressLZFSE(goodBytes, 1'000'000).view());
    const std::string plain = broken;
    broken.replace(4096, 600, 600, '\x7F');
    const auto database = [&](const std::string& sql) {
        const TemporaryFolder other;
        makeFrozenStore(other / "store", currentSchema(), sql);
        return std::string(compressLZFSE(readFile(other / "store")).view());
    };
    const std::pair<std::string, std::string> cases[] = {
        {plain, "it is no backup: The data is not compressed with LZFSE"},
        {goodBytes.substr(0, goodBytes.size() / 2), "The compressed data is incomplete"},
        {std::string(compressLZFSE(broken).view()), "Backup file failed integrity check — restore cancelled"},
        {"bvx$", "Backup file failed integrity check — restore cancelled"}, // nothing, compressed
        {database("PRAGMA user_version = 1000"), "The store has schema version 1000"},
        {database("PRAGMA application_id = 7"), "The store file is a database of another program"},
        {database("INSERT INTO Tag SELECT 9223372036854775807, randomblob(16), name, color, 1, 2 FROM Tag"),
         "The row keys of Tag are out of range"},
    };
    const fs::path bad = folder / "bad";
    ForeignConnection watch(file());
    const auto version = [&] { return watch.integer("PRAGMA data_version"); };
    const auto before = version();
    const auto expectRefusal = [&](const fs::path& chosen, const std::string& words) {
        clock.advance(1h);
        const std::size_t count = backupNames().size();
        restore(chosen);
        EXPECT_THAT(outcome(), testing::AllOf(StartsWith("! Restore failed: "), HasSubstr(words)));
        EXPECT_EQ(version(), before) << words;
        EXPECT_EQ(backupNames().size(), count + 1) << "the safety snapshot";
        EXPECT_TRUE(fs::is_empty(temporary));
    };
    for (const auto& [bytes, words] : cases) {
        writeFile(bad, bytes);
        expectRefusal(bad, words);
    }
    expectRefusal(folder / "missing", "Can't read " + (folder / "missing").string() + ": No such file or directory");
    expectRefusal(folder.path(), "Is a directory");
    // Without a safety snapshot there is no restore.
    fs::remove_all(backups());
    writeFile(backups(), "in the way");
    writeFile(bad, goodBytes);
    restore(bad);
    EXPECT_THAT(outcome(), StartsWith("! Restore failed: Can't write " + backups().string()));
    EXPECT_EQ(version(), before);
    EXPECT_THAT(tags(), ElementsAre("live"));
}

} // namespace
} // namespace quillorn
