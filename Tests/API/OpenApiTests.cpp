#include "API/APITest.h"
#include "API/Routes.h"

#include <algorithm>
#include <regex>

namespace quillorn {
namespace {

const Json& document() {
    static const Json json = Json::parse(readFile(QUILLORN_RESOURCES "/openapi.json"));
    return json;
}

TEST_F(APITest, openApiDescribesExactlyTheRoutesThatAreServed) {
    std::vector<std::string> served;
    ListCache lists(*store.container, loop);
    for (const auto& routes : {apiRoutes(*store.container, clock, text, paths, lists), mcpRoutes({})})
        for (const Route& route : routes)
            served.push_back(route.method + " " + route.path);
    std::vector<std::string> described;
    for (const auto& [path, item] : *document().find("paths")->asObject())
        for (const auto& [method, operation] : *item.asObject())
            if (std::string name = method; method != "parameters") {
                std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::toupper(c); });
                described.push_back(name + " " + std::regex_replace(path, std::regex(R"(\{(\w+)\})"), ":$1"));
            }
    EXPECT_THAT(described, testing::UnorderedElementsAreArray(served));
}

} // namespace
} // namespace quillorn
