#include "Integration/ServerProcess.h"
#include "Platform/Json.h"
#include "Support/TestClient.h"

#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <sqlite3.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace quillorn {
namespace {

std::string requestFor(const std::string& method, const std::string& path, const std::string& body = {}) {
    return method + " " + path + " HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n\r\n" + body;
}

/// The id of the new task; empty when the server did not say that it keeps it.
std::string createTask(std::uint16_t port, const std::string& title) {
    try {
        const std::string answer = answerTo(port, requestFor("POST", "/api/tasks", "{\"title\":\"" + title + "\"}"));
        if (!answer.starts_with("HTTP/1.1 201 "))
            return {};
        return *Json::parse(bodyOf(answer)).find("id")->asString();
    } catch (const std::exception&) {
        return {}; // cut off in the middle
    }
}

std::set<std::string> taskIds(std::uint16_t port) {
    std::set<std::string> ids;
    const Json list = Json::parse(bodyOf(answerTo(port, requestFor("GET", "/api/tasks"))));
    for (const Json& task : *list.asArray())
        ids.insert(*task.find("id")->asString());
    return ids;
}

bool isServing(std::uint16_t port) {
    return answerTo(port, requestFor("GET", "/api/health")).starts_with("HTTP/1.1 200 ");
}

std::string integrityCheck(const std::filesystem::path& store) {
    sqlite3* database = nullptr;
    std::string result;
    sqlite3_open(store.c_str(), &database);
    sqlite3_exec(
        database, "PRAGMA integrity_check",
        [](void* text, int, char** values, char**) {
            *static_cast<std::string*>(text) = values[0];
            return 0;
        },
        &result, nullptr);
    sqlite3_close(database);
    return result;
}

TEST(Survival, nothingAcknowledgedIsLostByAKill) {
    TemporaryFolder home;
    std::set<std::string> acknowledged;
    std::mt19937 random(7);
    for (int round = 0; round < 6; ++round) {
        ServerProcess server(home.path());
        std::mutex mutex;
        std::atomic<bool> killed = false;
        // The moment of the kill is a number of answers, so that it falls into the work whatever the machine's speed.
        const std::size_t answers = acknowledged.size() + 5 + random() % 60;
        std::vector<std::thread> writers;
        for (int writer = 0; writer < 4; ++writer) {
            writers.emplace_back([&] {
                while (!killed) {
                    const std::string id = createTask(server.port(), "Kept");
                    const std::lock_guard lock(mutex);
                    if (!id.empty())
                        acknowledged.insert(id);
                    if (acknowledged.size() >= answers && !killed.exchange(true))
                        server.signal(SIGKILL);
                }
            });
        }
        for (std::thread& writer : writers)
            writer.join();
        EXPECT_EQ(server.wait(), -SIGKILL);

        ServerProcess again(home.path());
        const std::set<std::string> present = taskIds(again.port());
        for (const std::string& id : acknowledged)
            EXPECT_TRUE(present.contains(id)) << "lost in round " << round;
    }
    EXPECT_EQ(integrityCheck(home / "data/Quillorn/Quillorn.store"), "ok");
}

TEST(Survival, twoProcessesShareAStore) {
    TemporaryFolder home;
    ServerProcess one(home.path());
    ServerProcess two(home.path());
    // Each sees at once what the other has answered.
    for (int turn = 0; turn < 10; ++turn) {
        const std::string id = createTask((turn % 2 == 0 ? one : two).port(), "Shared");
        EXPECT_TRUE(taskIds((turn % 2 == 0 ? two : one).port()).contains(id));
    }
    // And none loses anything to the other.
    std::mutex mutex;
    std::set<std::string> created;
    std::vector<std::thread> writers;
    for (int writer = 0; writer < 4; ++writer) {
        writers.emplace_back([&, port = (writer % 2 == 0 ? one : two).port()] {
            for (int turn = 0; turn < 100; ++turn) {
                const std::string id = createTask(port, "Busy");
                const std::lock_guard lock(mutex);
                created.insert(id);
            }
        });
    }
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(created.size(), 400U);
    EXPECT_FALSE(created.contains(""));
    EXPECT_EQ(taskIds(one.port()).size(), 410U);
    EXPECT_EQ(taskIds(two.port()).size(), 410U);
}

/// A request with something wrong somewhere.
std::string malformed(std::mt19937& random) {
    static const std::string seeds[] = {
        requestFor("POST", "/api/tasks", "{\"title\":\"T\",\"priority\":2,\"tagIds\":[]}"),
        requestFor("GET", "/api/tasks?title=a&status=1&projectId=x&archived=true"),
        requestFor("PUT", "/api/tasks/00000000-0000-0000-0000-000000000000", "{\"dueDate\":\"2026-01-01T00:00:00Z\"}"),
        "POST /api/tasks HTTP/1.1\r\nContent-Length: 99999999999999999999\r\n\r\n{",
        "GET / HTTP/1.1\r\nContent-Length: -1\r\n\r\n",
        "\r\n\r\n\r\n",
        std::string(3000, ':').append("\r\n"),
    };
    std::string text = seeds[random() % std::size(seeds)];
    for (unsigned change = 1 + random() % 8; change > 0; --change) {
        const std::size_t at = random() % text.size();
        switch (random() % 4) {
        case 0:
            text[at] = static_cast<char>(random());
            break;
        case 1:
            text.erase(at, 1 + random() % 10);
            break;
        case 2:
            text.insert(at, text.substr(random() % text.size(), random() % 20));
            break;
        default:
            text.insert(at, 1, "\0\r\n %:/{}[]\""[random() % 12]);
            break;
        }
        if (text.empty())
            text = " ";
    }
    return text;
}

TEST(Survival, malformedRequestsAndDyingClientsLeaveItServing) {
    TemporaryFolder home;
    ServerProcess server(home.path());
    for (int task = 0; task < 50; ++task)
        createTask(server.port(), std::string(2000, 'x'));

    std::vector<std::unique_ptr<TestClient>> idle;
    for (int client = 0; client < 500; ++client)
        idle.push_back(std::make_unique<TestClient>(server.port()));
    EXPECT_TRUE(isServing(server.port()));

    std::vector<std::thread> clients;
    for (unsigned seed = 0; seed < 4; ++seed) {
        clients.emplace_back([&, seed] {
            std::mt19937 random(seed);
            for (int request = 0; request < 2500; ++request) {
                TestClient client(server.port());
                client.send(malformed(random));
                if (request % 10 == 0) {
                    // Goes away, with a reset, while an answer of 100 KB is on its way.
                    TestClient dying(server.port());
                    dying.send(requestFor("GET", "/api/tasks"));
                    dying.reset();
                }
                client.finish();
                client.rest();
            }
        });
    }
    for (std::thread& client : clients)
        client.join();
    EXPECT_TRUE(isServing(server.port()));
    EXPECT_GE(taskIds(server.port()).size(), 50U);
    for (const auto& client : idle) {
        client->send("GET /api/health HTTP/1.1\r\nConnection: keep-alive\r\n\r\n");
        EXPECT_TRUE(client->response().starts_with("HTTP/1.1 200 "));
    }
    server.signal(SIGTERM);
    EXPECT_EQ(server.wait(), 0);
}

TEST(Survival, aFullDiskIsAnErrorAndNotTheEnd) {
    TemporaryFolder home;
    {
        // Makes the store while there is room.
        ServerProcess server(home.path());
        EXPECT_NE(createTask(server.port(), "First"), "");
    }
    ServerProcess server(home.path(), {.prepare = [] {
                             std::signal(SIGXFSZ, SIG_IGN);
                             const rlimit limit{.rlim_cur = 300'000, .rlim_max = 300'000};
                             setrlimit(RLIMIT_FSIZE, &limit);
                         }});
    std::set<std::string> created;
    std::string refusal;
    for (int task = 0; task < 200 && refusal.empty(); ++task) {
        const std::string answer =
            answerTo(server.port(), requestFor("POST", "/api/tasks", "{\"title\":\"" + std::string(5000, 'x') + "\"}"));
        if (answer.starts_with("HTTP/1.1 201 "))
            created.insert(*Json::parse(bodyOf(answer)).find("id")->asString());
        else
            refusal = answer;
    }
    ASSERT_TRUE(refusal.starts_with("HTTP/1.1 500 ")) << refusal;
    const Json body = Json::parse(bodyOf(refusal));
    EXPECT_EQ(*body.find("error"), Json("internal_error"));
    EXPECT_FALSE(body.find("message")->asString()->empty());
    // Reading goes on, and what was promised is there, now and after a restart with room.
    EXPECT_EQ(taskIds(server.port()).size(), created.size() + 1);
    server.signal(SIGKILL);
    server.wait();
    ServerProcess again(home.path());
    EXPECT_EQ(taskIds(again.port()).size(), created.size() + 1);
    EXPECT_NE(createTask(again.port(), "Room again"), "");
    EXPECT_EQ(integrityCheck(home / "data/Quillorn/Quillorn.store"), "ok");
}

/// Root may write everywhere: such a test runs its program as the user "nobody".
void becomeNobody() {
    constexpr unsigned nobody = 65534;
    if (getuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
        _exit(126);
}

TEST(Survival, aReadOnlyFolderIsAnErrorAndNotTheEnd) {
    TemporaryFolder home;
    namespace fs = std::filesystem;
    // Where everybody can run it.
    const fs::path program = home / "quillorn";
    fs::copy_file(QUILLORN_PROGRAM, program);
    fs::create_directory(home / "data");
    fs::create_directory(home / "config");
    fs::permissions(home.path(), fs::perms::owner_all | fs::perms::group_exec | fs::perms::others_exec);
    for (const fs::path& path : {program, home / "data", home / "config"})
        ASSERT_TRUE(getuid() != 0 || chown(path.c_str(), 65534, 65534) == 0);
    const ProgramProcess::Options options{.prepare = becomeNobody, .program = program};

    // A folder that can't be written from the start.
    fs::permissions(home / "data", fs::perms::owner_read | fs::perms::owner_exec);
    {
        ProgramProcess refused(home.path(),
                               {.arguments = {"serve", "--port", "0"}, .prepare = becomeNobody, .program = program});
        EXPECT_EQ(refused.wait(), 1);
        EXPECT_NE(refused.errors().find("Quillorn couldn't open your data"), std::string::npos) << refused.errors();
    }
    // One that turns so while the server runs.
    fs::permissions(home / "data", fs::perms::owner_all);
    ServerProcess server(home.path(), options);
    EXPECT_NE(createTask(server.port(), "First"), "");
    fs::permissions(home / "data/Quillorn", fs::perms::owner_read | fs::perms::owner_exec);
    const std::string answer = answerTo(server.port(), requestFor("POST", "/api/tasks", "{\"title\":\"Second\"}"));
    const std::size_t expected = answer.starts_with("HTTP/1.1 201 ") ? 2 : 1;
    EXPECT_EQ(taskIds(server.port()).size(), expected) << answer;
    fs::permissions(home / "data/Quillorn", fs::perms::owner_all);
    EXPECT_NE(createTask(server.port(), "Third"), "");
    EXPECT_EQ(taskIds(server.port()).size(), expected + 1);
}

} // namespace
} // namespace quillorn
