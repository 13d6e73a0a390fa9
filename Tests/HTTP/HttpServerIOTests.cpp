#include "HTTP/HttpServerIO.h"

#include "HTTP/HttpErrors.h"
#include "HTTP/HttpServer.h"
#include "HTTP/Socket.h"
#include "Support/RecordingLog.h"
#include "Support/TestClient.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <future>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace quillorn {
namespace {

using State = HttpServerIOState;
using ::testing::StartsWith;

const std::string request = "GET / HTTP/1.1\r\n\r\n";
const std::string keptRequest = "GET / HTTP/1.1\r\nConnection: keep-alive\r\n\r\n";

class HttpServerIOTest : public ::testing::Test {
  protected:
    HttpServerIOTest() {
        server.listenAddressIPv4 = "127.0.0.1";
        server.GET["/"] = [](const HttpRequest&) { return HttpResponse::ok(HttpResponseBody::text("hello")); };
    }

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
        EXPECT_EQ(bodyOf(answerTo(port, request)), "hello");
        server.stop();
        EXPECT_EQ(server.state(), State::stopped);
        EXPECT_THROW(TestClient{port}, std::runtime_error);
        EXPECT_THROW(server.isIPv4(), SocketError);
    }
}

TEST_F(HttpServerIOTest, aPortInUseIsSaidAndCanBeHadLater) {
    auto other = std::make_unique<HttpServerIO>(log);
    other->start(0, true);
    const auto port = other->port();
    EXPECT_EQ(answerTo(port, keptRequest), "HTTP/1.1 404 Not Found\r\nServer: Tidewire Unspecified\r\n\r\n");
    try {
        server.start(port, true);
        ADD_FAILURE();
    } catch (const SocketError& error) {
        EXPECT_EQ(error.kind(), SocketError::Kind::bindFailed);
        EXPECT_EQ(error.text(), std::strerror(EADDRINUSE));
        EXPECT_EQ(std::string(error.what()), "bindFailed(\"" + error.text() + "\")");
    }
    EXPECT_EQ(server.state(), State::starting);
    other.reset();
    server.start(port, true);
    EXPECT_EQ(bodyOf(answerTo(port, request)), "hello");
}

TEST_F(HttpServerIOTest, listensOnTheFamilyAndAddressItIsGiven) {
    server.listenAddressIPv4 = "127.0.0.2";
    server.start(0, true);
    EXPECT_THROW(TestClient(server.port(), "127.0.0.1"), std::runtime_error);
    TestClient(server.port(), "127.0.0.2");
    server.stop();
    server.listenAddressIPv4 = "not an address"; // stands for all
    server.start(0, true);
    TestClient(server.port(), "127.0.0.3");
}

TEST_F(HttpServerIOTest, stopEndsIdleConnectionsAndTheirWorkers) {
    server.start(0, true);
    TestClient kept(server.port());
    kept.send(keptRequest);
    EXPECT_EQ(bodyOf(kept.response()), "hello");
    const TestClient silent(server.port());
    server.stop();
    EXPECT_EQ(kept.rest(), "");
}

TEST_F(HttpServerIOTest, aHandlerMayStopTheServerAndItsResponseIsNotSent) {
    server.GET["/stop"] = [this](const HttpRequest&) {
        server.stop();
        return HttpResponse::notFound();
    };
    server.start(0, true);
    EXPECT_EQ(answerTo(server.port(), "GET /stop HTTP/1.1\r\n\r\n"), "");
    server.stop();
    server.start(0, true);
    EXPECT_EQ(bodyOf(answerTo(server.port(), request)), "hello");
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
    server.start(0, true);
    EXPECT_EQ(bodyOf(answerTo(server.port(), request)), "list");
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

/// Takes away all free descriptors of the process, and gives them back at the end.
class NoDescriptors {
  public:
    NoDescriptors() {
        ::getrlimit(RLIMIT_NOFILE, &m_before);
        auto few = m_before;
        few.rlim_cur = 64;
        ::setrlimit(RLIMIT_NOFILE, &few);
        for (int taken = 0; (taken = ::open("/dev/null", O_RDONLY)) != -1;)
            m_taken.push_back(taken);
    }
    ~NoDescriptors() {
        for (const int taken : m_taken)
            ::close(taken);
        ::setrlimit(RLIMIT_NOFILE, &m_before);
    }
    void giveOneBack() {
        ::close(m_taken.back());
        m_taken.pop_back();
    }

  private:
    rlimit m_before{};
    std::vector<int> m_taken;
};

TEST_F(HttpServerIOTest, runningOutOfDescriptorsIsWaitedOut) {
    server.start(0, true);
    NoDescriptors none;
    none.giveOneBack();
    TestClient client(server.port()); // takes the last one
    client.send(request);
    EXPECT_TRUE(server.operating());
    none.giveOneBack();
    EXPECT_EQ(bodyOf(client.rest()), "hello");
}

TEST_F(HttpServerIOTest, stopsWhileItWaitsForDescriptors) {
    server.start(0, true);
    NoDescriptors none;
    none.giveOneBack();
    const TestClient client(server.port());
    server.stop();
    EXPECT_EQ(server.state(), State::stopped);
}

TEST_F(HttpServerIOTest, survivesStartsAndStopsUnderLoad) {
    std::atomic<std::uint16_t> port = 0;
    std::atomic<bool> done = false;
    std::atomic<int> answered = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            while (!done) {
                try {
                    TestClient client(port);
                    client.send(keptRequest + keptRequest + request);
                    if (client.rest().ends_with("hello"))
                        ++answered;
                } catch (const std::runtime_error&) {
                    std::this_thread::yield();
                }
            }
        });
    for (int i = 0; i < 2; ++i)
        threads.emplace_back([&] { // two who stop it, whenever some client has had its answers
            for (int seen = 0; !done; std::this_thread::yield()) {
                if (answered != seen) {
                    seen = answered;
                    server.stop();
                }
            }
        });
    for (int starts = 0; starts < 200;) {
        if (server.operating()) {
            std::this_thread::yield();
            continue;
        }
        server.start(0, true);
        ++starts;
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
    EXPECT_EQ(bodyOf(answerTo(server.port(), request)), "hello");
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

TEST(Socket, peersOfAnotherFamilyHaveNoAddress) {
    std::optional<Socket> listener;
    try {
        listener = Socket::listenSocket(0, false, 8);
    } catch (const SocketError&) {
        GTEST_SKIP() << "this machine has no IPv6";
    }
    const TestClient client(listener->boundPort()); // arrives as ::ffff:127.0.0.1
    const auto accepted = listener->acceptClient();
    EXPECT_FALSE(accepted.isIPv4());
    EXPECT_THROW(accepted.peerAddress(), SocketError);
}

TEST(Socket, closesItsDescriptorOnce) {
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    Socket socket(ends[0]);
    Socket moved(std::move(socket));
    moved.close();
    ASSERT_EQ(::dup2(ends[1], ends[0]), ends[0]); // the number is another's now
    moved.close();
    EXPECT_NE(::fcntl(ends[0], F_GETFD), -1);
    ::close(ends[0]);
    ::close(ends[1]);
}

} // namespace
} // namespace quillorn
