#include "Views/QuickAddView.h"

#include "Support/ViewTest.h"
#include "Views/GoToChoices.h"
#include "Views/MenuCommands.h"
#include "Views/SidebarView.h"

#include <gmock/gmock.h>
#include <set>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct QuickAddTest : ViewTest {
    QuickAddTest() {
        elsewhere([](ModelContext& context) {
            make<Project>(context, {.name = "Site"}).setClient(&make<Client>(context, {.name = "Acme"}));
            make<Tag>(context, {.name = "waiting"});
            make<ProjectTask>(context, {.title = "Old sites"}).setStatus(TaskStatus::done, testNow);
        });
    }
    std::vector<std::string> chips() {
        std::vector<std::string> texts;
        for (const QuickAddView::Chip& chip : view.chips())
            texts.push_back(chip.text);
        return texts;
    }

    QuickAddView view{environment};
};

TEST_F(QuickAddTest, showsWhatItUnderstandsAndAddsThat) {
    view.setText("Ask Jonas for the logs @Site !high #waiting #soon tomorrow 9:00");
    EXPECT_EQ(view.title(), "Ask Jonas for the logs #soon");
    EXPECT_THAT(chips(), ElementsAre("Site", "Tomorrow 9:00 AM", "High", "#waiting"));
    elsewhere([](ModelContext& context) { make<Tag>(context, {.name = "soon"}); });
    EXPECT_EQ(view.title(), "Ask Jonas for the logs");
    view.setNotes("All of them");
    const auto added = view.addAndStart();
    ASSERT_TRUE(added);
    auto& task = record<ProjectTask>("Ask Jonas for the logs");
    EXPECT_EQ(task.taskDescription(), "All of them");
    EXPECT_EQ(task.project(), &record<Project>("Site"));
    EXPECT_EQ(task.tags().size(), 2U);
    EXPECT_TRUE(task.dueHasTime());
    EXPECT_EQ(task.priority(), TaskPriority::high);
    EXPECT_TRUE(timer.isActive(task));
    EXPECT_EQ(view.text() + view.notes(), "");
    EXPECT_TRUE(history.canUndo());

    settings.set("defaultPriority", 3);
    view.setText("Plain");
    ASSERT_TRUE(view.add());
    EXPECT_EQ(record<ProjectTask>("Plain").priority(), TaskPriority::urgent);
    view.setText(" ");
    EXPECT_FALSE(view.add());
    EXPECT_EQ(view.text(), " ");
    const std::string pasted = std::string(60'000, 'x') + " tomorrow";
    view.setText(pasted);
    EXPECT_EQ(view.title(), pasted);
    EXPECT_THAT(chips(), IsEmpty());
}

TEST_F(QuickAddTest, whateverHasTheNameCanBeGoneTo) {
    const auto titles = [&](std::string_view search) {
        std::vector<std::string> lines;
        for (const GoToChoice& choice : goToChoices(environment, search)) {
            lines.push_back(choice.title + "/" + choice.subtitle);
            const std::string key = choice.record.empty() ? choice.kind : choice.kind + ":" + choice.record;
            EXPECT_TRUE(choice.kind == "task" || choice.kind == "note" || SidebarItem::decode(key, main.context()));
        }
        return lines;
    };
    elsewhere([](ModelContext& context) {
        make<Note>(context, {.title = "", .content = "Site plan\nsecond"});
        make<ProjectTask>(context, {.title = "Move the site"}).setProject(&named<Project>(context, "Site"));
    });
    EXPECT_THAT(titles(" SITE "),
                ElementsAre("Site/Project · Acme", "Move the site/Task · Site", "Site plan second/Note"));
    EXPECT_THAT(titles("today"), ElementsAre("Today/List"));
    EXPECT_THAT(titles("nowhere"), IsEmpty());
}

TEST_F(QuickAddTest, eachKeyOfTheMenuMeansOneCommand) {
    std::set<std::string_view> names;
    std::set<std::string_view> keys;
    for (const MenuCommand& command : menuCommands)
        EXPECT_TRUE(names.insert(command.name).second && keys.insert(command.keys).second) << command.name;
}

TEST_F(QuickAddTest, tasksAreDroppedOnProjectsAndTags) {
    SidebarView sidebar(environment, scene, notifications);
    view.setText("Carried");
    const UUID task = view.add().value();
    sidebar.dropTasks({task}, {SidebarRow::Kind::project, SidebarSection::clients, record<Project>("Site").id()});
    sidebar.dropTasks({task}, {SidebarRow::Kind::tag, SidebarSection::tags, record<Tag>("waiting").id()});
    sidebar.dropTasks({task}, {SidebarRow::Kind::client, SidebarSection::clients, record<Client>("Acme").id()});
    EXPECT_EQ(record<ProjectTask>("Carried").project(), &record<Project>("Site"));
    EXPECT_THAT(record<ProjectTask>("Carried").tags(), ElementsAre(&record<Tag>("waiting")));
    EXPECT_TRUE(SidebarView::takesTasks({SidebarRow::Kind::tag, SidebarSection::tags}));
    EXPECT_FALSE(SidebarView::takesTasks({SidebarRow::Kind::group, SidebarSection::clients}));
}

} // namespace
} // namespace quillorn
