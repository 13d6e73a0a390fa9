#include "HTTP/HttpRouter.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using Params = HttpRouter::Params;

/// A handler that can be told from the others by its status.
HttpHandler answering(int status) {
    return [status](const HttpRequest&) { return HttpResponse::raw(status, ""); };
}

struct Lookup {
    std::string method;
    std::string path;
    int status; // 0: nothing found
    Params params;
};

void expectLookups(const HttpRouter& router, const std::vector<Lookup>& lookups) {
    for (const auto& [method, path, status, params] : lookups) {
        const auto match = router.route(method, path);
        EXPECT_EQ(match ? match->handler({}).statusCode() : 0, status) << method << " " << path;
        EXPECT_EQ(match ? match->params : Params{}, params) << method << " " << path;
    }
}

TEST(HttpRouter, findsRoutesByMethodAndSegments) {
    HttpRouter router;
    router.registerRoute("GET", "/", answering(1));
    router.registerRoute("GET", "/api/tasks?ignored=1", answering(2));
    router.registerRoute("GET", "/api/tasks/:id", answering(3));
    router.registerRoute("GET", "api//tasks/:id/tags/", answering(4));
    router.registerRoute("DELETE", "/api/tasks/:id/tags/:tagId", answering(5));
    router.registerRoute(std::nullopt, "/any", answering(6));
    router.registerRoute("POST", "/any", answering(7));
    router.registerRoute("GET", "/a b/caf\xC3\xA9", answering(8));
    expectLookups(router, {
                              {"GET", "", 1, {}},
                              {"GET", "//", 1, {}},
                              {"GET", "/api/tasks", 2, {}},
                              {"GET", "api//tasks/?x=/y", 2, {}},
                              {"GET", "/api/tasks/x", 3, {{":id", "x"}}},
                              {"GET", "/api/tasks/a%20b%2Fc", 3, {{":id", "a b/c"}}},
                              {"GET", "/api/tasks/x/tags", 4, {{":id", "x"}}},
                              {"DELETE", "/api/tasks/x/tags/y", 5, {{":id", "x"}, {":tagId", "y"}}},
                              {"GET", "/%61pi/t%61sks", 2, {}},
                              {"GET", "/a%20b/caf%C3%A9", 8, {}},
                              {"GET", "/any", 6, {}},
                              {"POST", "/any", 7, {}},
                              {"GET", "/api", 0, {}},
                              {"GET", "/api/tasks/x/tags/y", 0, {}},
                              {"get", "/api/tasks", 0, {}},
                              {"HEAD", "/api/tasks", 0, {}},
                              {"", "/GET/api/tasks", 2, {}},
                          });
}

TEST(HttpRouter, segmentsThatDoNotDecodeMatchNothing) {
    HttpRouter router;
    router.registerRoute("GET", "/:x", answering(1));
    router.registerRoute("GET", "/%zz", answering(2));
    for (const std::string segment : {"%zz", "%", "%4", "a%", "%4g", "%FF", "%C3", "%ED%A0%80", "%-1", "%+1"})
        EXPECT_FALSE(router.route("GET", "/" + segment)) << segment;
    EXPECT_EQ(router.route("GET", "/%00")->params.at(":x"), std::string(1, '\0'));
}

TEST(HttpRouter, prefersVariablesThenTextThenOneThenMany) {
    HttpRouter router;
    router.registerRoute("GET", "/a/:x", answering(1));
    router.registerRoute("GET", "/a/text", answering(2));
    router.registerRoute("GET", "/a/:x/end", answering(3));
    router.registerRoute("GET", "/a/text/end", answering(4));
    router.registerRoute("GET", "/a/text/only", answering(5));
    router.registerRoute("GET", "/b/text", answering(6));
    router.registerRoute("GET", "/b/*", answering(7));
    router.registerRoute("GET", "/b/**/end", answering(8));
    router.registerRoute("GET", "/b/*/x/end", answering(9));
    expectLookups(router, {
                              {"GET", "/a/text", 1, {{":x", "text"}}},
                              {"GET", "/a/text/end", 3, {{":x", "text"}}},
                              {"GET", "/a/text/only", 5, {{":x", "text"}}}, // left by the branch that failed
                              {"GET", "/b/text", 6, {}},
                              {"GET", "/b/other", 7, {}},
                              {"GET", "/b/y/x/end", 9, {}},
                              {"GET", "/b/y/z/end", 8, {}},
                              {"GET", "/b/1/2/3/4/end", 8, {}},
                              {"GET", "/b/1/end", 0, {}}, // the segment behind the first of the run is passed over
                              {"GET", "/b/1/%zz/end", 8, {}},
                              {"GET", "/b/1/2/%zz/end", 0, {}},
                          });
}

TEST(HttpRouter, parametersOfBranchesBehindTheFirstMatchStay) {
    HttpRouter router;
    router.registerRoute("GET", "/:x/end", answering(1));
    router.registerRoute("GET", "/text/:y", answering(2));
    expectLookups(router, {{"GET", "/text/end", 1, {{":x", "text"}, {":y", "end"}}}});
}

TEST(HttpRouter, theLastRegistrationOfARouteHolds) {
    HttpRouter router;
    router.registerRoute("GET", "/a", answering(1));
    router.registerRoute("GET", "/a/", answering(2));
    EXPECT_EQ(router.route("GET", "/a")->handler({}).statusCode(), 2);
    router.registerRoute("GET", "/a", nullptr);
    EXPECT_FALSE(router.route("GET", "/a"));
}

TEST(HttpRouter, pathsOfManySegmentsDoNoHarm) {
    HttpRouter router;
    router.registerRoute("GET", "/:a/*/**/end", answering(1));
    std::string path;
    for (int i = 0; i < 100'000; ++i)
        path += "/:a";
    EXPECT_FALSE(router.route("GET", path));
    EXPECT_TRUE(router.route("GET", path + "/end"));
}

} // namespace
} // namespace quillorn
