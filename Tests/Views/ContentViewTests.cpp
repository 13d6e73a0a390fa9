#include "Views/ContentView.h"

#include "Support/ViewTest.h"

namespace quillorn {
namespace {

using Kind = SidebarItem::Kind;

struct ContentViewTest : ViewTest {
    ContentViewTest() {
        elsewhere([&](ModelContext& context) {
            auto& site = make<Project>(context, {.name = "Site"});
            site.setClient(&make<Client>(context, {.name = "Acme"}));
            make<Tag>(context, {.name = "home"});
            auto& made = make<ProjectTask>(context, {.title = "a", .project = &site});
            make<Note>(context, {.title = "n"});
            make<TimeEntry>(context, {.task = &made, .startTime = testNow});
        });
        project = record<Project>("Site").id();
        task = record<ProjectTask>("a").id();
        queue.advance(std::chrono::seconds(1));
    }
    void post(std::string_view command, std::any object = {}) {
        notifications.post({.name = std::string(command), .object = std::move(object), .userInfo = {}});
        queue.runPosted();
    }
    std::string kept(const Setting& setting) { return scene.text(setting); }

    ContentView view{environment, scene, notifications};
    UUID project, task;
};

TEST_F(ContentViewTest, keysLeadBackToTheirItems) {
    ModelContext& context = main.context();
    const UUID client = record<Client>("Acme").id(), tag = record<Tag>("home").id();
    for (const SidebarItem& item : {SidebarItem{Kind::client, client}, SidebarItem{Kind::project, project},
                                    SidebarItem{Kind::tag, tag}, SidebarItem{Kind::today}, SidebarItem{Kind::allNotes}})
        EXPECT_EQ(SidebarItem::decode(item.key(), context), item) << item.key();
    const std::string id = project.string();
    for (const std::string& key : {std::string("client:x"), std::string("a:b:c"), "project:" + id + ":", "tag:" + id,
                                   "folder:" + id, std::string("tomorrow"), std::string(), std::string(":")})
        EXPECT_EQ(SidebarItem::decode(key, context), std::nullopt) << key;
    EXPECT_EQ((SidebarItem{Kind::tag, tag}.label(context)), "home");
    EXPECT_EQ(SidebarItem{Kind::dailySummary}.label(context), "Daily Summary");
}

TEST_F(ContentViewTest, aWindowComesBackAsItWas) {
    view.select(SidebarItem{Kind::project, project});
    view.selectTask(task);
    ContentView again(environment, scene, notifications);
    again.restore();
    EXPECT_EQ(again.sidebarSelection(), (SidebarItem{Kind::project, project}));
    EXPECT_EQ(again.selectedTask(), std::nullopt);
    queue.runPosted();
    EXPECT_EQ(again.selectedTask(), task);
    EXPECT_EQ(kept(setting("selectedTaskID")), task.string());
    EXPECT_TRUE(timer.isActive(record<ProjectTask>("a")));

    again.select(SidebarItem{Kind::today});
    EXPECT_EQ(kept(setting("selectedTaskID")), "");
    again.select(std::nullopt);
    EXPECT_EQ(kept(setting("sidebarSelectionKey")), "today");
    scene.set(setting("sidebarSelectionKey"), Json("project:" + UUID().string()));
    ContentView lost(environment, scene, notifications);
    lost.restore();
    queue.runPosted();
    EXPECT_EQ(lost.sidebarSelection(), std::nullopt);
    EXPECT_EQ(kept(setting("sidebarSelectionKey")), "project:" + UUID().string());
}

TEST_F(ContentViewTest, columnsShowWhatIsSelected) {
    EXPECT_EQ(view.contentColumn().emptyState.title, "Select an item");
    EXPECT_EQ(view.detailColumn().emptyState.text, "Select a task or note to view details");
    view.select(SidebarItem{Kind::upcoming});
    EXPECT_EQ(view.contentColumn().filter, TaskFilter{TaskFilter::Kind::upcoming});
    view.selectNote(record<Note>("n").id());
    EXPECT_EQ(view.detailColumn().kind, ContentView::Detail::Kind::note);
    view.selectTask(task);
    EXPECT_EQ(view.detailColumn().record, task);
    elsewhere([&](ModelContext& context) { context.remove(named<ProjectTask>(context, "a")); });
    EXPECT_EQ(view.detailColumn().kind, ContentView::Detail::Kind::note);
    view.select(SidebarItem{Kind::project, project});
    EXPECT_EQ(view.contentColumn().record, project);
}

TEST_F(ContentViewTest, commandsDoWhatTheirMenusSay) {
    using enum ContentView::Sheet;
    const std::pair<std::string_view, ContentView::Sheet> sheets[] = {{commands::newProject, newProject},
                                                                      {commands::newTask, newTask},
                                                                      {commands::newNote, newNote},
                                                                      {commands::importReminders, reminderImport}};
    for (const auto& [command, sheet] : sheets) {
        post(command);
        EXPECT_EQ(view.sheet(), sheet);
    }
    view.closeSheet();
    const std::pair<std::string_view, Kind> lists[] = {{commands::showAllTasks, Kind::allTasks},
                                                       {commands::showUpcoming, Kind::upcoming},
                                                       {commands::showToday, Kind::today}};
    for (const auto& [command, kind] : lists) {
        post(command);
        EXPECT_EQ(view.sidebarSelection(), SidebarItem{kind});
    }
    post(commands::logTime);
    EXPECT_EQ(view.sheet(), none) << "nothing to log for";
    post(commands::toggleTimer);
    post(commands::toggleTaskComplete);
    EXPECT_FALSE(timer.isRunning());
    post(commands::navigateToProject, &record<Project>("Site"));
    EXPECT_EQ(view.sidebarSelection(), (SidebarItem{Kind::project, project}));
    post(commands::logTime);
    EXPECT_EQ(view.sheet(), logTime);
    EXPECT_EQ(view.logTarget().project, project);
    view.selectTask(task);
    EXPECT_EQ(view.logTarget().task, task);
    post(commands::toggleTimer);
    EXPECT_TRUE(timer.isRunning());
    post(commands::toggleTaskComplete);
    EXPECT_FALSE(timer.isRunning());
    EXPECT_TRUE(record<ProjectTask>("a").isCompleted());
    EXPECT_TRUE(history.canUndo());
}

TEST_F(ContentViewTest, theNewestTaskIsSelectedBehindItsSheet) {
    view.showSheet(ContentView::Sheet::newTask);
    view.closeSheet();
    EXPECT_EQ(view.selectedTask(), std::nullopt);
    view.showSheet(ContentView::Sheet::newTask);
    elsewhere([&](ModelContext& context) {
        context.insert<ProjectTask>(ProjectTask::Arguments{.title = "new"}, clock.now());
    });
    view.closeSheet();
    EXPECT_EQ(view.selectedTask(), record<ProjectTask>("new").id());
}

TEST_F(ContentViewTest, scenesKeepWhatIsOfTheRightType) {
    GlobalSceneStorage global(settings);
    const IdSet ids{project, task};
    for (SceneStorage* storage : {static_cast<SceneStorage*>(&global), static_cast<SceneStorage*>(&scene)}) {
        EXPECT_TRUE(storage->boolean(setting("sidebarClientsExpanded")));
        EXPECT_EQ(storage->text(setting("taskListSortOrder")), "Due Date");
        storage->set(setting("expandedTaskIDs"), ids);
        EXPECT_EQ(storage->ids(setting("expandedTaskIDs")), ids);
        storage->set(setting("taskListSortOrder"), Json(7));
        EXPECT_EQ(storage->text(setting("taskListSortOrder")), "Due Date");
    }
    settings.set("expandedTaskIDs", "no ids");
    EXPECT_TRUE(global.ids(setting("expandedTaskIDs")).empty());
}

} // namespace
} // namespace quillorn
