#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace quillorn {

class JsonError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A JSON value. Whole numbers that fit 64 bits are integers and others are doubles; true is never 1. Objects keep
/// their keys sorted, and of a repeated key the last value.
class Json {
  public:
    using Array = std::vector<Json>;
    using Object = std::map<std::string, Json, std::less<>>;

    Json() = default; // null
    Json(std::nullptr_t) {}
    Json(bool value) : m_value(value) {}
    Json(int value) : m_value(std::int64_t{value}) {}
    Json(std::int64_t value) : m_value(value) {}
    Json(double value) : m_value(value) {}
    Json(const char* value) : m_value(std::string(value)) {}
    Json(std::string value) : m_value(std::move(value)) {}
    Json(std::string_view value) : m_value(std::string(value)) {}
    Json(Array value) : m_value(std::move(value)) {}
    Json(Object value) : m_value(std::move(value)) {}
    Json(const Json&);
    Json(Json&&) noexcept;
    Json& operator=(const Json&);
    Json& operator=(Json&&) noexcept;
    ~Json();

    bool isNull() const { return std::holds_alternative<std::monostate>(m_value); }
    const bool* asBool() const { return std::get_if<bool>(&m_value); }
    const std::int64_t* asInteger() const { return std::get_if<std::int64_t>(&m_value); }
    const double* asDouble() const { return std::get_if<double>(&m_value); }
    const std::string* asString() const { return std::get_if<std::string>(&m_value); }
    const Array* asArray() const { return std::get_if<Array>(&m_value); }
    const Object* asObject() const { return std::get_if<Object>(&m_value); }
    Array* asArray() { return std::get_if<Array>(&m_value); }
    Object* asObject() { return std::get_if<Object>(&m_value); }
    /// The member of that key; null pointer when this is no object or has none.
    const Json* find(std::string_view key) const;

    enum class Style { compact, pretty };
    /// Throws JsonError for what JSON can't say: numbers that are not finite, text that is not UTF-8.
    std::string text(Style style = Style::compact) const;

    /// Reads one value with nothing behind it but white space. Throws JsonError with the place and the fault; text
    /// that is not valid UTF-8 and nesting deeper than `maximumDepth` are faults.
    static Json parse(std::string_view text, int maximumDepth = 512);

    friend bool operator==(const Json& a, const Json& b);

  private:
    std::variant<std::monostate, bool, std::int64_t, double, std::string, Array, Object> m_value;
};

/// Writes JSON as it goes, so that a long list never stands in memory as a whole. Pretty form: two blanks for each
/// level, one member a line. Members come out in the order of the calls.
class JsonWriter {
  public:
    /// Takes finished pieces of text; called with about 64 KB at a time and once more at the end.
    using Sink = std::function<void(std::string_view)>;

    explicit JsonWriter(Sink sink, Json::Style style = Json::Style::pretty);
    ~JsonWriter();
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view name);
    void null();
    void boolean(bool value);
    void integer(std::int64_t value);
    /// Throws JsonError when the value is not finite.
    void number(double value);
    /// `value` must be UTF-8; bytes that are not come out as U+FFFD.
    void string(std::string_view value);
    void value(const Json& value);
    /// Hands what is left to the sink. Without it the rest is lost: a destructor must not throw.
    void finish();

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// The text of what `write` writes.
std::string jsonText(const std::function<void(JsonWriter&)>& write, Json::Style style = Json::Style::pretty);

} // namespace quillorn
