#include "Fuzz/Values.h"

#include "Fuzz/Harness.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>
#include <vector>

namespace quillorn {

namespace {

template <std::size_t size>
const char* oneOf(Dice& dice, const char* const (&texts)[size]) {
    return texts[dice.below(size)];
}

constexpr const char* texts[] = {"a",       "",        " ",        "\n\n", "A 0", "%",      "_",     "'",  "\"; --",
                                 "é",       "e\u0301", "\u202Eab", "😀",   "ﬁ",   "İ",      "ß",     "\t", "\\",
                                 "\u0000x", "#FF9500", "#ff95",    "null", "0",   "[x](y)", "\uFEFF"};
constexpr const char* dates[] = {"2026-01-15T12:00:00Z",      "2026-01-15T12:00:00.123Z", "2026-01-15T12:00:00+14:00",
                                 "0000-01-01T00:00:00Z",      "0001-01-01T00:00:00Z",     "9999-12-31T23:59:59Z",
                                 "9999-12-31T23:59:59-23:59", "2026-02-30T12:00:00Z",     "2026-01-15T24:00:00Z",
                                 "2026-12-31T23:59:60Z",      "292277-01-01T00:00:00Z",   "-0001-01-01T00:00:00Z"};
// clang-format off
constexpr const char* links[] = {"https://example.com/a?b#c", "javascript:x", "file:///etc", "mailto:a@b",
                                 "http://[::1", "x:", "//a", "http://a b", "HTTP://%zz"};
// clang-format on

/// Whether "parentTaskId" or "/api/tasks/" names records of that kind ("task", "otherClient", "entry").
bool isFor(std::string_view name, std::string kind) {
    if (kind.starts_with("other"))
        kind.erase(0, 5);
    const auto same = [](char a, char b) { return (a | 0x20) == (b | 0x20); };
    return !std::ranges::search(name, std::string_view(kind).substr(0, 4), same).empty();
}

} // namespace

Values::Values(Dice& dice, const StoreIds& ids, std::function<const Json&(const Json&)> resolve)
    : m_dice(dice),
      m_ids(ids),
      m_resolve(std::move(resolve)) {}

std::string Values::id(std::string_view name) {
    std::vector<std::string> fitting;
    for (const auto& [kind, id] : m_ids)
        if (isFor(name, kind))
            fitting.push_back(id);
    if (!fitting.empty() && m_dice.chance(75))
        return fitting[m_dice.below(fitting.size())];
    const std::size_t which = m_dice.below(m_ids.size() + 2);
    if (which < m_ids.size())
        return std::next(m_ids.begin(), static_cast<std::ptrdiff_t>(which))->second;
    return which == m_ids.size() ? "00000000-0000-4000-8000-00000000ABCD" : text();
}

std::string Values::text() {
    switch (m_dice.below(8)) {
    case 0:
        return oneOf(m_dice, dates);
    case 1:
        return oneOf(m_dice, links);
    case 2:
        return std::string(m_dice.below(3000), 'x');
    case 3:
        return mutated(oneOf(m_dice, texts), 64);
    default:
        return oneOf(m_dice, texts);
    }
}

Json Values::anything() {
    constexpr std::int64_t integers[] = {
        0, 1, -1, 3, 4, std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()};
    constexpr double doubles[] = {0.5, -0.0, 1e300, 1e18, 9.3e18, 4e-320};
    switch (m_dice.below(8)) {
    case 0:
        return nullptr;
    case 1:
        return m_dice.chance(50);
    case 2:
        return integers[m_dice.below(std::size(integers))];
    case 3:
        return doubles[m_dice.below(std::size(doubles))];
    case 4:
        return Json::Array{};
    case 5:
        return Json::Array{id({}), anything()};
    case 6:
        return Json::Object{{text(), anything()}};
    default:
        return text();
    }
}

Json Values::string(const Json& schema, std::string_view name) {
    const Json* format = schema.find("format");
    if (format != nullptr && *format == Json("uuid"))
        return id(name);
    if (format != nullptr && *format == Json("date-time"))
        return m_dice.chance(80) ? oneOf(m_dice, dates) : text();
    return text();
}

Json Values::value(const Json& reference, std::string_view name) {
    const Json& schema = m_resolve(reference);
    const Json* type = schema.find("type");
    if (type == nullptr || m_dice.chance(8))
        return anything();
    if (*type == Json("string"))
        return string(schema, name);
    if (*type == Json("boolean"))
        return m_dice.chance(50);
    if (*type == Json("integer") || *type == Json("number"))
        return m_dice.chance(80) ? Json(static_cast<std::int64_t>(m_dice.below(5))) : anything();
    if (*type == Json("object"))
        return object(schema);
    Json::Array elements;
    if (const Json* items = schema.find("items"))
        for (std::size_t count = m_dice.below(4); count > 0; --count)
            elements.push_back(value(*items, name));
    return elements;
}

Json::Object Values::object(const Json& reference) {
    const Json& schema = m_resolve(reference);
    Json::Object object;
    const Json* properties = schema.find("properties");
    if (properties == nullptr)
        return object;
    const Json* required = schema.find("required");
    for (const auto& [name, property] : *properties->asObject()) {
        const bool isRequired = required != nullptr && std::ranges::count(*required->asArray(), Json(name)) > 0;
        if (m_dice.chance(isRequired ? 97 : 35))
            object[name] = value(property, name);
    }
    return object;
}

void Values::change(Json::Object& object, const Json& reference) {
    const Json* properties = m_resolve(reference).find("properties");
    if (properties == nullptr || properties->asObject()->empty() || m_dice.chance(5)) {
        object[text()] = anything();
        return;
    }
    const auto& members = *properties->asObject();
    const auto& [name, schema] = *std::next(members.begin(), static_cast<std::ptrdiff_t>(m_dice.below(members.size())));
    const auto present = object.find(name);
    if (present != object.end() && m_dice.chance(15))
        object.erase(present);
    else if (present != object.end() && present->second.asString() != nullptr && m_dice.chance(40))
        present->second = mutated(*present->second.asString(), present->second.asString()->size() + 16);
    else
        object[name] = value(schema, name);
}

} // namespace quillorn
