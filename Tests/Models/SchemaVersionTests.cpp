#include "Store/StoreError.h"
#include "Support/FrozenStore.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace quillorn {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

struct StoreFiles : testing::Test, StoreSurroundings {
    fs::path file() const { return folder / "Quillorn.store"; }
    fs::path walFile() const { return file().string() + "-wal"; }
    std::unique_ptr<ModelContainer> open() { return StoreSurroundings::open(file()); }
    /// What opening the file says when it throws.
    std::string refusal(const fs::path& path) {
        try {
            StoreSurroundings::open(path);
        } catch (const StoreError& error) {
            return error.what();
        }
        return "it opened";
    }

    /// A store as an older build made it, with one row in each table; anew if there is one.
    void makeStore(const Schema& schema, const std::string& more = "") {
        for (const auto& entry : fs::directory_iterator(folder.path()))
            fs::remove_all(entry);
        makeFrozenStore(file(), schema, more);
    }

    void expectTheRows(ModelContainer& container) {
        ModelContext context(container);
        const auto& task = named<ProjectTask>(context, "task");
        EXPECT_EQ(task.dueDate(), Date(std::chrono::microseconds(5)));
        EXPECT_EQ(task.status(), TaskStatus::review);
        EXPECT_EQ(task.priority(), TaskPriority::medium);
        EXPECT_FALSE(task.sourceTitle() || task.sourceURL() || task.dueHasTime());
        EXPECT_EQ(task.project()->name() + task.project()->client()->name(), "projectclient");
        EXPECT_THAT(namesOf(task.subtasks()), ElementsAre("sub"));
        EXPECT_THAT(namesOf(task.tags()), ElementsAre("tag"));
        EXPECT_THAT(namesOf(task.timeEntries()), ElementsAre("entry"));
        EXPECT_EQ((*task.notes().begin())->title(), "Untitled Note") << "the schema's default";
        EXPECT_THAT(namesOf(task.project()->client()->chatMessages()), ElementsAre("chat"));
        EXPECT_THAT(namesOf(context.fetch<ProjectDivider>()), ElementsAre("divider"));
    }

    /// Columns with types and defaults, foreign keys and indexes, in an order of their own.
    std::string layout() {
        ForeignConnection look(file());
        return look.text(R"(SELECT group_concat(line, x'0A') FROM (
            SELECT m.name || '.' || c.name || ' ' || c.type || c."notnull" || c.pk || coalesce(c.dflt_value, '-') AS line
                FROM sqlite_schema m JOIN pragma_table_info(m.name) c WHERE m.type = 'table'
            UNION ALL SELECT m.name || '.' || f."from" || ' > ' || f."table" || '.' || f."to" || ' ' || f.on_delete
                FROM sqlite_schema m JOIN pragma_foreign_key_list(m.name) f WHERE m.type = 'table'
            UNION ALL SELECT sql FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL ORDER BY line))") +
               " version " + look.text("PRAGMA user_version") + look.text("PRAGMA application_id");
    }

    TemporaryFolder folder;
};

TEST_F(StoreFiles, areMadeForTheUserAlone) {
    const mode_t mask = ::umask(0);
    const auto container = open();
    change(*container, [](ModelContext& context) { make<Tag>(context); });
    ::umask(mask);
    for (const char* suffix : {"", "-lock", "-wal", "-shm"})
        EXPECT_EQ(fs::status(file().string() + suffix).permissions(), fs::perms(0600)) << suffix;
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(SchemaVersions, liveClassesHaveTheColumnsOfTheLastOne) {
    const auto columnsOf = [](const Schema& schema) {
        std::map<std::string, ColumnSchema> columns;
        for (const TableSchema& table : schema.tables)
            for (const ColumnSchema& column : table.columns)
                columns.emplace(table.name + "." + column.name, column);
        return columns;
    };
    EXPECT_EQ(columnsOf(currentSchema()), columnsOf(describedSchemas().back()));
}

TEST_F(StoreFiles, ofOlderVersionsAreMigrated) {
    open();
    const std::string fresh = layout();
    EXPECT_THAT(fresh,
                AllOf(HasSubstr("ProjectTask.dueHasTime INTEGER100"), HasSubstr(R"("parentTask", "completedAt")")));
    for (const Schema* schema : QuillornMigrationPlan().schemas) {
        SCOPED_TRACE(schema->version);
        makeStore(*schema);
        expectTheRows(*open());
        expectTheRows(*open());
        EXPECT_EQ(layout(), fresh);
    }
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(StoreFiles, thatLackSomethingGetASecondChance) {
    const std::string start = "QuillornMigrationPlan: managed open failed (Can't open " + file().string() + ": ";
    const std::string mismatch = "The store does not match schema version 2: ";
    const std::pair<const char*, std::string> cases[] = {
        // clang-format off
        {"ALTER TABLE ProjectTask DROP COLUMN sourceURL", mismatch + "column ProjectTask.sourceURL is missing"},
        {"PRAGMA user_version = 0", "The store has schema version 0, which no migration starts from"},
        // clang-format on
    };
    for (const auto& [fault, reason] : cases) {
        SCOPED_TRACE(fault);
        makeStore(QuillornSchemaV2(), fault);
        log.clear();
        const auto container = open();
        EXPECT_THAT(log.lines(), ElementsAre(start + reason + "); retrying with inferred migration"));
        ModelContext context(*container);
        EXPECT_EQ(named<ProjectTask>(context, "task").sourceURL(), std::nullopt);
        EXPECT_EQ(ForeignConnection(file()).integer("PRAGMA user_version"), currentSchema().version);
        open();
        EXPECT_EQ(log.lines().size(), 1U) << "from now on it opens as managed";
    }
}

TEST_F(StoreFiles, thatCannotBeOpenedStayAsTheyAre) {
    const auto store = [&](const Schema& schema, const std::string& more) {
        return [this, &schema, more] { makeStore(schema, more); };
    };
    const std::string version = std::to_string(currentSchema().version + 1);
    const std::string claim = "PRAGMA user_version = " + version;
    const std::string newer = "The store has schema version " + version + ", and this program knows versions up to " +
                              std::to_string(currentSchema().version);
    const std::pair<std::function<void()>, std::string> cases[] = {
        {store(currentSchema(), "PRAGMA journal_mode = WAL; " + claim + "; UPDATE Tag SET name = 'logged'"), newer},
        {store(QuillornSchemaV2(), "DROP TABLE Tag; CREATE TABLE Tag (key INTEGER "
                                   "PRIMARY KEY, id, name, color, createdAt, updatedAt, odd TEXT NOT NULL)"),
         "column Tag.odd is unknown"},
        {[&] { writeFile(file(), "Dear diary, this is no database.\n" + std::string(5000, 'x')); },
         "file is not a database"},
        {[&] { fs::create_directory(file()); }, "Is a directory"},
    };
    for (const auto& [prepare, reason] : cases) {
        SCOPED_TRACE(reason);
        fs::remove_all(file());
        fs::remove(walFile());
        prepare();
        EXPECT_EQ(fs::exists(walFile()) && fs::file_size(walFile()) > 0, &reason == &cases[0].second);
        const auto content = [&] {
            return fs::is_directory(file()) ? "folder"
                                            : readFile(file()) + (fs::exists(walFile()) ? readFile(walFile()) : "none");
        };
        const std::string before = content();
        log.clear();
        const std::string refused = refusal(file());
        EXPECT_THAT(refused, HasSubstr(reason));
        EXPECT_THAT(log.lines(), ElementsAre("QuillornMigrationPlan: managed open failed (" + refused +
                                             "); retrying with inferred migration"));
        EXPECT_TRUE(content() == before);
    }
}

} // namespace
} // namespace quillorn
