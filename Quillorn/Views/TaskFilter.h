#pragma once

#include "Platform/UUID.h"

namespace quillorn {

/// Which tasks a list holds, before it is narrowed.
struct TaskFilter {
    enum class Kind { project, tag, client, all, today, upcoming };

    Kind kind = Kind::all;
    /// Of the project, the tag or the client; nil for the other kinds.
    UUID id{};

    /// The lists that are made by a rule and not by what a task belongs to.
    bool isSmartList() const { return kind == Kind::all || kind == Kind::today || kind == Kind::upcoming; }

    friend bool operator==(const TaskFilter&, const TaskFilter&) = default;
};

} // namespace quillorn
