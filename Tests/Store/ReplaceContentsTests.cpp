#include "Store/ReplaceContents.h"

#include "Store/MainContext.h"
#include "Store/StoreError.h"
#include "Support/Dice.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/ScopedLimit.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using Lines = std::vector<std::string>;

Lines lines(ModelContext& context, const std::string& sql) {
    Lines found;
    const StatementLoan query = context.statement(sql);
    while (query->step())
        found.emplace_back(query->text(0));
    return found;
}

std::int64_t integer(ModelContainer& container, const std::string& sql) {
    return std::stoll(lines(*std::make_unique<ModelContext>(container), sql).at(0));
}

/// Every row of every table that the file has, with all its columns but the key, in the order of keys. A reference is
/// given by the place of its target, one that leads nowhere is an empty one.
Lines contents(ModelContainer& container) {
    ModelContext context(container);
    Lines all;
    for (const auto& table : lines(context, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT "
                                            "IN ('sqlite_sequence', 'ChangeLog') ORDER BY name")) {
        const auto values = lines(context, fmt::format(R"(
            SELECT iif(f."table" IS NULL, printf('typeof("%w") || hex("%w")', c.name, c.name),
                printf('coalesce((SELECT (SELECT count(*) FROM "%w" b WHERE b.key <= a.key) FROM "%w" a WHERE a.key = t."%w"), ''-'')',
                    f."table", f."table", c.name))
            FROM pragma_table_info('{0}') c LEFT JOIN pragma_foreign_key_list('{0}') f ON f."from" = c.name
            WHERE c.name <> 'key' ORDER BY c.name)",
                                                       table));
        const bool isLinks = table.find('_') != std::string::npos;
        for (const auto& row :
             lines(context, fmt::format("SELECT {} FROM {} t ORDER BY {}", fmt::join(values, " || ' ' || "), table,
                                        isLinks ? "1" : "key")))
            if (!isLinks || row.find('-') == std::string::npos)
                all.push_back(table + " " + row);
    }
    return all;
}

std::string literal(Dice& dice, const ColumnSchema& column) {
    if (!column.references.empty() || (!column.required && dice.chance(30)))
        return "NULL";
    if (column.type == StorageType::integer)
        return std::to_string(static_cast<std::int64_t>(dice.below(1U << 31)) * 4'000'000'000 - 1'000'000'000'000'000);
    std::string bytes(column.type == StorageType::blob ? 16 : dice.below(12), 'x');
    for (char& byte : bytes)
        byte = static_cast<char>(dice.below(128));
    return fmt::format("CAST(x'{:02x}' AS {})", fmt::join(bytes, ""),
                       column.type == StorageType::blob ? "BLOB" : "TEXT");
}

/// Fills every column of every table by chance: ids that occur twice, references to rows that come later or not at
/// all, keys that were given and are free again.
void fill(const std::filesystem::path& file, unsigned seed, int count) {
    Dice dice(seed);
    ForeignConnection store(file); // without foreign keys
    store.execute("BEGIN");
    const auto someKey = [&] { return std::to_string(1 + dice.below(static_cast<std::size_t>(count))); };
    for (const TableSchema& table : currentSchema().tables) {
        for (int row = 0; row < count; ++row) {
            std::string names, values;
            for (const ColumnSchema& column : table.columns) {
                names += (names.empty() ? "\"" : ", \"") + column.name + "\"";
                values += (values.empty() ? "" : ", ") + literal(dice, column);
            }
            store.execute(fmt::format("INSERT INTO {} ({}) VALUES ({})", table.name, names, values));
        }
        for (int row = 0; row < count; ++row) {
            if (dice.chance(10))
                store.execute(fmt::format("UPDATE {0} SET id = (SELECT id FROM {0} WHERE key = {1}) WHERE key = {2}",
                                          table.name, someKey(), someKey()));
            for (const ColumnSchema& column : table.columns)
                if (!column.references.empty() && dice.chance(80))
                    store.execute(fmt::format("UPDATE {} SET \"{}\" = {} WHERE key = {}", table.name, column.name,
                                              someKey(), someKey()));
        }
    }
    for (int pair = 0; pair < 2 * count; ++pair)
        store.execute(fmt::format("INSERT OR IGNORE INTO ProjectTask_Tag VALUES ({}, {})", someKey(), someKey()));
    for (const TableSchema& table : currentSchema().tables)
        store.execute(fmt::format("DELETE FROM {} WHERE key < 4 OR key % 7 = 0 OR key > {}", table.name, count - 3));
    store.execute("COMMIT");
}

/// A rich store whose file was made under the first version of the schema.
struct SourceStore : TestStore {
    SourceStore() {
        const auto file = folder / "source.store";
        const ModelConfiguration configuration{.name = "source", .url = file, .cloudContainerIdentifier = {}};
        ModelContainer(QuillornSchemaV1(), nullptr, configuration, {.random = random, .notifications = notifications});
        container = StoreSurroundings::open(file);
        fill(file, 1, 60);
    }
};

TEST(ReplaceStoreContents, copiesEveryColumnOfEveryRowUnderNewKeys) {
    SourceStore source;
    TestStore live;
    fill(live.file(), 2, 40);
    const Lines expected = contents(*source.container);
    ASSERT_GT(expected.size(), 7U * 48);
    // The second time it is a store that had these very rows before.
    for (int time = 0; time < 2; ++time) {
        std::map<std::string, std::int64_t> lastKeys;
        for (const TableSchema& table : currentSchema().tables)
            lastKeys[table.name] =
                integer(*live.container, "SELECT seq FROM sqlite_sequence WHERE name = '" + table.name + "'");
        replaceStoreContents(*source.container, *live.container);
        EXPECT_TRUE(contents(*live.container) == expected);
        EXPECT_TRUE(contents(*live.open()) == expected) << "for other processes";
        for (const auto& [table, last] : lastKeys) {
            EXPECT_EQ(integer(*live.container, "SELECT min(key) FROM " + table), last + 1);
            EXPECT_LT(integer(*live.container, "SELECT max(key) FROM " + table), last + 60);
        }
    }
    EXPECT_TRUE(contents(*source.container) == expected);
    EXPECT_EQ(integer(*live.container, "SELECT count(*) FROM pragma_foreign_key_check"), 0);
    EXPECT_EQ(ForeignConnection(live.file()).text("PRAGMA integrity_check"), "ok");
    // Its own contents, too; and the keys go on behind them.
    replaceStoreContents(*live.container, *live.container);
    EXPECT_TRUE(contents(*live.container) == expected);
    change(*live.container, [](ModelContext& context) { make<Tag>(context, {.name = "new"}); });
    ModelContext context(*live.container);
    EXPECT_EQ(context.fetch<Tag>().back()->name(), "new");
}

TEST(ReplaceStoreContents, leavesEverythingAsItWasWhenItFails) {
    const std::string refuse = " BEGIN SELECT RAISE(ABORT, 'refused'); END", accept = "DROP TRIGGER refuse";
    struct Case {
        std::string liveBegin, liveEnd, sourceBegin, sourceEnd;
    };
    const Case cases[] = {
        {"CREATE TRIGGER refuse BEFORE DELETE ON Client" + refuse, accept, "", ""},
        {"CREATE TRIGGER refuse AFTER INSERT ON ProjectTask_Tag WHEN (SELECT count(*) FROM ProjectTask_Tag) > 20" +
             refuse,
         accept, "", ""},
        {"", "", "ALTER TABLE Note RENAME TO Gone", "ALTER TABLE Gone RENAME TO Note"},
        {"", "", "", ""}, // a full disk
    };
    SourceStore source;
    TestStore live;
    fill(live.file(), 2, 40);
    const Lines before = contents(*live.container);
    int posts = 0;
    const auto token = live.notifications.observe(storeDidSave, [&](const Notification&) { ++posts; });
    for (const Case& each : cases) {
        SCOPED_TRACE(each.liveBegin + each.sourceBegin);
        ForeignConnection(source.folder / "source.store").execute(each.sourceBegin);
        ForeignConnection(live.file()).execute(each.liveBegin);
        {
            const auto full =
                each.liveBegin.empty() && each.sourceBegin.empty() ? std::make_unique<FullDisk>() : nullptr;
            EXPECT_THROW(replaceStoreContents(*source.container, *live.container), StoreError);
        }
        ForeignConnection(live.file()).execute(each.liveEnd);
        ForeignConnection(source.folder / "source.store").execute(each.sourceEnd);
        EXPECT_TRUE(contents(*live.container) == before);
    }
    TestStore old;
    ModelContainer frozen(QuillornSchemaV1(), nullptr,
                          {.name = "old", .url = old.folder / "old.store", .cloudContainerIdentifier = {}},
                          {.random = old.random, .notifications = old.notifications});
    EXPECT_THROW(replaceStoreContents(frozen, *live.container), StoreError);
    EXPECT_THROW(replaceStoreContents(*live.container, frozen), StoreError);
    EXPECT_EQ(posts, 0);
    EXPECT_TRUE(contents(*live.container) == before);

    replaceStoreContents(*source.container, *live.container);
    EXPECT_EQ(posts, 1);
    EXPECT_TRUE(contents(*live.container) == contents(*source.container));
}

} // namespace
} // namespace quillorn
