#include "HTTP/HttpServerIO.h"

#include "HTTP/HttpErrors.h"
#include "HTTP/HttpServer.h"
#include "HTTP/Socket.h"
#include "Platform/FileDescriptor.h"
#include "Support/RecordingLog.h"
#include "Support/ScopedLimit.h"
#include "Support/TestClient.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <future>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace quillorn {
namespace {

using State = HttpServerIOState;

const std::string request = "GET / HTTP/1.1\r\n\r\n";
const std::string keptRequest = "GET / HTTP/1.1\r\nConnection: keep-alive\r\n\r\n";

class HttpServerIOTest : public ::testing::Test {
  protected:
    HttpServerIOTest() {
        server.listenAddressIPv4 = "127.0.0.1";
        server.GET["/"] = [](const HttpRequest&) { return HttpResponse::ok(HttpResponseBody::text("hello")); };
    }
    std::uint16_t started() {
        server.start(0, true);
        return server.port();
    }
    void expectAnswer() { EXPECT_EQ(bodyOf(answerTo(server.port(), request)), "hello"); }

    RecordingLog log;
    HttpServer server{log};
};

TEST_F(HttpServerIOTest, startsStopsAndStartsAgain) {
    EXPECT_EQ(server.state(), State::stopped);
    EXPECT_THROW(server.port(), SocketError);
    server.stop();
    std::uint16_t port = 0;
    for (int i = 0; i < 3; ++i) {
        server.start(port, true);
        EXPECT_EQ(server.state(), State::running);
        EXPECT_TRUE(server.isIPv4());
        port = server.port();
        server.start(1, true);
        EXPECT_EQ(server.port(), port);
        expectAnswer();
        server.stop();
        EXPECT_EQ(server.state(), State::stopped);
        EXPECT_THROW(TestClient{port}, std::runtime_error);
        EXPECT_THROW(server.isIPv4(), SocketError);
    }
}

TEST_F(HttpServerIOTest, listensOnTheFamilyAndAddressItIsGiven) {
    server.listenAddressIPv4 = "127.0.0.2";
    EXPECT_THROW(TestClient(started(), "127.0.0.1"), std::runtime_error);
    TestClient(server.port(), "127.0.0.2");
    server.stop();
    server.listenAddressIPv4 = "not an address"; // stands for all
    TestClient(started(), "127.0.0.3");
}

TEST_F(HttpServerIOTest, stopEndsIdleConnectionsAndTheirWorkers) {
    TestClient kept(started());
    kept.send(keptRequest);
    EXPECT_EQ(bodyOf(kept.response()), "hello");
    for (int i = 0; i < 20; ++i) // until the first connection's worker surely waits
        expectAnswer();
    const TestClient silent(server.port());
    server.stop();
    EXPECT_EQ(kept.rest(), "");
}

TEST_F(HttpServerIOTest, anAnswerWithoutLengthEndsBeforeWhatItHeldIsReleased) {
    std::promise<void> received;
    std::promise<bool> releasedAfterwards;
    server.GET["/"] = [&](const HttpRequest&) {
        const std::shared_ptr<void> held(nullptr, [&, end = received.get_future().share()](void*) {
            releasedAfterwards.set_value(end.wait_for(std::chrono::seconds(10)) == std::future_status::ready);
        });
        return HttpResponse::raw(200, "OK", {}, [held](HttpResponseBodyWriter& body) { body.write("list"); });
    };
    EXPECT_EQ(bodyOf(answerTo(started(), request)), "list");
    received.set_value();
    EXPECT_TRUE(releasedAfterwards.get_future().get());
}

TEST_F(HttpServerIOTest, destroyingTheServerWaitsForItsHandlers) {
    std::promise<void> entered;
    std::atomic<bool> left = false;
    auto own = std::make_unique<HttpServer>(log);
    own->GET["/"] = [&, &running = *own](const HttpRequest&) {
        entered.set_value();
        while (running.operating())
            std::this_thread::yield();
        left = true;
        return HttpResponse::notFound();
    };
    own->start(0, true);
    TestClient client(own->port());
    client.send(request);
    entered.get_future().wait();
    own.reset();
    EXPECT_TRUE(left);
}

/// Takes away all free descriptors of the process but one, and gives them back at the end.
struct OneDescriptor {
    OneDescriptor() {
        for (int number = 0; (number = ::open("/dev/null", O_RDONLY)) != -1;)
            taken.emplace_back(number);
        taken.pop_back();
    }

    const ScopedLimit few{RLIMIT_NOFILE, 64};
    std::vector<FileDescriptor> taken;
};

TEST_F(HttpServerIOTest, runningOutOfDescriptorsIsWaitedOut) {
    const auto port = started();
    OneDescriptor left;
    TestClient client(port); // takes it
    client.send(request);
    EXPECT_TRUE(server.operating());
    left.taken.pop_back();
    EXPECT_EQ(bodyOf(client.rest()), "hello");
}

TEST_F(HttpServerIOTest, survivesStartsAndStopsUnderLoad) {
    std::atomic<std::uint16_t> port = 0;
    std::atomic<bool> done = false;
    std::atomic<int> answered = 0;
    const auto ask = [&] {
        while (!done)
            try {
                TestClient client(port);
                client.send(keptRequest + keptRequest + request);
                answered += client.rest().ends_with("hello");
            } catch (const std::runtime_error&) {
                std::this_thread::yield();
            }
    };
    const auto stopAfterAnswers = [&] {
        for (int seen = 0; !done; std::this_thread::yield())
            if (const int now = answered; std::exchange(seen, now) != now)
                server.stop();
    };
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(ask);
    for (int i = 0; i < 2; ++i)
        threads.emplace_back(stopAfterAnswers);
    for (int starts = 0; starts < 200; ++starts) {
        while (server.operating())
            std::this_thread::yield();
        server.start(0, true);
        try {
            port = server.port();
        } catch (const SocketError&) {
            // Stopped again already.
        }
    }
    done = true;
    threads.clear();
    server.stop();
    server.start(0, true);
    expectAnswer();
}

TEST(Socket, sendsWithoutDelayAndNamesItsPeers) {
    const auto listener = Socket::listenSocket(0, true, 8, "127.0.0.1");
    const TestClient client(listener.boundPort());
    const auto accepted = listener.acceptClient();
    int delayOff = 0;
    socklen_t size = sizeof delayOff;
    ::getsockopt(accepted.descriptor(), IPPROTO_TCP, TCP_NODELAY, &delayOff, &size);
    EXPECT_NE(delayOff, 0);
    EXPECT_NE(::fcntl(accepted.descriptor(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(accepted.peerAddress(), "127.0.0.1");
    EXPECT_TRUE(accepted.isIPv4());
}

TEST(Socket, writingToAPeerThatIsGoneIsAnErrorAndNoSignal) {
    const auto before = std::signal(SIGPIPE, SIG_DFL); // ignored where the parent of the process left it so
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    ::close(ends[1]);
    EXPECT_THROW(Socket(ends[0]).writeBytes("x"), SocketError);
    std::signal(SIGPIPE, before);
}

TEST(Socket, closesItsDescriptorOnce) {
    const int number = ::dup(STDERR_FILENO);
    Socket socket(number);
    Socket moved(std::move(socket));
    moved.close();
    ASSERT_EQ(::dup2(STDERR_FILENO, number), number); // the number is another's now
    moved.close();
    EXPECT_NE(::fcntl(number, F_GETFD), -1);
    ::close(number);
}

} // namespace
} // namespace quillorn
