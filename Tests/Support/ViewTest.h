#pragma once

#include "Platform/Calendar.h"
#include "Platform/Text.h"
#include "Services/DayChangeObserver.h"
#include "Services/TimerService.h"
#include "Store/MainContext.h"
#include "Support/FakeClock.h"
#include "Support/FakeNotifications.h"
#include "Support/ManualQueue.h"
#include "Support/MemorySettings.h"
#include "Support/TestRecords.h"
#include "Support/TestStore.h"
#include "Views/EditHistory.h"
#include "Views/SceneStorage.h"
#include "Views/ViewEnvironment.h"

#include <gtest/gtest.h>

namespace quillorn {

/// What view models stand on: a main context that follows a store, at a standing clock.
struct ViewTest : testing::Test, MemoryStore {
    /// What somebody else does, and what follows from it here.
    template <class Work>
    void elsewhere(const Work& work) {
        change(*container, work);
        queue.runPosted();
    }
    template <class Type>
    Type& record(std::string_view name) {
        return named<Type>(main.context(), name);
    }

    FakeClock clock;
    ManualQueue queue{clock};
    Calendar calendar{"UTC", "en_US"};
    Text text{"en_US"};
    MemorySettings settings;
    MainContext main{*container, queue, log};
    TimerService timer{queue, clock};
    EditHistory history{main, timer, clock};
    FakeWakeSignals wakeSignals;
    DayChangeObserver days{clock, calendar, queue, wakeSignals};
    MemorySceneStorage scene;
    ViewEnvironment environment{main, queue, history, timer, days, settings, clock, calendar, text};
};

} // namespace quillorn
