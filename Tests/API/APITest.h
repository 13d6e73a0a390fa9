#pragma once

#include "API/APIServer.h"
#include "Platform/Json.h"
#include "Platform/RunLoop.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"
#include "Support/FakeClock.h"
#include "Support/FakePaths.h"
#include "Support/TestStore.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace quillorn {

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
};

/// A server on a free port, over a store of its own. Every answer is held against openapi.json.
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

    /// Runs `work` in a context of its own and saves.
    template <class Work>
    auto inStore(Work&& work) {
        ModelContext context(*store.container, ModelContext::Intent::update);
        auto result = work(context);
        context.save();
        return result;
    }
    /// Creates a record by the API and returns its id; `resource` is the last part of the path.
    std::string add(const std::string& resource, const std::string& body) const;
    std::string addTag(const std::string& name);
    std::string addProject(const std::string& name, bool archived = false, bool clientArchived = false);
    std::string addTask(const std::string& body) const { return add("tasks", body); }
    /// All tasks by the API, archived ones too.
    std::string allTasks() const { return get("/api/tasks?archived=true").body; }

    FakeClock clock;
    TestStore store;
    Text text{"en_US"};
    FakePaths paths{store.folder.path()};
    RecordingLog log;
    RunLoop loop{log};
    std::optional<APIServer> server;
};

inline const std::string unknownId = "00000000-0000-4000-8000-00000000ABCD";
/// A JSON object of these members, which are a pattern of fmt.
template <class... Arguments>
std::string object(fmt::format_string<Arguments...> members, Arguments&&... arguments) {
    return "{" + fmt::format(members, std::forward<Arguments>(arguments)...) + "}";
}
/// The message of a list of validation faults.
std::vector<std::string> detailsOf(const Answer& answer);
std::string code(const Answer& answer);

} // namespace quillorn
