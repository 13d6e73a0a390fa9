#include "AI/ToolArguments.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillorn {

namespace {

// Within the years 1 to 9999, so that nothing that is counted from a date can overflow.
const Date firstDate = parseISO8601("0001-01-01T00:00:00Z").value();
const Date lastDate = parseISO8601("9999-12-31T23:59:59Z").value();

std::string lowered(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return text;
}

/// The value that stands beside a word in a table; absent for a word that is in none.
template <typename Value, std::size_t count>
std::optional<Value> lookUp(const std::array<std::pair<std::string_view, Value>, count>& table, std::string_view word) {
    const auto* found = std::ranges::find(table, word, &std::pair<std::string_view, Value>::first);
    return found != table.end() ? std::optional(found->second) : std::nullopt;
}

} // namespace

Date shifted(Date date, double seconds) {
    constexpr double limit = 1e12; // far outside of the range, and far inside of an integer
    const auto shift = std::chrono::microseconds(static_cast<std::int64_t>(std::clamp(seconds, -limit, limit) * 1e6));
    return std::clamp(date + shift, firstDate, lastDate);
}

ToolArguments ToolArguments::parse(std::string_view text) {
    try {
        Json json = Json::parse(text);
        if (Json::Object* object = json.asObject())
            return ToolArguments(std::move(*object));
    } catch (const JsonError&) {
        // Models do that; they mean no arguments.
    }
    return ToolArguments({});
}

const Json* ToolArguments::find(std::string_view key) const {
    const auto found = m_values.find(key);
    return found != m_values.end() ? &found->second : nullptr;
}

std::optional<UUID> ToolArguments::id(std::string_view key) const {
    const auto value = text(key);
    return value ? UUID::parse(*value) : std::nullopt;
}

std::optional<std::string> ToolArguments::text(std::string_view key) const {
    const Json* value = find(key);
    const std::string* text = value != nullptr ? value->asString() : nullptr;
    return text != nullptr && !text->empty() ? std::optional(*text) : std::nullopt;
}

std::string ToolArguments::word(std::string_view key) const {
    return lowered(text(key).value_or(""));
}

std::optional<bool> ToolArguments::boolean(std::string_view key) const {
    static constexpr std::array<std::pair<std::string_view, bool>, 6> words = {
        {{"true", true}, {"1", true}, {"yes", true}, {"false", false}, {"0", false}, {"no", false}}};
    const Json* value = find(key);
    if (value != nullptr && value->asBool() != nullptr)
        return *value->asBool();
    if (const auto given = number(key))
        return *given != 0;
    return lookUp(words, word(key));
}

std::optional<double> ToolArguments::number(std::string_view key) const {
    const Json* value = find(key);
    if (value != nullptr && value->asInteger() != nullptr)
        return static_cast<double>(*value->asInteger());
    return value != nullptr && value->asDouble() != nullptr ? std::optional(*value->asDouble()) : std::nullopt;
}

std::optional<std::int64_t> ToolArguments::integer(std::string_view key) const {
    const Json* value = find(key);
    if (value != nullptr && value->asInteger() != nullptr)
        return *value->asInteger();
    const auto given = number(key);
    const bool isWhole = given && std::trunc(*given) == *given && std::abs(*given) < 1e15;
    return isWhole ? std::optional(static_cast<std::int64_t>(*given)) : std::nullopt;
}

std::size_t ToolArguments::limit(std::size_t otherwise) const {
    const auto given = integer("limit");
    return given ? static_cast<std::size_t>(std::max<std::int64_t>(0, *given)) : otherwise;
}

std::optional<Date> ToolArguments::instant(std::string_view key) const {
    const auto seconds = number(key);
    return seconds ? std::optional(shifted(Date{}, *seconds)) : std::nullopt;
}

std::optional<TaskStatus> ToolArguments::status() const {
    static constexpr std::array<std::pair<std::string_view, TaskStatus>, 5> words = {
        {{"todo", TaskStatus::todo},
         {"inprogress", TaskStatus::inProgress},
         {"in_progress", TaskStatus::inProgress},
         {"review", TaskStatus::review},
         {"done", TaskStatus::done}}};
    return lookUp(words, word("status"));
}

std::optional<TaskPriority> ToolArguments::priority() const {
    static constexpr std::array<std::pair<std::string_view, TaskPriority>, 4> words = {
        {{"low", TaskPriority::low},
         {"medium", TaskPriority::medium},
         {"high", TaskPriority::high},
         {"urgent", TaskPriority::urgent}}};
    return lookUp(words, word("priority"));
}

} // namespace quillorn
