#include "Integration/ProgramTest.h"
#include "Support/TestClient.h"
#include "Support/TestStore.h"
#include "Support/Threads.h"

#include <csignal>
#include <fstream>
#include <random>
#include <set>
#include <sys/resource.h>
#include <unistd.h>

namespace quillorn {
namespace {

namespace fs = std::filesystem;
using Survival = ProgramTest;

/// The id of the new task; empty when the server did not say that it keeps it.
std::string createTask(const ServerProcess& server, const std::string& title = "Kept") {
    try {
        const std::string answer = server.request("POST", "/api/tasks", "{\"title\":\"" + title + "\"}");
        return answer.starts_with("HTTP/1.1 201 ") ? *Json::parse(bodyOf(answer)).find("id")->asString() : "";
    } catch (const std::exception&) {
        return {}; // cut off in the middle
    }
}

std::set<std::string> taskIds(const ServerProcess& server) {
    std::set<std::string> ids;
    const Json list = server.json("GET", "/api/tasks");
    for (const Json& task : *list.asArray())
        ids.insert(*task.find("id")->asString());
    return ids;
}

std::string integrityCheck(const TemporaryFolder& home) {
    return ForeignConnection(home / "data/Quillorn/Quillorn.store").text("PRAGMA integrity_check");
}

TEST_F(Survival, aFullDiskIsAnErrorAndNotTheEnd) {
    EXPECT_NE(createTask(ServerProcess(home.path())), ""); // makes the store while there is room
    ServerProcess server(home.path(), {.prepare = [] {
                             std::signal(SIGXFSZ, SIG_IGN);
                             const rlimit limit{.rlim_cur = 300'000, .rlim_max = 300'000};
                             setrlimit(RLIMIT_FSIZE, &limit);
                         }});
    std::size_t created = 1;
    while (created < 200 && !createTask(server, std::string(5000, 'x')).empty())
        ++created;
    const std::string refusal = server.request("POST", "/api/tasks", "{\"title\":\"" + std::string(9000, 'x') + "\"}");
    ASSERT_TRUE(refusal.starts_with("HTTP/1.1 500 ")) << refusal;
    const Json body = Json::parse(bodyOf(refusal));
    EXPECT_EQ(*body.find("error"), Json("internal_error"));
    EXPECT_FALSE(body.find("message")->asString()->empty());
    // Reading goes on, and what was promised is there, now and after a restart with room.
    EXPECT_EQ(taskIds(server).size(), created);
    server.signal(SIGKILL);
    server.wait();
    ServerProcess again(home.path());
    EXPECT_EQ(taskIds(again).size(), created);
    EXPECT_NE(createTask(again), "");
    EXPECT_EQ(integrityCheck(home), "ok");
}

TEST_F(Survival, aStoreThatGoesAwayTakesNoWritesAndEndsTheServer) {
    for (const char* suffix : {"", "-wal"}) {
        ServerProcess server(home.path());
        EXPECT_NE(createTask(server), "");
        const fs::path file = home / ("data/Quillorn/Quillorn.store" + std::string(suffix));
        fs::rename(file, home / "away");
        std::ofstream(file).close();
        const std::string refusal = server.request("POST", "/api/tasks", "{\"title\":\"Lost\"}");
        EXPECT_TRUE(refusal.starts_with("HTTP/1.1 500 ")) << refusal;
        EXPECT_EQ(*Json::parse(bodyOf(refusal)).find("error"), Json("internal_error"));
        EXPECT_EQ(server.wait(), 1);
        EXPECT_NE(server.errors().find(file.string() + " was replaced"), std::string::npos) << server.errors();
        fs::rename(home / "away", file);
    }
    EXPECT_EQ(taskIds(ServerProcess(home.path())).size(), 2U);
}

/// Root may write everywhere: such a test runs its program as the user "nobody".
void becomeNobody() {
    constexpr unsigned nobody = 65534;
    if (getuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        _exit(126);
}

TEST_F(Survival, aReadOnlyFolderIsAnErrorAndNotTheEnd) {
    // Where everybody can run it.
    const fs::path program = home / "quillorn", data = home / "data";
    fs::copy_file(QUILLORN_PROGRAM, program);
    fs::create_directory(data);
    fs::create_directory(home / "config");
    fs::permissions(home.path(), fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
    for (const fs::path& path : {program, data, home / "config"})
        ASSERT_TRUE(getuid() != 0 || chown(path.c_str(), 65534, 65534) == 0);
    constexpr auto readOnly = fs::perms::owner_read | fs::perms::owner_exec;

    // A folder that can't be written from the start.
    fs::permissions(data, readOnly);
    ProgramProcess refused(home.path(), {program, {"serve", "--port", "0"}, {}, becomeNobody});
    EXPECT_EQ(refused.wait(), 1);
    EXPECT_NE(refused.errors().find("Quillorn couldn't open your data"), std::string::npos) << refused.errors();
    ProgramProcess doctor(home.path(), {program, {"doctor"}, {}, becomeNobody});
    doctor.wait();
    EXPECT_NE(doctor.output().find("data can't be read and written: Permission denied"), std::string::npos);
    // One that turns so while the server runs.
    fs::permissions(data, fs::perms::owner_all);
    const ServerProcess server(home.path(), {program, {}, {}, becomeNobody});
    EXPECT_NE(createTask(server), "");
    fs::permissions(data / "Quillorn", readOnly);
    const std::size_t expected = createTask(server).empty() ? 1 : 2;
    EXPECT_EQ(taskIds(server).size(), expected);
    fs::permissions(data / "Quillorn", fs::perms::owner_all);
    EXPECT_NE(createTask(server), "");
    EXPECT_EQ(taskIds(server).size(), expected + 1);
}

} // namespace
} // namespace quillorn
