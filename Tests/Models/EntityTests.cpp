#include "Models/HexColor.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>
#include <set>

namespace quillorn {
namespace {

using testing::ElementsAre;
using namespace std::chrono_literals;
using Entities = StoreTest<MemoryStore>;

std::string times(int count, const std::string& text) {
    return count == 0 ? "" : text + times(count - 1, text);
}

TEST_F(Entities, areConstructedWithTheDefaults) {
    const auto& client = make<Client>(context);
    const auto& project = make<Project>(context);
    const auto& task = make<ProjectTask>(context);
    const auto& entry = make<TimeEntry>(context, {.startTime = testNow});
    const auto& note = make<Note>(context);
    const auto& tag = make<Tag>(context);
    const auto& message = make<ChatMessage>(context);
    const auto& divider = make<ProjectDivider>(context);
    EXPECT_EQ(client.name() + "|" + client.color() + "|" + client.icon(), "|#007AFF|building.2.fill");
    EXPECT_EQ(project.name() + "|" + project.color() + "|" + tag.name() + "|" + tag.color(), "|#007AFF||#007AFF");
    EXPECT_EQ(note.title() + "|" + note.content() + task.title() + message.content() + divider.title(),
              "Untitled Note|");
    EXPECT_EQ(task.priority(), TaskPriority::medium);
    EXPECT_EQ(task.status(), TaskStatus::todo);
    EXPECT_EQ(message.role(), ChatRole::user);
    EXPECT_EQ(project.sortOrder() | task.sortOrder() | divider.sortOrder(), 0);
    EXPECT_FALSE(client.clientDescription() || client.isArchived() || project.projectDescription() ||
                 project.isArchived() || project.groupID() || project.client() || task.taskDescription() ||
                 task.dueDate() || task.dueHasTime() || task.completedAt() || task.sourceTitle() || task.sourceURL() ||
                 task.project() || task.parentTask() || entry.endTime() || entry.notes() || entry.title() ||
                 entry.task() || entry.project() || note.isPinned() || note.project() || note.task() ||
                 divider.clientID());
    for (const Date made : {client.createdAt(), client.updatedAt(), project.createdAt(), project.updatedAt(),
                            task.createdAt(), task.updatedAt(), note.createdAt(), note.updatedAt(), tag.createdAt(),
                            tag.updatedAt(), message.createdAt(), divider.createdAt(), entry.startTime()})
        EXPECT_EQ(made, testNow);
    std::set<UUID> ids{client.id(), project.id(), task.id(), entry.id(), note.id(), tag.id(), message.id(), UUID()};
    EXPECT_EQ(ids.size(), 8U);
    EXPECT_FALSE(make<ProjectTask>(context, {.status = TaskStatus::done}).isCompleted());
}

TEST_F(Entities, countTasksAndTimeUpTheHierarchy) {
    auto& client = make<Client>(context);
    EXPECT_EQ(client.projectCount() + client.totalTaskCount() + client.activeTaskCount(), 0U) << "absent lists";
    auto &open = make<Project>(context), &archived = make<Project>(context);
    open.setClient(&client);
    archived.setClient(&client);
    archived.setArchived(true);
    EXPECT_EQ(client.totalTimeSpent(testNow), 0);
    auto& task = make<ProjectTask>(context, {.project = &open});
    auto& completed = make<ProjectTask>(context, {.project = &open});
    completed.setCompleted(true, testNow);
    auto& hidden = make<ProjectTask>(context, {.status = TaskStatus::done, .project = &archived});
    const auto entry = [&](ProjectTask* on, Project* project, Date start, std::optional<Date> end) -> TimeEntry& {
        auto& made = make<TimeEntry>(context, {.task = on, .project = project, .startTime = start});
        made.setEndTime(end);
        return made;
    };
    auto& both = entry(&task, &open, testNow, testNow + 1500ms); // linked both ways, counted once
    auto& running = entry(&task, nullptr, testNow, std::nullopt);
    auto& direct = entry(nullptr, &open, testNow + 10s, testNow); // negative: counted as it is
    entry(&hidden, nullptr, testNow, testNow + 100s);
    context.save();

    EXPECT_THAT((std::array{client.projectCount(), client.activeProjectCount(), client.totalTaskCount(),
                            client.activeTaskCount(), open.taskCount(), open.completedTaskCount()}),
                ElementsAre(2, 1, 3, 2, 2, 1));
    EXPECT_THAT(client.activeProjects(), ElementsAre(&open));
    EXPECT_THAT(open.activeTasks(), ElementsAre(&task));
    EXPECT_THAT(open.allTimeEntries(), ElementsAre(&both, &running, &direct));
    EXPECT_DOUBLE_EQ(task.totalTimeSpent(testNow + 60s), 61.5);
    EXPECT_DOUBLE_EQ(open.totalTimeSpent(testNow + 60s), 51.5);
    EXPECT_DOUBLE_EQ(client.totalTimeSpent(testNow + 60s), 151.5);
    EXPECT_DOUBLE_EQ(client.totalTimeSpent(testNow + 61s), 152.5) << "a running entry counts on";
    EXPECT_EQ(running.formattedDuration(testNow + 61s), "01:01");
}

TEST_F(Entities, knowTheirPlaceUnderParents) {
    std::vector<ProjectTask*> chain{&make<ProjectTask>(context)};
    EXPECT_EQ(chain[0]->hasSubtasks() + chain[0]->subtaskCount() + chain[0]->depth(), 0U);
    for (int i = 1; i < 40; ++i) {
        auto& task = make<ProjectTask>(context);
        task.setParentTask(chain.back());
        chain.push_back(&task);
    }
    chain[2]->setCompleted(true, testNow);
    make<ProjectTask>(context).setParentTask(chain[1]);
    context.save();
    ModelContext reader(*container);
    EXPECT_EQ(reader.find<ProjectTask>(chain[39]->id())->depth(), 39U);
    const auto* parent = reader.find<ProjectTask>(chain[1]->id());
    EXPECT_TRUE(parent->hasSubtasks());
    EXPECT_EQ(parent->subtaskCount(), 2U);
    EXPECT_EQ(parent->completedSubtaskCount(), 1U);
    chain[0]->setParentTask(chain[2]);
    EXPECT_EQ(chain[0]->depth(), 2U) << "a circle ends";
}

TEST_F(Entities, areOverdueByTheInstant) {
    auto& task = make<ProjectTask>(context);
    EXPECT_FALSE(task.isOverdue(testNow));
    task.setDueDate(testNow);
    EXPECT_FALSE(task.isOverdue(testNow));
    task.setStatus(TaskStatus::review, testNow);
    EXPECT_TRUE(task.isOverdue(testNow + 1us));
    task.setCompleted(true, testNow);
    EXPECT_FALSE(task.isOverdue(testNow + 1us));
}

TEST_F(Entities, nameTimeEntriesByWhatTheyHave) {
    auto& project = make<Project>(context, {.name = "Site"});
    auto &task = make<ProjectTask>(context, {.title = "Draw"}), &nameless = make<ProjectTask>(context);
    const auto name = [&](TimeEntry::Arguments arguments) { return make<TimeEntry>(context, arguments).displayName(); };
    EXPECT_EQ(name({.task = &task, .project = &project, .title = " "}), " ");
    EXPECT_EQ(name({.task = &task, .project = &project, .title = ""}), "Draw");
    EXPECT_EQ(name({.task = &nameless, .project = &project}), "");
    EXPECT_EQ(name({.project = &project}), "Site (General)");
    EXPECT_EQ(name({}), "Unassigned");
}

TEST_F(Entities, deriveTheTextsOfNotes) {
    auto& task = make<ProjectTask>(context, {.title = "Draw"});
    const std::string family = "👨‍👩‍👧", emoji = times(250, family), x = times(250, "x");
    struct Case {
        std::string title, content;
        bool comment;
        std::string preview, displayTitle, listPreview, summary;
    };
    const Case cases[] = {
        // clang-format off
        {"Untitled Note", "", false, "", "Untitled Note", "", "Edited a note"},
        {"", " \n ", false, "", "Untitled Note", "", "Edited a note"},
        {"", "\t \n", true, "", "Comment on Draw", "", "Commented on Draw"},
        {"", " Said \n\n this  and \n that ", true, "Said  this and  that", "Said", "this  and   that",
            "Commented on Draw"},
        {" Plan ", "a\nb", false, "a b", "Plan", "a b", "Edited note: Plan"},
        {" Plan ", "a\nb", true, "a b", "Plan", "a b", "Commented on Draw"},
        {"  Untitled Note ", "\n\n first \n\nsecond\nthird", false, "first  second third", "first", "second third",
            "Edited note: first  second third"},
        {"", "   \nsecond", false, "second", "Untitled Note", "second", "Edited note: second"},
        {"", "a    b   c  d", false, "a  b  c d", "a    b   c  d", "", "Edited note: a  b  c d"},
        {"", "one\r\ntwo", false, "one\r two", "one", "two", "Edited note: one\r two"},
        {"t", x, false, x, "t", x, "Edited note: t"},
        {"t", x + "x", false, x + "...", "t", x + "...", "Edited note: t"},
        {"t", emoji + "!", false, emoji + "...", "t", emoji + "...", "Edited note: t"},
        {"", times(121, family) + "\n" + emoji, false, times(121, family) + " " + times(128, family) + "...",
            times(120, family), emoji, "Edited note: " + times(60, family)},
        {"", "h\n" + times(251, "é"), false, "h " + times(248, "é") + "...", "h", times(250, "é") + "...",
            "Edited note: h " + times(58, "é")},
        // clang-format on
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.title + "|" + each.content.substr(0, 40));
        const auto& note =
            make<Note>(context, {.title = each.title, .content = each.content, .task = each.comment ? &task : nullptr});
        EXPECT_EQ(note.preview(), each.preview);
        EXPECT_EQ(note.displayTitle(), each.displayTitle);
        EXPECT_EQ(note.listPreview(), each.listPreview);
        EXPECT_EQ(note.activitySummary(), each.summary);
    }
    auto& note = make<Note>(context);
    for (const bool pinned : {true, false}) {
        note.togglePin(testNow + 1s);
        EXPECT_EQ(note.isPinned(), pinned);
        EXPECT_EQ(note.updatedAt(), testNow + 1s);
    }
}

TEST(Enums, carryTheirTexts) {
    const std::array statuses{"To Do|circle", "In Progress|circle.lefthalf.filled", "Review|eye.circle",
                              "Done|checkmark.circle.fill"};
    const std::array priorities{"🔵 Low", "🟠 Medium", "❗ High", "🔥 Urgent"};
    const std::array behaviors{"Ask every time|Prompt when completing a parent with incomplete subtasks",
                               "Complete all subtasks|Automatically complete all subtasks when parent is completed",
                               "Leave subtasks as-is|Complete only the parent, subtasks remain unchanged",
                               "Block until subtasks complete|Prevent completing parent until all subtasks are done"};
    const auto joined = [](std::string_view a, std::string_view b) { return std::string(a) + "|" + std::string(b); };
    for (std::size_t raw = 0; raw < 4; ++raw) {
        const auto number = static_cast<std::int64_t>(raw);
        const auto status = enumFromRaw<TaskStatus>(number).value();
        EXPECT_EQ(joined(label(status), symbol(status)), statuses[raw]);
        EXPECT_EQ(menuLabel(enumFromRaw<TaskPriority>(number).value()), priorities[raw]);
        const auto behavior = enumFromRaw<SubtaskCompletionBehavior>(number).value();
        EXPECT_EQ(joined(label(behavior), explanation(behavior)), behaviors[raw]);
    }
    for (const std::int64_t raw : {std::int64_t{-1}, std::int64_t{4}, INT64_MAX, INT64_MIN, std::int64_t{1} << 32})
        EXPECT_FALSE(enumFromRaw<TaskStatus>(raw) || enumFromRaw<TaskPriority>(raw) ||
                     enumFromRaw<SubtaskCompletionBehavior>(raw) || enumFromRaw<ChatRole>(raw));
    EXPECT_EQ(enumFromRaw<ChatRole>(2), ChatRole::assistant);
    EXPECT_EQ(enumFromRaw<ChatRole>(3), std::nullopt);
}

TEST(HexColor, readsDigitsOfThreeSixAndEightCharacters) {
    const HexColor white{1, 1, 1, 1}, black{};
    const auto of = [](int red, int green, int blue, int alpha = 255) {
        return HexColor{red / 255.0, green / 255.0, blue / 255.0, alpha / 255.0};
    };
    const std::pair<std::vector<std::string_view>, HexColor> cases[] = {
        {{"#FFF", "FFF", "#FFFFFF", " ##ffffff;"}, white},
        {{"", "#", "#FF", "#12345", "#1234567", "#123456789", "zzz"}, black},
        {{"#007AFF"}, of(0, 0x7A, 255)},
        {{"#1aF"}, of(0x11, 0xAA, 0xFF)},
        {{"80112233"}, of(0x11, 0x22, 0x33, 0x80)},
        {{"#00FFFFFF"}, of(255, 255, 255, 0)},
        {{"12zz56", "#12 456"}, of(0, 0, 0x12)}, // scanned as far as it goes
        {{"1zz"}, of(0, 0, 0x11)},
        {{"FFFFFz"}, of(0x0F, 0xFF, 0xFF)},
        {{"zzzzzzzz"}, of(0, 0, 0, 0)},
        {{"#ABCDÉF"}, of(0, 0xAB, 0xCD)}, // six characters, though more bytes
    };
    for (const auto& [texts, color] : cases)
        for (const std::string_view text : texts)
            EXPECT_EQ(HexColor::parse(text), color) << text;
}

} // namespace
} // namespace quillorn
