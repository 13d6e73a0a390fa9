#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace cctz {
class time_zone; // NOLINT(readability-identifier-naming): theirs
}

namespace quillorn {

/// What the wall clocks of one time zone show, by the system's zone files. Immutable.
class ZoneRules {
  public:
    /// Throws std::runtime_error for a name that the system does not know. "UTC" is always known.
    explicit ZoneRules(std::string_view name);

    const std::string& name() const { return m_name; }

    /// What local time is ahead of UTC.
    std::chrono::seconds offsetAt(std::chrono::sys_seconds time) const;

    /// How to read a wall-clock time.
    struct Reading {
        /// The offset to take: where the time exists twice or not at all, the one before the clocks are changed.
        std::chrono::seconds offset;
        /// When clocks skip this time: the instant at which they do.
        std::optional<std::chrono::sys_seconds> skippedAt;
    };
    Reading read(std::chrono::local_seconds time) const;

  private:
    std::string m_name;
    std::shared_ptr<const cctz::time_zone> m_zone;
};

} // namespace quillorn
