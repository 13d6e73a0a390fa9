#include "Integration/ProgramTest.h"
#include "Platform/Process.h"
#include "Support/ScopedLimit.h"
#include "Support/TestClient.h"

#include <algorithm>
#include <fmt/format.h>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

// Clients on this machine that want to hold up others, or to make the server take memory that it was not sent.

namespace quillorn {
namespace {

using testing::StartsWith;

constexpr std::size_t megabyte = 1'000'000;

struct Hostile : ServerTest {
    /// In bytes. Grows with what the sanitizers note down, so it says nothing under them, and elsewhere than on Linux.
    std::size_t residentMemory() const {
        std::ifstream status(fmt::format("/proc/{}/status", server.id()));
        for (std::string line; !isSanitized && std::getline(status, line);)
            if (line.starts_with("VmRSS:"))
                return std::stoul(line.substr(6)) * 1024;
        return 0;
    }
    void expectService(std::size_t memoryBefore, std::size_t sent) const {
        EXPECT_TRUE(server.isServing());
        EXPECT_LE(residentMemory(), memoryBefore + sent + 12 * megabyte);
    }
};

TEST_F(Hostile, clientsThatNeverEndTheirRequestTakeTheMemoryOfWhatTheySent) {
    const std::size_t sent = 8 * megabyte;
    const std::string bytes(sent, 'x');
    const std::string requests[] = {
        "",                                                                        // an endless method
        "GET /",                                                                   // an endless path
        "GET /api/health HTTP/1.1\r\nX-Header: ",                                  // an endless header
        "POST /api/tasks HTTP/1.1\r\nContent-Length: 9223372036854775807\r\n\r\n", // an endless body
    };
    for (const std::string& request : requests) {
        const auto before = residentMemory();
        TestClient client(server.port());
        client.send(request + bytes);
        expectService(before, 3 * sent); // a buffer that grows is there twice for a moment
    }
    // Headers without end, each of its own name.
    const auto before = residentMemory();
    TestClient client(server.port());
    client.send("GET /api/health HTTP/1.1\r\n");
    for (int header = 0; header < 50'000; ++header)
        client.send(fmt::format("X-{}: {}\r\n", header, header));
    expectService(before, 20 * megabyte);
}

TEST_F(Hostile, refusedBodiesTakeNoMemory) {
    const auto before = residentMemory();
    TestClient client(server.port());
    client.send("POST /api/tasks HTTP/1.1\r\nOrigin: http://example.com\r\nContent-Length: 40000001\r\n\r\n" +
                std::string(40 * megabyte, 'x'));
    expectService(before, 0);
    EXPECT_THAT(client.rest(), StartsWith("HTTP/1.1 403 "));
}

TEST_F(Hostile, oneByteAtATimeHoldsUpNobody) {
    const std::string request = requestText("GET", "/api/tasks");
    std::vector<std::unique_ptr<TestClient>> slow;
    for (int client = 0; client < 50; ++client)
        slow.push_back(std::make_unique<TestClient>(server.port()));
    for (const char byte : request) {
        for (const auto& client : slow)
            client->send({&byte, 1});
        EXPECT_TRUE(server.isServing());
    }
    for (const auto& client : slow)
        EXPECT_THAT(client->rest(), StartsWith("HTTP/1.1 200 "));
}

TEST_F(Hostile, tenThousandPipelinedRequestsAreAnsweredInTheirOrder) {
    TestClient client(server.port());
    std::string requests;
    for (int id = 0; id < 10'000; ++id)
        requests += requestText("POST", "/mcp", fmt::format(R"({{"jsonrpc": "2.0", "id": {}, "method": "ping"}})", id),
                                "Connection: keep-alive\r\n");
    const auto before = residentMemory();
    // Nobody reads the answers at first: the server stops reading, until then only this client waits.
    const std::jthread sender([&] { client.send(requests); });
    expectService(before, requests.size());
    for (int id = 0; id < 10'000; ++id)
        ASSERT_EQ(*Json::parse(bodyOf(client.response())).find("id"), Json(id));
    expectService(before, requests.size());
}

TEST_F(Hostile, fiveThousandIdleConnectionsAreHeld) {
    const std::size_t count = isSanitized ? 300 : 5'000;
    if (raiseDescriptorLimit() < count + 100) // of this process
        GTEST_SKIP() << "the system allows too few descriptors";
    const auto before = residentMemory();
    std::vector<std::unique_ptr<TestClient>> idle;
    for (std::size_t client = 0; client < count; ++client) {
        idle.push_back(std::make_unique<TestClient>(server.port()));
        idle.back()->send("GET /api/health HTTP/1.1\r\nConnection: keep-");
    }
    expectService(before, count * 30'000);
    idle.back()->send("alive\r\n\r\n");
    EXPECT_THAT(idle.back()->response(), StartsWith("HTTP/1.1 200 "));
}

TEST_F(Hostile, answersMayBeLeftAtEveryByte) {
    for (int task = 0; task < 3; ++task)
        server.json("POST", "/api/tasks", R"({"title": "Task"})");
    const std::string request = requestText("GET", "/api/tasks");
    const std::size_t length = answerTo(server.port(), request).size();
    const auto before = residentMemory();
    for (std::size_t read = 0; read <= length; ++read) {
        TestClient client(server.port());
        client.send(request);
        client.take(read);
        client.reset();
    }
    expectService(before, 0);
}

} // namespace
} // namespace quillorn
