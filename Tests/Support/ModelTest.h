#pragma once

#include "AI/AIEnvironment.h"
#include "Platform/Calendar.h"
#include "Platform/HttpClient.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"
#include "Support/FakeClock.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/ScopedEnvironment.h"
#include "Support/ScriptedServer.h"
#include "Support/TestStore.h"

#include <thread>

namespace quillorn {

/// Everything that talks to a model, with a scripted one.
struct ModelTest : testing::Test {
    ModelTest() {
        settings.set("aiEndpoint", server.url());
        settings.set("aiModel", "m");
    }

    /// Lets the main thread work, at a standing clock, until that is so.
    template <typename Condition>
    void until(const Condition& condition) {
        for (queue.runPosted(); !condition(); queue.runPosted())
            std::this_thread::yield(); // the server and the transfers have threads of their own
    }
    /// The messages of a request to the model.
    Json::Array sent(std::size_t request) {
        return *Json::parse(server.requests(request + 1)[request].body).find("messages")->asArray();
    }

    ScopedEnvironment noProxy{"no_proxy", "127.0.0.1"};
    FakeClock clock;
    ManualQueue queue{clock};
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    MemorySettings settings;
    MemoryStore store;
    ModelContext mainContext{*store.container};
    ScriptedServer server;
    HttpClient client{queue};
    AIEnvironment environment{client, settings, mainContext, queue, clock, calendar, text};
};

} // namespace quillorn
