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

} // namespace
} // namespace quillorn
