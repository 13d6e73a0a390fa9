#pragma once

#include "Models/Enums.h"
#include "Platform/Date.h"
#include "Platform/Json.h"
#include "Platform/UUID.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// What a model gave a tool. Nothing in it is a fault: what has no sense is as good as absent.
class ToolArguments {
  public:
    explicit ToolArguments(Json::Object values) : m_values(std::move(values)) {}
    /// Of JSON text; what is no object has no arguments.
    static ToolArguments parse(std::string_view text);

    std::optional<UUID> id(std::string_view key) const;
    /// Absent for an empty one too.
    std::optional<std::string> text(std::string_view key) const;
    /// Numbers other than zero and the usual words count as well.
    std::optional<bool> boolean(std::string_view key) const;
    std::optional<std::int64_t> integer(std::string_view key) const;
    /// How many rows to give; none for a negative number.
    std::size_t limit(std::size_t otherwise) const;
    /// A time in seconds since 1970.
    std::optional<Date> instant(std::string_view key) const;
    /// "todo", "in_progress" …
    std::optional<TaskStatus> status() const;
    /// "low" to "urgent".
    std::optional<TaskPriority> priority() const;

  private:
    const Json* find(std::string_view key) const;
    std::optional<double> number(std::string_view key) const;
    std::string word(std::string_view key) const;

    Json::Object m_values;
};

/// A date that lies so many seconds from another one; what is out of range counts as the end of the range.
Date shifted(Date date, double seconds);

} // namespace quillorn
