#pragma once

#include "API/APIServer.h"
#include "Platform/Background.h"
#include "Platform/Json.h"
#include "Platform/RunLoop.h"
#include "Platform/Text.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace quillorn {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

struct Answer {
    int status = 0;
    /// Status line and headers.
    std::string head;
    std::string body;

    Json json() const { return Json::parse(body); }
    /// A member of the body; null where there is none.
    Json operator[](const std::string& key) const;
    /// The members named `key` of a list's elements.
    std::vector<Json> all(const std::string& key) const;
    /// "404 not_found …" of an error.
    std::string fault() const;
    /// The faults that a refused request is told.
    std::vector<Json> details() const;
};

/// A JSON object of these members, which are a pattern of fmt.
template <class... Arguments>
std::string object(fmt::format_string<Arguments...> members, Arguments&&... arguments) {
    return "{" + fmt::format(members, std::forward<Arguments>(arguments)...) + "}";
}

/// A server on a free port, over a store of its own.
class APITest : public ::testing::Test {
  protected:
    APITest();

    /// Makes the server, stopped, over another store than that of the test.
    void serve(ModelContainer& container);
    /// Returns when the server runs or has failed.
    void start(bool externalAccess = false, std::optional<std::string> key = {}, bool requireAuthLocal = false);
    /// Runs the main queue until then.
    template <class Condition>
    void runUntil(Condition&& condition) {
        while (!condition())
            loop.run(); // until the next change of the server
    }
    /// `headers` are lines with their ends; safe to call from many threads.
    Answer call(const std::string& method, const std::string& target, const std::string& body = "",
                const std::string& headers = "Host: localhost\r\n") const;
    Answer get(const std::string& target) const { return call("GET", target); }
    Answer post(const std::string& target, const std::string& body = "") const { return call("POST", target, body); }
    Answer put(const std::string& target, const std::string& body) const { return call("PUT", target, body); }

    /// Creates a record and returns its id; `resource` is the last part of the path.
    std::string add(const std::string& resource, const std::string& body) const;
    std::string addTask(const std::string& body) const { return add("tasks", body); }
    std::string addTag(const std::string& name) const { return add("tags", object(R"("name": "{}")", name)); }
    std::string addClient(const std::string& name) const { return add("clients", object(R"("name": "{}")", name)); }
    std::string addProjectOf(const std::string& client, const std::string& name) const {
        return add("projects", object(R"("name": "{}", "clientId": "{}")", name, client));
    }
    /// A project of a client of the same name.
    std::string addProject(const std::string& name, bool archived = false, bool clientArchived = false) const;
    void archive(const std::string& path) const { EXPECT_EQ(put(path, R"({"isArchived": true})").status, 200); }
    void makeSubtask(const std::string& task, const std::string& parent) const;
    /// All that the lists tell.
    std::string everything() const;

    /// Null stands for an absent member.
    template <class... Arguments>
    static void expectMembers(const Answer& answer, fmt::format_string<Arguments...> members,
                              Arguments&&... arguments) {
        const Json expected = Json::parse(object(members, std::forward<Arguments>(arguments)...));
        for (const auto& [key, value] : *expected.asObject())
            EXPECT_EQ(answer[key], value) << key;
    }
    /// Queries and the members `key` of the lists that answer all of them.
    using Lists = std::vector<std::pair<std::vector<std::string>, std::vector<std::string>>>;
    void expectLists(const std::string& path, const char* key, const Lists& cases) const;

    FakeClock clock;
    TestStore store;
    Text text{"en_US"};
    FakePaths paths{store.folder.path()};
    RecordingLog log;
    RunLoop loop{log};
    Background background{loop};
    std::optional<APIServer> server;
    Observation serverState;
};

struct RunningAPITest : APITest {
    RunningAPITest() { start(); }
};

inline const std::string unknownId = "00000000-0000-4000-8000-00000000ABCD";
inline const std::string invalidJSON = "400 bad_request Invalid JSON in request body";

} // namespace quillorn
