#include "Views/AISettingsView.h"

#include "Support/ModelTest.h"

#include <gmock/gmock.h>

namespace quillorn {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

struct AISettingsViews : ModelTest {
    void load() {
        until([&] { return !view.isLoadingModels(); });
    }
    AISettingsView view{client, settings};
};

TEST_F(AISettingsViews, offerTheModelsOfTheServer) {
    server.expect({ScriptedServer::answer(200, R"({"data":[{"id":"b"},{"id":"a"}]})")});
    view.appear();
    EXPECT_TRUE(view.isLoadingModels());
    load();
    EXPECT_THAT(view.availableModels(), ElementsAre("a", "b"));
    EXPECT_THAT(view.modelRows(), ElementsAre("a", "b", "m"));
    view.setModel("b");
    EXPECT_THAT(view.modelRows(), ElementsAre("a", "b"));
    server.expect({ScriptedServer::answer(200, "text")});
    view.setApiKey("k");
    load();
    EXPECT_THAT(view.modelLoadError(), Optional(std::string("Could not fetch models")));
    EXPECT_THAT(view.modelRows(), IsEmpty());
    // An answer that is not wanted any more does not come.
    server.expect({ScriptedServer::Silence{}});
    view.reloadModels();
    (void)server.requests(3);
    view.setEndpoint(" \n");
    EXPECT_FALSE(view.isLoadingModels());
    EXPECT_FALSE(view.modelLoadError());
    server.waitForLeaving();
    settings.set("aiModel", "");
    view.useVibeProxy();
    EXPECT_EQ(view.endpoint() + " " + view.model() + " " + view.apiKey(), "http://127.0.0.1:8318/v1 gpt-5.4-mini ");
    EXPECT_TRUE(view.isLoadingModels());
}

TEST_F(AISettingsViews, testTheConnection) {
    const std::tuple<std::string, const char*, bool> cases[] = {
        {ScriptedServer::answer(200, "ok"), "Connected successfully", true},
        {ScriptedServer::answer(401, "no"), "HTTP error 401", false},
    };
    for (const auto& [script, words, isGood] : cases) {
        server.expect({script});
        view.testConnection();
        EXPECT_EQ(view.testButton(), "Testing...");
        EXPECT_FALSE(view.testResult());
        until([&] { return !view.isTesting(); });
        EXPECT_EQ(view.testResult(), words);
        EXPECT_EQ(view.isGoodResult(), isGood);
    }
    EXPECT_EQ(view.testButton(), "Test Connection");
}

} // namespace
} // namespace quillorn
