#include "Platform/BusValue.h"

#include <algorithm>
#include <limits>

namespace quillorn {

BusValue::BusValue(const BusValue&) = default;
BusValue::BusValue(BusValue&&) noexcept = default;
BusValue& BusValue::operator=(const BusValue&) = default;
BusValue& BusValue::operator=(BusValue&&) noexcept = default;
BusValue::~BusValue() = default;

BusValue BusValue::variant(std::string signature, BusValue value) {
    if (signature != "v") // a variant in a variant says no more than the inner one
        value.m_signature = std::move(signature);
    return value;
}

std::string BusValue::variantSignature() const {
    if (!m_signature.empty())
        return m_signature;
    if (asBool())
        return "b";
    if (const std::int64_t* number = asInteger())
        return *number >= std::numeric_limits<std::int32_t>::min() &&
                       *number <= std::numeric_limits<std::int32_t>::max()
                   ? "i"
                   : "x";
    if (asDouble())
        return "d";
    if (asString())
        return "s";
    if (asDictionary())
        return "a{sv}";
    const auto isText = [](const BusValue& item) { return item.asString() != nullptr; };
    return std::all_of(asList()->begin(), asList()->end(), isText) ? "as" : "av";
}

bool operator==(const BusValue& a, const BusValue& b) {
    return a.m_value == b.m_value;
}

} // namespace quillorn
