#include "API/APITest.h"

namespace quillorn {
namespace {

using ::testing::ElementsAreArray;

TEST_F(APITest, aListIsFilteredAndSortedByDueDate) {
    start();
    const std::string active = addProject("Active");
    const std::string archived = addProject("Archived", true);
    const std::string ofArchived = addProject("Of an archived client", false, true);
    const std::string tag = addTag("blue");
    const auto add = [&](const std::string& title, const std::string& more) {
        return addTask(R"({"title": ")" + title + "\"" + more + "}");
    };
    add("Write caf\u00e9 MENU", R"(, "dueDate": "2026-03-01T00:00:00Z", "priority": 3, "tagIds": [")" + tag + "\"]");
    add("write letter", R"(, "dueDate": "2026-02-01T00:00:00Z", "projectId": ")" + active + "\"");
    add("Undated", R"(, "status": 1)");
    add("Done", R"(, "status": 3, "dueDate": "2026-02-01T00:00:00Z")");
    add("In archive", R"(, "dueDate": "2026-01-01T00:00:00Z", "projectId": ")" + archived + "\"");
    add("At client", R"(, "dueDate": "2026-01-02T00:00:00Z", "projectId": ")" + ofArchived + "\"");

    const std::vector<std::string> visible{"Undated", "write letter", "Done", "Write caf\u00e9 MENU"};
    const std::vector<std::string> all{"Undated",      "In archive", "At client",
                                       "write letter", "Done",       "Write caf\u00e9 MENU"};
    using Titles = std::vector<std::string>;
    const std::pair<std::string, Titles> cases[] = {
        {"", visible},
        {"?archived=false", visible},
        {"?archived=", visible},
        {"?archived=true", all},
        {"?archived=YES", all},
        {"?archived=1", all},
        {"?Archived=true", visible},
        {"?archived=no&archived=true", visible},
        {"?title=WRITE", {"write letter", "Write caf\u00e9 MENU"}},
        {"?title=CAF\xC9", {"Write caf\u00e9 MENU"}}, // the head of a request is Latin-1

        {"?title=cafe", {}},
        {"?title=", {}},
        {"?title=write%20letter", {}},
        {"?completed=true", {"Done"}},
        {"?completed=false", {"Undated", "write letter", "Write caf\u00e9 MENU"}},
        {"?completed=maybe", {"Undated", "write letter", "Write caf\u00e9 MENU"}},
        {"?status=1", {"Undated"}},
        {"?status=+1", {"Undated"}},
        {"?status=9", {}},
        {"?status=-1", {}},
        {"?status=", visible},
        {"?status=one", visible},
        {"?status=1x", visible},
        {"?status=+-1", visible},
        {"?status=99999999999999999999", visible},
        {"?priority=3", {"Write caf\u00e9 MENU"}},
        {"?priority=1&title=e&completed=no", {"Undated", "write letter"}},
        {"?projectId=" + active, {"write letter"}},
        {"?projectId=" + archived, {}},
        {"?archived=true&projectId=" + archived, {"In archive"}},
        {"?projectId=" + unknownId, {}},
        {"?projectId=garbage", visible},
        {"?tagId=" + tag, {"Write caf\u00e9 MENU"}},
        {"?tagId=" + tag + "&completed=true", {}},
        {"?tagId=garbage", visible},
    };
    for (const auto& [query, titles] : cases)
        EXPECT_THAT(get("/api/tasks" + query).all("title"), ElementsAreArray(titles.begin(), titles.end())) << query;
}

} // namespace
} // namespace quillorn
