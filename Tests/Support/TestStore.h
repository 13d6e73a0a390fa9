#pragma once

#include "Models/SchemaVersions.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Support/RecordingLog.h"
#include "Support/TemporaryFolder.h"

#include <memory>

namespace quillorn {

/// A store in a real file, in a folder of its own.
struct TestStore {
    TestStore() : container(open()) {}

    std::unique_ptr<ModelContainer> open() {
        return openContainer({.name = "Quillorn", .url = file(), .cloudContainerIdentifier = {}},
                             {.random = random, .notifications = notifications}, log);
    }
    std::filesystem::path file() const { return folder / "Quillorn.store"; }

    TemporaryFolder folder;
    SystemRandom random;
    NotificationCenter notifications;
    RecordingLog log;
    std::unique_ptr<ModelContainer> container;
};

} // namespace quillorn
