#pragma once

#include "Models/SchemaVersions.h"
#include "Platform/Crypto.h"
#include "Platform/NotificationCenter.h"
#include "Store/Database.h"
#include "Support/RecordingLog.h"
#include "Support/TemporaryFolder.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace quillorn {

/// What a container needs around it.
template <class Random>
struct SurroundingsWith {
    std::unique_ptr<ModelContainer> open(std::optional<std::filesystem::path> file) {
        return openContainer({.name = "Quillorn", .url = std::move(file), .cloudContainerIdentifier = {}},
                             {.random = random, .notifications = notifications}, log);
    }

    Random random;
    NotificationCenter notifications;
    RecordingLog log;
};
using StoreSurroundings = SurroundingsWith<SystemRandom>;

/// A store in a real file, in a folder of its own.
struct TestStore : StoreSurroundings {
    TestStore() : container(open()) {}

    std::unique_ptr<ModelContainer> open() { return StoreSurroundings::open(file()); }
    std::filesystem::path file() const { return folder / "Quillorn.store"; }

    TemporaryFolder folder;
    std::unique_ptr<ModelContainer> container;
};

/// A store in memory, for tests that are not about files.
struct MemoryStore : StoreSurroundings {
    std::unique_ptr<ModelContainer> container = open(std::nullopt);
};

/// A connection past the store's own, as another program would have one.
struct ForeignConnection {
    explicit ForeignConnection(const std::filesystem::path& file) : database(file.string(), executions) {}

    void execute(const std::string& sql) { database.execute(sql); }
    std::int64_t integer(std::string_view sql) { return database.integer(sql); }
    std::string text(std::string_view sql) {
        const StatementLoan query = database.statement(sql);
        return query->step() ? std::string(query->text(0)) : std::string();
    }

    std::atomic<std::uint64_t> executions{0};
    Database database;
};

} // namespace quillorn
