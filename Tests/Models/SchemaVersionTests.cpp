#include "Store/StoreError.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <gmock/gmock.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct StoreFiles : testing::Test, StoreSurroundings {
    std::filesystem::path file() const { return folder / "Quillorn.store"; }
    std::filesystem::path log() const { return file().string() + "-wal"; }
    std::unique_ptr<ModelContainer> open() { return StoreSurroundings::open(file()); }
    std::vector<std::string> logged() const { return StoreSurroundings::log.lines(); }

    /// A store as an older build made it, with one row in each table and the named links.
    void makeStore(const Schema& schema, const std::string& more = "") {
        ForeignConnection old(file());
        for (const TableSchema& table : schema.tables)
            for (const std::string& statement : creationStatements(table))
                old.execute(statement);
        for (const LinkSchema& link : schema.links)
            for (const std::string& statement : creationStatements(link))
                old.execute(statement);
        old.execute("PRAGMA application_id = " + std::to_string(schema.applicationId) +
                    "; PRAGMA user_version = " + std::to_string(schema.version));
        old.execute(R"(
            INSERT INTO Client (id, name, createdAt, updatedAt) VALUES (randomblob(16), 'client', 1, 2);
            INSERT INTO ProjectDivider (id, title, createdAt) VALUES (randomblob(16), 'divider', 1);
            INSERT INTO Project (id, name, createdAt, updatedAt, client) VALUES (randomblob(16), 'project', 1, 2, 1);
            INSERT INTO ProjectTask (id, title, dueDate, status, createdAt, updatedAt, project)
                VALUES (randomblob(16), 'task', 5, 2, 1, 2, 1);
            INSERT INTO ProjectTask (id, title, createdAt, updatedAt, parentTask)
                VALUES (randomblob(16), 'sub', 1, 2, 1);
            INSERT INTO Tag (id, name, createdAt, updatedAt) VALUES (randomblob(16), 'tag', 1, 2);
            INSERT INTO TimeEntry (id, title, startTime, task) VALUES (randomblob(16), 'entry', 1, 1);
            INSERT INTO Note (id, content, createdAt, updatedAt, task) VALUES (randomblob(16), 'said', 1, 2, 1);
            INSERT INTO ChatMessage (id, content, createdAt, client) VALUES (randomblob(16), 'chat', 1, 1);
            INSERT INTO ProjectTask_Tag (task, tag) VALUES (1, 1))");
        if (!more.empty())
            old.execute(more);
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
    ModelContext context(*container);
    make<Tag>(context);
    context.save();
    ::umask(mask);
    for (const char* suffix : {"", "-lock", "-wal", "-shm"}) {
        struct stat status{};
        ASSERT_EQ(::stat((file().string() + suffix).c_str(), &status), 0) << suffix;
        EXPECT_EQ(status.st_mode & 07777U, 0600U) << suffix;
    }
    EXPECT_THAT(logged(), IsEmpty());
}

TEST(SchemaVersions, addTheseColumns) {
    const auto namesOfColumns = [](const Schema& schema) {
        std::set<std::string> names;
        for (const TableSchema& table : schema.tables)
            for (const ColumnSchema& column : table.columns)
                names.insert(table.name + "." + column.name);
        return names;
    };
    std::vector<std::string> added;
    const auto& versions = QuillornMigrationPlan().schemas;
    for (std::size_t i = 1; i < versions.size(); ++i) {
        EXPECT_EQ(versions[i]->version, versions[i - 1]->version + 1);
        const auto before = namesOfColumns(*versions[i - 1]);
        for (const std::string& name : namesOfColumns(*versions[i]))
            if (!before.contains(name))
                added.push_back(std::to_string(versions[i]->version) + ": " + name);
    }
    EXPECT_THAT(added,
                ElementsAre("2: ProjectTask.sourceTitle", "2: ProjectTask.sourceURL", "3: ProjectTask.dueHasTime"));
}

TEST_F(StoreFiles, ofOlderVersionsAreMigrated) {
    open();
    const std::string fresh = layout();
    EXPECT_THAT(fresh, HasSubstr("ProjectTask.dueHasTime INTEGER100"));
    for (const Schema* schema : QuillornMigrationPlan().schemas) {
        SCOPED_TRACE(schema->version);
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            std::filesystem::remove(entry);
        makeStore(*schema);
        expectTheRows(*open());
        expectTheRows(*open());
        EXPECT_EQ(layout(), fresh);
    }
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(StoreFiles, thatLackSomethingGetASecondChance) {
    const char* const start = "QuillornMigrationPlan: managed open failed (Can't open ";
    struct Case {
        const char *change, *reason;
    };
    for (const Case& each : {
             Case{"ALTER TABLE ProjectTask DROP COLUMN sourceURL",
                  ": The store does not match schema version 2: column ProjectTask.sourceURL is missing"},
             {"DROP TABLE ProjectTask_Tag; PRAGMA user_version = 2",
              ": The store does not match schema version 2: table ProjectTask_Tag is missing"},
             {"PRAGMA user_version = 0", ": The store has schema version 0, which no migration starts from"},
         }) {
        SCOPED_TRACE(each.change);
        std::filesystem::remove(file());
        makeStore(QuillornSchemaV2(), each.change);
        StoreSurroundings::log.clear();
        const auto container = open();
        EXPECT_THAT(logged(),
                    ElementsAre(start + file().string() + each.reason + "); retrying with inferred migration"));
        ModelContext context(*container);
        EXPECT_EQ(named<ProjectTask>(context, "task").sourceURL(), std::nullopt);
        EXPECT_EQ(ForeignConnection(file()).integer("PRAGMA user_version"), currentSchema().version);
        open();
        EXPECT_EQ(logged().size(), 1U) << "from now on it opens as managed";
    }
}

TEST_F(StoreFiles, thatCannotBeOpenedStayAsTheyAre) {
    struct Case {
        const char* name;
        std::function<void()> prepare;
        const char* reason;
    };
    const std::string known = std::to_string(currentSchema().version);
    const std::string unknown = std::to_string(currentSchema().version + 1);
    const std::string claim = "PRAGMA user_version = " + unknown;
    const std::string newer =
        "The store has schema version " + unknown + ", and this program knows versions up to " + known;
    const std::vector<Case> cases{
        {"newer", [&] { makeStore(currentSchema(), claim); }, newer.c_str()},
        {"newer, with a log",
         [&] {
             makeStore(currentSchema(), "PRAGMA journal_mode = WAL; " + claim + "; UPDATE Tag SET name = 'in the log'");
             EXPECT_GT(std::filesystem::file_size(log()), 0U);
         },
         newer.c_str()},
        {"unknown required column",
         [&] {
             makeStore(QuillornSchemaV2(),
                       "DROP TABLE Tag; CREATE TABLE Tag (key INTEGER PRIMARY KEY, id BLOB, name "
                       "TEXT, color TEXT, createdAt INTEGER, updatedAt INTEGER, odd TEXT NOT NULL)");
         },
         "column Tag.odd is unknown"},
        {"text", [&] { writeFile(file(), "Dear diary, this is no database.\n" + std::string(5000, 'x')); },
         "file is not a database"},
        {"foreign", [&] { ForeignConnection(file()).execute("CREATE TABLE Client (name TEXT)"); },
         "The store file is a database of another program"},
        {"truncated",
         [&] {
             makeStore(currentSchema());
             std::filesystem::resize_file(file(), 3 * 4096 + 17);
         },
         "malformed"},
        {"folder", [&] { std::filesystem::create_directory(file()); }, "Is a directory"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        std::filesystem::remove_all(file());
        std::filesystem::remove(log());
        each.prepare();
        const auto content = [&] {
            return std::filesystem::is_directory(file())
                       ? std::string()
                       : readFile(file()) + (std::filesystem::exists(log()) ? readFile(log()) : "none");
        };
        const std::string before = content();
        StoreSurroundings::log.clear();
        try {
            open();
            ADD_FAILURE() << "it opened";
        } catch (const StoreError& error) {
            EXPECT_THAT(error.what(), HasSubstr(each.reason));
            EXPECT_THAT(logged(), ElementsAre("QuillornMigrationPlan: managed open failed (" +
                                              std::string(error.what()) + "); retrying with inferred migration"));
        }
        EXPECT_TRUE(content() == before);
    }
}

TEST_F(StoreFiles, thatTheSystemRefusesAreReportedInItsWords) {
    struct Case {
        std::filesystem::path file;
        const char* reason;
    };
    writeFile(folder / "plain", "");
    const std::vector<Case> cases{
        {folder / "missing/Quillorn.store", "No such file or directory"},
        {folder / "plain/Quillorn.store", "Not a directory"},
        {folder / std::string(300, 'x'), "File name too long"},
    };
    for (const Case& each : cases) {
        try {
            StoreSurroundings::open(each.file);
            ADD_FAILURE() << "it opened";
        } catch (const StoreError& error) {
            EXPECT_EQ(error.what(), "Can't open " + each.file.string() + ": " + each.reason);
        }
    }
}

TEST_F(StoreFiles, withoutPermissionAreReported) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "nothing is refused to root";
    open();
    std::filesystem::permissions(file(), std::filesystem::perms::none);
    EXPECT_THROW(open(), StoreError);
}

} // namespace
} // namespace quillorn
