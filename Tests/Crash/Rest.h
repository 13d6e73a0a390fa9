#pragma once

#include "Crash/Ledger.h"

#include <cstdint>
#include <string>

namespace quillorn {

/// A wish to write.
struct WriteRequest {
    std::string verb; // create, update, delete, or what else the kind knows: complete, incomplete, stop
    std::string kind; // project, tag, task, note or time_entry
    std::string id;   // empty for create
    Json::Object fields;
};

struct Answer {
    enum class Kind { acknowledged, refused, cutOff } kind;
    /// Of the record that was made.
    std::string id{};
    /// What the server said.
    std::string text{};
};

/// Over the REST API, on a connection of its own.
Answer send(std::uint16_t port, const WriteRequest& request);

/// All records by key, as the lists of the REST API show them.
ListedRecords listEverything(std::uint16_t port);

} // namespace quillorn
