#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillorn {

/// An absolute point in time, UTC, with the resolution that the store keeps.
using Date = std::chrono::sys_time<std::chrono::microseconds>;

/// Seconds from `from` to `to`; negative when `to` is earlier.
double secondsBetween(Date from, Date to);

/// "2026-01-02T03:04:05Z": whole seconds, cut towards the past.
std::string formatISO8601(Date date);
/// The characters of formatISO8601; for writers of many dates.
std::array<char, 20> iso8601Characters(Date date);

/// Reads the form that formatISO8601 writes, with "Z" or an offset such as "+02:00". Absent for anything else,
/// fractional seconds and impossible dates included.
std::optional<Date> parseISO8601(std::string_view text);

} // namespace quillorn
