#include "HTTP/HttpErrors.h"
#include "HTTP/HttpParser.h"
#include "HTTP/Socket.h"

#include <future>
#include <gtest/gtest.h>
#include <sys/socket.h>

namespace quillorn {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;
using Map = std::map<std::string, std::string>;

/// One end of a connection on which `bytes` have been sent; the other end says no more.
struct Sent {
    explicit Sent(std::string bytes) {
        int ends[2];
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        socket = Socket(ends[0]);
        sender = std::async(std::launch::async, [end = ends[1], bytes = std::move(bytes)] {
            Socket(end).writeBytes(bytes); // fails when the reader has seen enough
        });
    }

    std::future<void> sender; // waits for the end of the work
    Socket socket;            // closed before that
};

HttpRequest parsed(const std::string& bytes) {
    Sent sent(bytes);
    return HttpParser().readHttpRequest(sent.socket);
}

TEST(HttpParser, splitsTheTargetAndKeepsItsEscapes) {
    // clang-format off
    const std::tuple<std::string, std::string, Pairs> cases[] = {
        {"/", "/", {}}, {"", "", {}}, {"/a?", "/a", {}}, {"/%zz", "/%zz", {}},
        {"/a?x=1&x=2", "/a", {{"x", "1"}, {"x", "2"}}},
        {"/a%20b?x=%41&y=a+b", "/a%20b", {{"x", "%41"}, {"y", "a+b"}}},
        {"/a?x", "/a", {{"x", ""}}}, {"/a?x=1&", "/a", {{"x", "1"}, {"", ""}}}, {"/a?x=1=2?3", "/a", {{"x", "1=2?3"}}},
        {"/a#b?c#d=e", "/a#b", {{"c#d", "e"}}},
        {"/caf\xE9", "/caf\xC3\xA9", {}}, {"/caf\xC3\xA9", "/caf\xC3\x83\xC2\xA9", {}},
    };
    // clang-format on
    for (const auto& [target, path, queryParams] : cases) {
        const auto request = parsed("GET " + target + " HTTP/1.1\r\n\r\n");
        EXPECT_EQ(request.path, path) << target;
        EXPECT_EQ(request.queryParams, queryParams) << target;
    }
}

TEST(HttpParser, takesThreePiecesOfTheRequestLineAndNoFewer) {
    EXPECT_EQ(parsed("get /a nonsense and more\n\n").method, "get");
    EXPECT_EQ(parsed("GET  /a HTTP/1.1\r\n\r\n").path, "");
    EXPECT_EQ(parsed("\tGET /\ta\rb HTTP/1.1\r\n\r\n").path, "/ab");
    for (const std::string line : {"GET /a", "", "GET", "\x16\x03\x01"})
        EXPECT_THROW(parsed(line + "\r\n\r\n"), HttpParserError) << line;
}

TEST(HttpParser, splitsHeadersAtTheFirstColonBehindSomeText) {
    // clang-format off
    const std::pair<std::string, Map> cases[] = {
        {"Host: localhost:18080", {{"host", "localhost:18080"}}},
        {"X-Empty:", {{"x-empty", "X-Empty"}}}, {"X-Blank: ", {{"x-blank", ""}}}, {"No-Colon", {{"no-colon", "No-Colon"}}},
        {"::A:b", {{"a", "b"}}}, {"A::b", {{"a", ":b"}}}, {":::", {}}, {" A :  b c  ", {{" a ", "b c"}}},
        {"A:b\r\na: c", {{"a", "c"}}}, {"A:\tb\t\x01" "c", {{"a", "bc"}}},
        {"X-\xC0\xD7\xDF: \xE4", {{"x-\xC3\xA0\xC3\x97\xC3\x9F", "\xC3\xA4"}}},
    };
    // clang-format on
    for (const auto& [line, headers] : cases)
        EXPECT_EQ(parsed("GET / HTTP/1.1\r\n" + line + "\r\n\r\nA: body").headers, headers) << line;
}

TEST(HttpParser, readsTheBodyThatContentLengthPromises) {
    const std::pair<std::string, std::string> cases[] = {
        {"0", ""},   {"3", "abc"}, {"+3", "abc"}, {"-0", ""},  {"abc", ""},
        {"3 4", ""}, {"3.0", ""},  {"+-3", ""},   {"0x3", ""}, {"9223372036854775808", ""}};
    for (const auto& [length, body] : cases)
        EXPECT_EQ(parsed("POST / HTTP/1.1\r\nContent-Length: " + length + "\r\n\r\nabcdef").body, body) << length;
    EXPECT_THROW(parsed("POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\nabc"), HttpParserError);
}

TEST(HttpParser, survivesLinesOfAnyLengthAndContent) {
    std::string noise;
    for (unsigned i = 0; i < 2'000'000; ++i)
        noise += static_cast<char>(i * 2654435761U >> 24);
    std::erase(noise, '\n');
    EXPECT_THROW(parsed(noise), SocketError);
    EXPECT_EQ(parsed("GET / HTTP/1.1\r\nA: " + noise + "\r\n\r\n").headers.count("a"), 1U);
}

TEST(Socket, readByteAndReadBytesShareWhatHasArrived) {
    Sent sent("abcdef");
    EXPECT_EQ(sent.socket.readByte(), 'a');
    EXPECT_EQ(sent.socket.readBytes(-5), "");
    EXPECT_EQ(sent.socket.readBytes(3), "bcd");
    EXPECT_EQ(sent.socket.readByte(), 'e');
}

TEST(SupportsKeepAlive, onlyForTheExactValue) {
    for (const char* value : {"keep-alive", "  keep-alive\t "})
        EXPECT_TRUE(supportsKeepAlive({{"connection", value}})) << value;
    for (const char* value : {"Keep-Alive", "keep-alive, upgrade", "close", ""})
        EXPECT_FALSE(supportsKeepAlive({{"connection", value}})) << value;
    EXPECT_FALSE(supportsKeepAlive({{"Connection", "keep-alive"}}));
}

} // namespace
} // namespace quillorn
