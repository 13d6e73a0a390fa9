#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quillorn {

/// One value of a message on a D-Bus. What the bus knows in several widths is one kind here; the signature of the
/// message says how it travels:
///   b: bool   y n q i u x t: integer   d: double   s o g: string   a and (): list   a{s.}: dictionary
/// A variant (v) is the value that it holds, together with a signature. Dictionaries with other keys than strings are
/// lists of pairs.
class BusValue {
  public:
    using List = std::vector<BusValue>;
    using Dictionary = std::map<std::string, BusValue, std::less<>>;

    BusValue() = default; // an empty list
    BusValue(bool value) : m_value(value) {}
    BusValue(int value) : m_value(std::int64_t{value}) {}
    BusValue(std::int64_t value) : m_value(value) {}
    BusValue(double value) : m_value(value) {}
    BusValue(const char* value) : m_value(std::string(value)) {}
    BusValue(std::string value) : m_value(std::move(value)) {}
    BusValue(List value) : m_value(std::move(value)) {}
    BusValue(Dictionary value) : m_value(std::move(value)) {}
    BusValue(const BusValue&);
    BusValue(BusValue&&) noexcept;
    BusValue& operator=(const BusValue&);
    BusValue& operator=(BusValue&&) noexcept;
    ~BusValue();

    /// `value`, to travel with that signature where a variant is expected.
    static BusValue variant(std::string signature, BusValue value);

    const bool* asBool() const { return std::get_if<bool>(&m_value); }
    const std::int64_t* asInteger() const { return std::get_if<std::int64_t>(&m_value); }
    const double* asDouble() const { return std::get_if<double>(&m_value); }
    const std::string* asString() const { return std::get_if<std::string>(&m_value); }
    const List* asList() const { return std::get_if<List>(&m_value); }
    const Dictionary* asDictionary() const { return std::get_if<Dictionary>(&m_value); }

    /// The signature in a variant: the one it was made or came with, else the usual one for its kind.
    std::string variantSignature() const;

    /// Whether the values are the same, whatever their signatures in variants.
    friend bool operator==(const BusValue& a, const BusValue& b);

  private:
    std::variant<List, bool, std::int64_t, double, std::string, Dictionary> m_value;
    std::string m_signature;
};

} // namespace quillorn
