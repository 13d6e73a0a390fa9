#include "HTTP/HttpErrors.h"
#include "HTTP/HttpParser.h"
#include "HTTP/Socket.h"

#include <gmock/gmock.h>
#include <limits>
#include <sys/socket.h>
#include <thread>

namespace quillorn {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;
using Map = std::map<std::string, std::string>;

/// One end of a connection on which `bytes` have been sent; the other end says no more.
class Sent {
  public:
    explicit Sent(std::string bytes) {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        socket = Socket(ends[0]);
        m_sender = std::thread([end = ends[1], bytes = std::move(bytes)] {
            Socket peer(end);
            try {
                peer.writeBytes(bytes);
            } catch (const SocketError&) {
                // The reader has seen enough.
            }
        });
    }
    ~Sent() {
        socket.close();
        m_sender.join();
    }

    HttpRequest request() { return HttpParser().readHttpRequest(socket); }

    Socket socket;

  private:
    std::thread m_sender;
};

HttpRequest parsed(const std::string& bytes) {
    return Sent(bytes).request();
}

TEST(HttpParser, splitsTheTargetAndKeepsItsEscapes) {
    const struct {
        std::string target;
        std::string path;
        Pairs queryParams;
    } cases[] = {
        {"/", "/", {}},
        {"", "", {}},
        {"/a?", "/a", {}},
        {"/a?x=1&x=2", "/a", {{"x", "1"}, {"x", "2"}}},
        {"/a%20b?x=%41&y=a+b", "/a%20b", {{"x", "%41"}, {"y", "a+b"}}},
        {"/a?x", "/a", {{"x", ""}}},
        {"/a?x=1&", "/a", {{"x", "1"}, {"", ""}}},
        {"/a?x=1=2?3", "/a", {{"x", "1=2?3"}}},
        {"/a#b?c#d=e", "/a#b", {{"c#d", "e"}}},
        {"/caf\xE9", "/caf\xC3\xA9", {}},
        {"/caf\xC3\xA9", "/caf\xC3\x83\xC2\xA9", {}},
        {"/%zz", "/%zz", {}},
    };
    for (const auto& [target, path, queryParams] : cases) {
        const auto request = parsed("GET " + target + " HTTP/1.1\r\n\r\n");
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.path, path) << target;
        EXPECT_EQ(request.queryParams, queryParams) << target;
    }
}

TEST(HttpParser, takesThreePiecesOfTheRequestLineAndNoFewer) {
    EXPECT_EQ(parsed("get /a nonsense and more\n\n").method, "get");
    EXPECT_EQ(parsed("GET  /a HTTP/1.1\r\n\r\n").path, "");
    EXPECT_EQ(parsed("\tGET /\ta\rb HTTP/1.1\r\n\r\n").path, "/ab");
    for (const std::string line : {"GET /a", "", "GET", "\x16\x03\x01"}) {
        try {
            parsed(line + "\r\n\r\n");
            ADD_FAILURE() << line;
        } catch (const HttpParserError& error) {
            EXPECT_EQ(error.kind(), HttpParserError::Kind::invalidStatusLine);
            EXPECT_EQ(error.what(), "invalidStatusLine(\"" + error.line() + "\")");
        }
    }
}

TEST(HttpParser, splitsHeadersAtTheFirstColonBehindSomeText) {
    const struct {
        std::string line;
        Map headers;
    } cases[] = {
        {"Host: localhost:18080", {{"host", "localhost:18080"}}},
        {"X-Empty:", {{"x-empty", "X-Empty"}}},
        {"X-Blank: ", {{"x-blank", ""}}},
        {"No-Colon", {{"no-colon", "No-Colon"}}},
        {"::A:b", {{"a", "b"}}},
        {"A::b", {{"a", ":b"}}},
        {":::", {}},
        {" A :  b c  ", {{" a ", "b c"}}},
        {"A:b\r\na: c", {{"a", "c"}}},
        {"X-\xC0\xD7\xDF: \xE4", {{"x-\xC3\xA0\xC3\x97\xC3\x9F", "\xC3\xA4"}}},
        {"A:\tb\t\x01"
         "c",
         {{"a", "bc"}}},
    };
    for (const auto& [line, headers] : cases)
        EXPECT_EQ(parsed("GET / HTTP/1.1\r\n" + line + "\r\n\r\nA: body").headers, headers) << line;
}

TEST(HttpParser, readsTheBodyThatContentLengthPromises) {
    const struct {
        std::string length;
        std::string body;
    } cases[] = {
        {"0", ""},   {"3", "abc"}, {"+3", "abc"}, {"-0", ""},  {"abc", ""},
        {"3 4", ""}, {"3.0", ""},  {"+-3", ""},   {"0x3", ""}, {"9223372036854775808", ""},
    };
    for (const auto& [length, body] : cases)
        EXPECT_EQ(parsed("POST / HTTP/1.1\r\nContent-Length: " + length + "\r\n\r\nabcdef").body, body) << length;
    EXPECT_THROW(parsed("POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\nabc"), HttpParserError);
}

TEST(HttpParser, takesOneRequestAfterTheOtherFromOneConnection) {
    std::string large(300'000, 'x');
    large += std::string("\0\r\n\xFF", 4);
    Sent sent("POST /1 HTTP/1.1\r\nContent-Length: " + std::to_string(large.size()) + "\r\n\r\n" + large +
              "GET /2 HTTP/1.1\r\n\r\nGET /3 HTTP/1.1\r\n\r\n");
    EXPECT_EQ(sent.request().body, large);
    EXPECT_EQ(sent.request().path, "/2");
    EXPECT_EQ(sent.request().path, "/3");
    EXPECT_THROW(sent.request(), SocketError);
}

TEST(HttpParser, failsOnAConnectionThatEndsEarly) {
    const std::string largest = std::to_string(std::numeric_limits<std::int64_t>::max());
    for (const std::string& bytes : {std::string(), std::string("GET / HT"), std::string("GET / HTTP/1.1\r\nA: b\r\n"),
                                     std::string("POST / HTTP/1.1\r\nContent-Length: 4\r\n\r\nabc"),
                                     "POST / HTTP/1.1\r\nContent-Length: " + largest + "\r\n\r\nabc"}) {
        try {
            parsed(bytes);
            ADD_FAILURE() << bytes;
        } catch (const SocketError& error) {
            EXPECT_EQ(error.kind(), SocketError::Kind::recvFailed);
        }
    }
}

TEST(HttpParser, survivesLinesOfAnyLengthAndContent) {
    std::string noise;
    for (unsigned i = 0; i < 2'000'000; ++i)
        noise += static_cast<char>(i * 2654435761U >> 24);
    std::erase(noise, '\n');
    EXPECT_THROW(parsed(noise), SocketError);
    const auto request = parsed("GET / HTTP/1.1\r\nA: " + noise + "\r\n\r\n");
    EXPECT_GT(request.headers.size(), 0U);
}

TEST(Socket, readByteAndReadBytesShareWhatHasArrived) {
    Sent sent("abcdef");
    EXPECT_EQ(sent.socket.readByte(), 'a');
    EXPECT_EQ(sent.socket.readBytes(-5), "");
    EXPECT_EQ(sent.socket.readBytes(3), "bcd");
    EXPECT_EQ(sent.socket.readByte(), 'e');
}

TEST(SupportsKeepAlive, onlyForTheExactValue) {
    const std::pair<Map, bool> cases[] = {
        {{}, false},
        {{{"connection", "keep-alive"}}, true},
        {{{"connection", "  keep-alive\t "}}, true},
        {{{"connection", "Keep-Alive"}}, false},
        {{{"connection", "keep-alive, upgrade"}}, false},
        {{{"connection", "close"}}, false},
        {{{"connection", ""}}, false},
        {{{"Connection", "keep-alive"}}, false},
    };
    for (const auto& [headers, expected] : cases)
        EXPECT_EQ(supportsKeepAlive(headers), expected) << ::testing::PrintToString(headers);
}

} // namespace
} // namespace quillorn
