#include "HTTP/HttpRouter.h"

#include <gtest/gtest.h>

namespace quillorn {
namespace {

/// Routes whose handlers answer with their number, from 1 on.
struct Routes : HttpRouter {
    Routes(std::initializer_list<std::pair<std::optional<std::string>, const char*>> routes) {
        for (int number = 0; const auto& [method, path] : routes)
            registerRoute(method, path, [n = ++number](auto&) { return HttpResponse::raw(n, ""); });
    }

    struct Lookup {
        std::string method, path;
        int number; // 0: nothing found
        Params params = {};
    };
    void expect(const std::vector<Lookup>& lookups) const {
        for (const auto& [method, path, number, params] : lookups) {
            const auto match = route(method, path);
            EXPECT_EQ(match ? match->handler({}).statusCode() : 0, number) << method << " " << path;
            EXPECT_EQ(match ? match->params : Params{}, params) << method << " " << path;
        }
    }
};

// clang-format off
TEST(HttpRouter, findsRoutesByMethodAndSegments) {
    const Routes routes{{"GET", "/"}, {"GET", "/api/tasks?ignored=1"}, {"GET", "/api/tasks/:id"},
                        {"GET", "api//tasks/:id/tags/"}, {"DELETE", "/api/tasks/:id/tags/:tagId"},
                        {std::nullopt, "/any"}, {"POST", "/any"}, {"GET", "/a b/caf\xC3\xA9"}};
    routes.expect({
        {"GET", "", 1}, {"GET", "//", 1},
        {"GET", "/api/tasks", 2}, {"GET", "api//tasks/?x=/y", 2}, {"GET", "/%61pi/t%61sks", 2}, {"", "/GET/api/tasks", 2},
        {"GET", "/api/tasks/x", 3, {{":id", "x"}}}, {"GET", "/api/tasks/a%20b%2Fc", 3, {{":id", "a b/c"}}},
        {"GET", "/api/tasks/x/tags", 4, {{":id", "x"}}},
        {"DELETE", "/api/tasks/x/tags/y", 5, {{":id", "x"}, {":tagId", "y"}}},
        {"GET", "/any", 6}, {"POST", "/any", 7}, {"GET", "/a%20b/caf%C3%A9", 8},
        {"GET", "/api", 0}, {"GET", "/api/tasks/x/tags/y", 0}, {"get", "/api/tasks", 0}, {"HEAD", "/api/tasks", 0},
    });
}

TEST(HttpRouter, prefersVariablesThenTextThenOneThenMany) {
    const Routes routes{{"GET", "/a/:x"}, {"GET", "/a/text"}, {"GET", "/a/:x/end"}, {"GET", "/a/text/end"},
                        {"GET", "/a/text/only"}, {"GET", "/b/text"}, {"GET", "/b/*"}, {"GET", "/b/**/end"},
                        {"GET", "/b/*/x/end"}};
    routes.expect({
        {"GET", "/a/text", 1, {{":x", "text"}}},
        {"GET", "/a/text/end", 3, {{":x", "text"}}},
        {"GET", "/a/text/only", 5, {{":x", "text"}}}, // left by the branch that failed
        {"GET", "/b/text", 6}, {"GET", "/b/other", 7}, {"GET", "/b/y/x/end", 9}, {"GET", "/b/y/z/end", 8},
        {"GET", "/b/1/2/3/4/end", 8}, {"GET", "/b/1/%zz/end", 8}, {"GET", "/b/1/2/%zz/end", 0},
        {"GET", "/b/1/end", 0}, // the segment behind the first of the run is passed over
    });
    // Branches behind the first match still leave their parameters.
    Routes{{"GET", "/:x/end"}, {"GET", "/text/:y"}}.expect({{"GET", "/text/end", 1, {{":x", "text"}, {":y", "end"}}}});
}
// clang-format on

TEST(HttpRouter, segmentsThatDoNotDecodeMatchNothing) {
    const Routes routes{{"GET", "/:x"}, {"GET", "/%zz"}};
    for (const std::string segment : {"%zz", "%", "%4", "a%", "%4g", "%FF", "%C3", "%ED%A0%80", "%-1", "%+1"})
        EXPECT_FALSE(routes.route("GET", "/" + segment)) << segment;
    EXPECT_EQ(routes.route("GET", "/%00")->params.at(":x"), std::string(1, '\0'));
}

TEST(HttpRouter, theLastRegistrationOfARouteHolds) {
    Routes routes{{"GET", "/a"}, {"GET", "/a/"}};
    routes.expect({{"GET", "/a", 2}});
    routes.registerRoute("GET", "/a", nullptr);
    routes.expect({{"GET", "/a", 0}});
}

TEST(HttpRouter, pathsOfManySegmentsDoNoHarm) {
    const Routes routes{{"GET", "/:a/*/**/end"}};
    std::string path;
    for (int i = 0; i < 100'000; ++i)
        path += "/:a";
    EXPECT_FALSE(routes.route("GET", path));
    EXPECT_TRUE(routes.route("GET", path + "/end"));
}

} // namespace
} // namespace quillorn
