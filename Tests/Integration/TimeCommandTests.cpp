#include "Integration/ProgramTest.h"
#include "Platform/Json.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace quillorn {
namespace {

using testing::HasSubstr;

struct TimeCommands : ProgramTest {
    static std::string sample() { return readFile(QUILLORN_SAMPLE); }
};

TEST_F(TimeCommands, takeEverythingOutAndInAgain) {
    const std::string file = home / "all.json";
    EXPECT_EQ(run({"import", QUILLORN_SAMPLE, "--dry-run"}).output,
              "Would import 6 clients, 3 groups, 12 projects, 6 tags, 57 tasks, 92 time entries, 24 notes, 4 chat "
              "messages\n");
    EXPECT_THAT(outputOf({"export"}), HasSubstr("\"clients\": []"));
    EXPECT_EQ(Json::parse(outputOf({"import", QUILLORN_SAMPLE, "--json"})).find("tasks")->asInteger()[0], 57);
    EXPECT_EQ(run({"export", file}).status, 0);
    EXPECT_EQ(readFile(file), sample());
    EXPECT_EQ(outputOf({"export", "-"}), sample());
    struct stat status{};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    const Outcome again = run({"import", file});
    EXPECT_EQ(again.status, 1);
    EXPECT_THAT(again.errors, HasSubstr("nothing was imported: clients[0]: the id "));
    EXPECT_EQ(run({"import", home / "nothing.json"}).errors,
              "quillorn: " + (home / "nothing.json").string() + ": No such file or directory\n");
    EXPECT_EQ(run({"export", home / "no/folder.json"}).status, 1);
}

TEST_F(TimeCommands, logListChangeAndDelete) {
    run({"import", QUILLORN_SAMPLE});
    EXPECT_THAT(outputOf({"log", "launch checklist", "9:00-10:30", "--date", "2026-12-01", "--notes", "Redirects"}),
                HasSubstr("Logged: Launch checklist  1:30  (Dec 1, 2026, 9:00 AM"));
    const Outcome second = run({"log", "--project", "Office", "10pm-9:30", "--date", "2026-11-30"});
    EXPECT_THAT(second.output, HasSubstr("Office (General)  11:30 · ends next day"));
    EXPECT_THAT(second.errors, HasSubstr("Overlaps Launch checklist (9:00 AM"));
    const Json record = Json::parse(outputOf({"log", "checklist", "9:15-9:20", "--date", "2026-12-01", "--json"}));
    EXPECT_EQ(*record.find("endsNextDay"), Json(false));
    EXPECT_EQ(record.find("overlaps")->asArray()->size(), 2u);
    const std::string id = *record.find("id")->asString();
    const std::pair<std::vector<std::string>, std::string_view> wrong[] = {
        {{"log", "checklist", "25h"}, "more than 24 hours"},
        {{"log", "checklist", "9:00-9:00"}, "end must differ from start"},
        {{"log", "checklist", "soon"}, "is no time"},
        {{"log", "checklist"}, "TIME is required"},
        {{"time", "edit", id, "--start", "9:30"}, "it would end before it began"},
        {{"time", "delete", id}, "needs --yes"},
        {{"timer", "adjust", "9:00"}, "no timer is running"},
        {{"timer", "toggle"}, "name the task"},
        {{"report", "--from", "2026-12-02", "--to", "2026-12-01"}, "--to lies before --from"},
    };
    for (const auto& [arguments, words] : wrong) {
        const Outcome outcome = run(arguments);
        EXPECT_NE(outcome.status, 0) << words;
        EXPECT_THAT(outcome.errors, HasSubstr(words));
    }
    EXPECT_EQ(run({"time", "edit", id, "--end", "9:45", "--notes", "Old addresses\there"}).status, 0);
    EXPECT_EQ(outputOf({"time", "list", "--from", "2026-12-01", "--client", "Lindqvist", "--limit", "1"}),
              id + "\t2026-12-01T09:15:00Z\t2026-12-01T09:45:00Z\t1800\tLaunch checklist\tWebsite\tOld "
                   "addresses\\there\n");
    EXPECT_EQ(run({"time", "delete", id, "nothing", "--yes"}).status, 1);
    EXPECT_EQ(outputOf({"time", "list", "--from", "2026-11-30", "--json"}).find(id), std::string::npos);
}

TEST_F(TimeCommands, reportAndFind) {
    run({"import", QUILLORN_SAMPLE});
    run({"log", "--project", "Office", "1h", "--date", "2026-10-01", "--title", "=1+1, \"so\""});
    run({"add", "A task", "--plain"});
    EXPECT_EQ(outputOf({"report", "--from", "2026-10-01", "--to", "2026-10-01", "--by", "task", "--csv"}),
              "title,entries,seconds,hours\r\nSketch the pages,1,9900,2.75\r\nOne table for 84 "
              "films,1,6000,1.67\r\nCover: The Patient Gardener,1,4500,1.25\r\nOffice (General),1,3600,1.00\r\n");
    const Json report = Json::parse(outputOf({"report", "--from", "2026-09-28", "--to", "2026-10-04", "--by", "week",
                                              "--round", "60", "--client", "Tilia", "--json"}));
    EXPECT_EQ(report, Json::parse(R"({"by":"week","from":"2026-09-28","to":"2026-10-04","totalSeconds":7200.0,"rows":[
        {"key":"2026-09-28","title":"Week of 2026-09-28","seconds":7200.0,"entries":1}]})"));
    EXPECT_THAT(outputOf({"report", "--from", "2026-10-01", "--by", "client", "--html"}),
                HasSubstr("Lindqvist &amp; Sons"));
    const Json found = Json::parse(outputOf({"search", "green", "--json"}));
    std::string kinds;
    for (const Json& each : *found.asArray())
        kinds += *each.find("kind")->asString() + ": " + *each.find("text")->asString() + "\n";
    EXPECT_EQ(kinds, "comment: The book on moss has a new cover. It is green.\ntimeEntry: Green on green\n");
    EXPECT_THAT(outputOf({"activity", "--days", "1"}), HasSubstr("\ttaskUpdated\t"));
    const Json activity = Json::parse(outputOf({"activity", "--client", "Amsel", "--json"}));
    EXPECT_EQ(activity.asArray()->size(), 26u);
    run({"done", "A task"});
    const Json day = Json::parse(outputOf({"day", "--json"}));
    EXPECT_EQ(*day.find("completedCount"), Json(1));
    EXPECT_EQ(*day.find("completed")->asArray()->at(0).find("title"), Json("A task"));
    run({"timer", "toggle", "dentist"});
    EXPECT_EQ(Json::parse(outputOf({"timer", "adjust", "2026-11-01T09:00", "--json"})).asArray()->size(), 1u);
    EXPECT_THAT(outputOf({"timer", "toggle"}), HasSubstr("Stopped: Dentist  "));
}

} // namespace
} // namespace quillorn
