#include "API/ListCache.h"
#include "API/Routes.h"
#include "Fuzz/FuzzStore.h"
#include "Fuzz/Harness.h"
#include "HTTP/HttpRouter.h"
#include "MCP/MCPResourceRegistry.h"
#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Services/BackupError.h"
#include "Services/StoreSnapshot.h"
#include "Store/ReplaceContents.h"
#include "Store/StoreError.h"
#include "Support/Answers.h"
#include "Support/Dice.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"
#include "Support/FrozenStore.h"
#include "Support/ManualQueue.h"

#include <algorithm>
#include <fmt/format.h>
#include <sqlite3.h>

using namespace quillorn;
namespace fs = std::filesystem;

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximumSize);

namespace {

/// The file's bytes as one that is small: changes of single bytes shall mean something.
std::string compacted(const fs::path& store, const fs::path& copy) {
    fs::remove(copy);
    ForeignConnection(store).execute(
        fmt::format("PRAGMA journal_mode = DELETE; PRAGMA page_size = 512; VACUUM INTO '{}'", copy.string()));
    return readFile(copy);
}

/// The one for all inputs: it takes longer to make than to use.
FuzzStore& store() {
    static FuzzStore store;
    return store;
}

/// One stream of one plain block: what is compressed in it is the other fuzzer's concern.
std::string asBackup(std::string_view bytes) {
    std::string stream = "bvx-";
    for (int shift = 0; shift < 32; shift += 8)
        stream += static_cast<char>(bytes.size() >> shift & 0xFF);
    return stream.append(bytes) + "bvx$";
}

/// A change that SQLite lets through, by whoever may write to a backup.
std::string randomStatement(Dice& dice) {
    // clang-format off
    constexpr const char* columns[][2] = {
        {"Client", "name"}, {"Client", "id"}, {"Client", "createdAt"}, {"Client", "isArchived"},
        {"Project", "client"}, {"Project", "colorHex"}, {"Project", "sortOrder"}, {"Project", "name"},
        {"ProjectTask", "title"}, {"ProjectTask", "status"}, {"ProjectTask", "dueDate"}, {"ProjectTask", "priority"},
        {"ProjectTask", "parentTask"}, {"ProjectTask", "project"}, {"ProjectTask", "key"},
        {"ProjectTask", "sortOrder"}, {"ProjectTask", "completedAt"}, {"ProjectTask_Tag", "tag"}, {"Tag", "name"},
        {"Tag", "color"}, {"TimeEntry", "startTime"}, {"TimeEntry", "endTime"}, {"TimeEntry", "task"},
        {"TimeEntry", "id"}, {"Note", "content"}, {"Note", "isPinned"}, {"Note", "project"},
        {"ChatMessage", "content"}, {"ProjectDivider", "id"}};
    constexpr const char* values[] = {
        "NULL", "0", "-1", "1", "2", "3", "99", "9223372036854775807", "-9223372036854775808", "1e300", "0.5", "''",
        "'text'", "x''", "x'FF'", "zeroblob(16)", "x'00112233445566778899AABBCCDDEEFF'", "CAST(x'61FF62' AS TEXT)",
        "'a' || char(0) || 'b'", "char(0xFFFE)", "key", "9000000000000000", "253402300800000000",
        "(SELECT max(key) FROM ProjectTask)", "(SELECT id FROM Client LIMIT 1)",
        "replace(hex(zeroblob(2000)), '0', 'é')"};
    // clang-format on
    constexpr const char* others[] = {
        "DROP TABLE Tag",
        "DROP TABLE ChatMessage",
        "DROP TABLE ProjectTask_Tag",
        "ALTER TABLE Note RENAME TO Other",
        "ALTER TABLE Tag ADD COLUMN more TEXT",
        "ALTER TABLE ProjectTask DROP COLUMN dueHasTime",
        "PRAGMA application_id = 0",
        "PRAGMA journal_mode = DELETE",
        "DROP TABLE Tag; CREATE VIEW Tag AS SELECT key, id, name AS name, 1 AS createdAt FROM Client",
        "DROP TABLE Tag; CREATE TABLE Tag (key INTEGER PRIMARY KEY, id, name, color, createdAt, updatedAt)",
        "CREATE TRIGGER t AFTER INSERT ON Client BEGIN DELETE FROM Note; END",
        "CREATE VIEW v AS SELECT * FROM v",
        "INSERT INTO ProjectTask_Tag SELECT key, 77 FROM ProjectTask",
        "UPDATE sqlite_sequence SET seq = 9223372036854775807",
        "DELETE FROM sqlite_sequence",
        "DELETE FROM Client",
        "DELETE FROM Project",
        "DELETE FROM ProjectTask WHERE parentTask IS NULL",
        "UPDATE ProjectTask SET parentTask = key",
        "UPDATE ProjectTask SET parentTask = (SELECT max(key) FROM ProjectTask)",
        "UPDATE ProjectTask SET id = (SELECT id FROM ProjectTask LIMIT 1)"};
    if (dice.chance(15))
        return others[dice.below(std::size(others))];
    if (dice.chance(5))
        return fmt::format("PRAGMA user_version = {}", dice.below(5));
    const auto& [table, column] = columns[dice.below(std::size(columns))];
    const std::string which =
        dice.chance(30) ? "" : fmt::format(" WHERE rowid = (SELECT min(rowid) + {} FROM \"{}\")", dice.below(3), table);
    return fmt::format("UPDATE OR IGNORE \"{}\" SET \"{}\" = {}{}", table, column,
                       values[dice.below(std::size(values))], which);
}

/// The database with the statement run on it; unchanged where that is impossible.
std::string changedBy(const std::string& statement, std::string bytes) {
    sqlite3* handle = nullptr;
    sqlite3_open(":memory:", &handle);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(handle, sqlite3_close);
    auto* copy = static_cast<unsigned char*>(sqlite3_malloc64(bytes.size() + 1));
    std::ranges::copy(bytes, copy);
    const auto size = static_cast<sqlite3_int64>(bytes.size());
    constexpr unsigned flags = SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE;
    if (sqlite3_deserialize(handle, "main", copy, size, size, flags) != SQLITE_OK ||
        sqlite3_exec(handle, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        return bytes;
    sqlite3_int64 newSize = 0;
    const std::unique_ptr<unsigned char, void (*)(void*)> result(sqlite3_serialize(handle, "main", &newSize, 0),
                                                                 sqlite3_free);
    return result ? std::string(bytesOf(result.get(), static_cast<std::size_t>(newSize))) : bytes;
}

/// The REST API on the store, without a server around it.
class Caller {
  public:
    Caller() {
        for (const Route& route : apiRoutes(store().container(), m_clock, m_text, m_paths, m_lists))
            m_router.registerRoute(route.method, route.path, route.handler);
    }

    /// Ends the program when the answer speaks of a fault of the server's.
    void call(const std::string& method, const std::string& path, const std::string& body = "",
              const decltype(HttpRequest::queryParams)& query = {}) const {
        HttpRequest request{.path = path, .queryParams = query, .method = method, .body = body};
        const auto match = m_router.route(method, path).value();
        request.params = match.params;
        const HttpResponse response = match.handler(request);
        const std::string answer = bodyOf(response);
        require(response.statusCode() < 500, method + " " + path + ": " + answer.substr(0, 2000));
    }

  private:
    FakeClock m_clock;
    ManualQueue m_queue{m_clock};
    ListCache m_lists{store().container(), m_queue};
    Text m_text{"en_US"};
    FakePaths m_paths{"/nowhere"};
    HttpRouter m_router;
};

/// Reads and changes what was restored as clients do.
void useRestored() {
    static const Caller caller;
    for (const char* list : {"clients", "projects", "tasks", "tags", "time-entries", "notes"})
        caller.call("GET", fmt::format("/api/{}", list), "", {{"archived", "true"}, {"name", "a"}, {"title", "a"}});
    constexpr const char* calls[][2] = {{"project", "GET /api/projects/{}/tasks"},
                                        {"project", "GET /api/projects/{}/time-entries"},
                                        {"task", "GET /api/tasks/{}/time-entries"},
                                        {"task", "POST /api/tasks/{}/complete"},
                                        {"entry", "POST /api/time-entries/{}/stop"},
                                        {"otherProject", "DELETE /api/projects/{}"},
                                        {"task", "DELETE /api/tasks/{}"}};
    for (const auto& [kind, call] : calls) {
        const std::string line = fmt::format(fmt::runtime(call), store().ids().at(kind));
        caller.call(line.substr(0, line.find(' ')), line.substr(line.find(' ') + 1));
    }
    static const Text text("en_US");
    static const Calendar calendar("Europe/Berlin", "en_US");
    static const FakeClock clock;
    static const MCPResourceRegistry resources({store().container(), clock, text, calendar});
    for (const auto& resource : resources.allResources().resources)
        (void)Json::parse(resources.read(resource.uri));
    try {
        (void)Json::parse(resources.read("quillorn://project/" + store().ids().at("project")));
    } catch (const MCPResourceError&) {
        // Not every backup has it.
    }
    caller.call("POST", "/api/tags", R"({"name": "one more"})");
}

} // namespace

std::vector<std::string> quillorn::seeds() {
    const TemporaryFolder folder;
    const fs::path current = folder / "current";
    replaceStoreContents(store().container(), *store().open(current));
    std::vector<std::string> seeds{compacted(current, folder / "copy")};
    for (const Schema* schema : QuillornMigrationPlan().schemas) {
        const fs::path old = folder / std::to_string(schema->version);
        makeFrozenStore(old, *schema);
        seeds.push_back(compacted(old, folder / "copy"));
    }
    return seeds;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t limit, unsigned seed) {
    Dice dice(seed);
    if (dice.chance(30))
        return LLVMFuzzerMutate(data, size, limit);
    const std::string changed = changedBy(randomStatement(dice), std::string(bytesOf(data, size)));
    if (changed.size() > limit)
        return size;
    std::ranges::copy(changed, data);
    return changed.size();
}

/// A backup with this database is refused, and nothing has changed, or restored, and the store is sound and in use.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        fs::remove_all(entry);
    const fs::path backup = folder / "backup";
    const fs::path copy = folder / "copy";
    writeFile(backup, asBackup(bytesOf(data, size)));

    FuzzStore& live = store();
    static const std::string untouched = live.content();
    try {
        unpackBackup(backup, copy);
        const auto source = live.open(copy);
        replaceStoreContents(*source, live.container());
    } catch (const std::runtime_error& error) {
        require(dynamic_cast<const BackupError*>(&error) || dynamic_cast<const StoreError*>(&error), error.what());
        require(live.content() == untouched, "a refused backup changes the store");
        return 0;
    }
    live.requireSound();
    useRestored();
    live.requireSound();
    live.reset();
    return 0;
}
