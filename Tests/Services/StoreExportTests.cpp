#include "Platform/Calendar.h"
#include "Services/ExportFormat.h"
#include "Services/SampleData.h"
#include "Services/StoreExport.h"
#include "Services/StoreImport.h"
#include "Store/EntityType.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <cstdlib>
#include <fmt/core.h>
#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;

std::string exported(ModelContainer& container) {
    ModelContext context(container);
    return jsonText([&](JsonWriter& writer) { exportStore(context, writer); });
}

/// Every row of every table, keys and all.
std::string contents(ModelContainer& container) {
    ModelContext context(container);
    std::string text;
    const auto add = [&](const std::string& table, std::size_t columns) {
        const StatementLoan rows = context.statement("SELECT * FROM \"" + table + "\" ORDER BY 1, 2");
        for (text += table + "\n"; rows->step(); text += '\n')
            for (int column = 0; column < static_cast<int>(columns); ++column)
                text += fmt::format("{}|", rows->isNull(column) ? "null" : rows->text(column));
    };
    for (const EntityType* type : container.schema().entities)
        add(std::string(type->name), type->columns.size() + 2);
    add("ProjectTask_Tag", 2);
    return text;
}

/// A store with everything: each field once absent and once not.
void fill(ModelContext& context) {
    const std::string odd = "Zoë \"& Sons\"\n\t\x01\x7F \xC2\x85 \xF0\x9F\x98\x80 \\";
    for (const bool isFull : {true, false}) {
        const auto text = [&]() { return isFull ? std::optional(odd) : std::nullopt; };
        auto& client = make<Client>(context, {.name = odd, .clientDescription = text()});
        client.setArchived(isFull);
        client.setUpdatedAt(testNow + 123456us);
        auto& group = make<ProjectDivider>(context, {.title = odd});
        auto& project = make<Project>(context, {.name = odd, .projectDescription = text()});
        project.setSortOrder(-7);
        auto& parent = make<ProjectTask>(context, {.title = odd, .taskDescription = text()});
        auto& task = make<ProjectTask>(context, {.title = odd});
        auto& tag = make<Tag>(context, {.name = odd});
        auto& entry = make<TimeEntry>(context, {.startTime = testNow + 1us, .notes = text(), .title = text()});
        auto& note = make<Note>(context, {.title = odd, .content = odd});
        auto& message = make<ChatMessage>(context, {.role = ChatRole::assistant, .content = odd});
        if (!isFull)
            continue;
        project.setClient(&client);
        project.setGroupID(group.id());
        project.setArchived(true);
        // The parent comes behind its child.
        parent.setParentTask(&task);
        parent.setTags({&tag, &make<Tag>(context, {.name = "second"})});
        parent.setProject(&project);
        parent.setDueDate(testNow - 1us);
        parent.setDueHasTime(true);
        parent.setSourceTitle(odd);
        parent.setSourceURL("https://example.org/?a=1&b");
        parent.setPriority(TaskPriority::urgent);
        parent.setCompleted(true, testNow + 7us);
        entry.setEndTime(testNow + 2us);
        entry.setTask(&task);
        entry.setProject(&project);
        note.setProject(&project);
        note.setTask(&parent);
        note.setPinned(true);
        message.setProject(&project);
    }
}

TEST(StoreExport, comesBackWithoutLoss) {
    MemoryStore store, other;
    change(*store.container, fill);
    const std::string text = exported(*store.container);
    importIntoStore(*other.container, text, ImportKind::dryRun);
    EXPECT_EQ(contents(*other.container), contents(*MemoryStore().container));
    const ImportCounts counts = importIntoStore(*other.container, text, ImportKind::real);
    EXPECT_EQ(contents(*other.container), contents(*store.container));
    EXPECT_EQ(counts[4], (std::pair<std::string_view, std::int64_t>("tasks", 4)));
    // Beside what there is.
    MemoryStore third;
    change(*third.container, fill);
    importIntoStore(*third.container, text, ImportKind::real);
    ModelContext context(*third.container);
    EXPECT_EQ(context.fetch<ProjectTask>().size(), 8u);
    // And the log of changes goes on.
    change(*third.container, [](ModelContext& next) { make<Tag>(next, {.name = "third"}); });
}

TEST(StoreExport, refusesTheWholeForOneFault) {
    constexpr std::string_view a = "11111111-1111-1111-1111-111111111111", b = "22222222-2222-2222-2222-222222222222";
    const std::string dates = R"("createdAt":"2026-01-01T00:00:00Z","updatedAt":"2026-01-01T00:00:00.5+01:00")";
    const auto task = [&](std::string_view id, const std::string& rest) {
        return fmt::format(R"({{"id":"{}","title":"t","dueHasTime":false,"priority":1,"status":0,"sortOrder":0,{}{}}})",
                           id, dates, rest);
    };
    const auto tasks = [&](const std::string& list) {
        return R"({"format":"quillorn-export","version":1,"tasks":[)" + list + "]}";
    };
    const std::pair<std::string, std::string_view> cases[] = {
        {"[]", "'{' expected"},
        {R"({"format":"other","version":1})", "this is no export"},
        {R"({"format":"quillorn-export","version":2,"later":[]})", "has version 2"},
        {R"({"format":"quillorn-export","version":1,"later":[]})", "there is no \"later\""},
        {R"({"format":"quillorn-export","version":1,"tags":[],"tags":[]})", "twice"},
        {R"({"format":"quillorn-export","version":1,"tags":[)", "a closing bracket expected"},
        {tasks(task(a, "")) + "x", "the end expected"},
        {tasks(task(a, "") + "," + task(a, "")), "tasks[1]: the id 11111111"},
        {tasks(task(a, R"(,"projectId":"22222222-2222-2222-2222-222222222222")")), "projectId 2222"},
        {tasks(task(a, fmt::format(R"(,"parentTaskId":"{}")", b))), "leads nowhere"},
        {tasks(task(a, fmt::format(R"(,"parentTaskId":"{}")", b)) + "," +
               task(b, fmt::format(R"(,"parentTaskId":"{}")", a))),
         "its own ancestor"},
        {tasks(task(a, fmt::format(R"(,"tagIds":["{}"])", b))), "tagIds 2222"},
        {tasks(task(a, R"(,"dueDate":"yesterday")")), "dueDate has a value that it can't have"},
        {tasks(task(a, R"(,"sourceURL":null)")), "sourceURL has a value"},
        {tasks(task(a, R"(,"colour":"red")")), "there is no field \"colour\""},
        {tasks(task("x", "")), "id is no id"},
        {tasks(R"({"id":"11111111-1111-1111-1111-111111111111"})"), "title is missing"},
        {tasks("[[[[[[[[[[[]]]]]]]]]]]"), "tasks[0]"},
        {tasks("{\"id\": \"\xFF\"}"), "tasks[0]"},
    };
    MemoryStore store;
    const std::string before = contents(*store.container);
    for (const auto& [text, words] : cases)
        try {
            importIntoStore(*store.container, text, ImportKind::real);
            ADD_FAILURE() << text;
        } catch (const ImportError& error) {
            EXPECT_THAT(error.what(), HasSubstr(words)) << text;
        }
    EXPECT_EQ(contents(*store.container), before);
    importIntoStore(*store.container, tasks(task(a, "")), ImportKind::real);
    EXPECT_THAT(exported(*store.container), HasSubstr("\"updatedAt\": \"2025-12-31T23:00:00.500000Z\""));
    EXPECT_THROW(importIntoStore(*store.container, tasks(task(a, "")), ImportKind::real), ImportError);
}

// QUILLORN_RENEW=1 writes it.
TEST(StoreExport, hasTheSchemaOfTheDocumentation) {
    const std::filesystem::path file = QUILLORN_DOCUMENTS "/export.schema.json";
    const std::string schema = exportSchema().text(Json::Style::pretty) + "\n";
    if (std::getenv("QUILLORN_RENEW") != nullptr) // NOLINT(concurrency-mt-unsafe)
        writeFile(file, schema);
    EXPECT_EQ(readFile(file), schema);
}

TEST(StoreExport, theSampleIsOne) {
    MemoryStore store;
    importIntoStore(*store.container, readFile(QUILLORN_SAMPLE), ImportKind::real);
    ModelContext context(*store.container);
    EXPECT_EQ(context.fetch<Client>().size(), 6u);
    EXPECT_EQ(exported(*store.container) + "\n", readFile(QUILLORN_SAMPLE));
    for (const TimeEntry* entry : context.fetch<TimeEntry>())
        EXPECT_TRUE(entry->endTime() && entry->startTime() < *entry->endTime() && entry->notes());
}

TEST(StoreExport, theSampleMovesToAnyDay) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        // now, the end of the last piece of work, the dentist
        {"UTC", "2026-11-20T10:41:00Z", "2026-11-20T10:40:00Z 2026-11-26T08:30:00Z"},
        {"UTC", "2026-11-20T10:39:00Z", "2026-11-19T10:40:00Z 2026-11-25T08:30:00Z"},
        {"America/New_York", "2027-07-02T03:00:00Z", "2027-07-01T14:40:00Z 2027-07-07T12:30:00Z"},
        {"Pacific/Chatham", "2020-03-01T00:00:00Z", "2020-02-29T20:55:00Z 2020-03-06T18:45:00Z"},
    };
    for (const auto& [zone, now, expected] : cases) {
        MemoryStore store;
        const std::string text = exportMovedTo(*parseISO8601(now), Calendar(zone, "en_US"), readFile(QUILLORN_SAMPLE));
        importIntoStore(*store.container, text, ImportKind::real);
        ModelContext context(*store.container);
        Date last{};
        for (const TimeEntry* entry : context.fetch<TimeEntry>())
            last = std::max(last, *entry->endTime());
        std::string found = formatISO8601(last);
        for (const ProjectTask* task : context.fetch<ProjectTask>())
            if (task->title() == "Dentist")
                found += " " + formatISO8601(*task->dueDate());
        EXPECT_EQ(found, expected) << zone << " " << now;
    }
}

} // namespace
} // namespace quillorn
