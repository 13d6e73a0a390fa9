#include "Models/HexColor.h"
#include "Support/StoreTest.h"

#include <gmock/gmock.h>
#include <set>

namespace quillorn {
namespace {

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
        {"", " Said \n\n this  and \n that ", true, "Said  this and  that", "Said", "this  and   that",
            "Commented on Draw"},
        {" Plan ", "a\nb", false, "a b", "Plan", "a b", "Edited note: Plan"},
        {"  Untitled Note ", "\n\n first \n\nsecond\nthird", false, "first  second third", "first", "second third",
            "Edited note: first  second third"},
        {"", "a    b   c  d", false, "a  b  c d", "a    b   c  d", "", "Edited note: a  b  c d"},
        {"t", x + "x", false, x + "...", "t", x + "...", "Edited note: t"},
        {"", times(121, family) + "\n" + emoji, false, times(121, family) + " " + times(128, family) + "...",
            times(120, family), emoji, "Edited note: " + times(60, family)},
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
        {{"#ABCDÉ", "é#FFF", "12é", "ÉÉÉ"}, black},
    };
    for (const auto& [texts, color] : cases)
        for (const std::string_view text : texts)
            EXPECT_EQ(HexColor::parse(text), color) << text;
}

} // namespace
} // namespace quillorn
