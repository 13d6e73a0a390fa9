#include "Platform/Json.h"

#include "Platform/JsonMemory.h"
#include "Platform/Text.h"

#include <algorithm>
#include <charconv>
#include <fmt/core.h>
#include <locale>
#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <sstream>

namespace quillorn {

namespace {

std::string placeOf(std::string_view text, std::size_t offset) {
    const std::string_view before = text.substr(0, offset);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0
    return fmt::format("line {}, column {}", line, before.size() - lineStart + 1);
}

[[noreturn]] void fail(std::string_view text, std::size_t offset, std::string_view fault) {
    if (fault.ends_with('.'))
        fault.remove_suffix(1);
    throw JsonError(fmt::format("{} ({})", fault, placeOf(text, offset)));
}

/// Reads a number beyond a double's range, for which from_chars says no more than that. False for too big ones; too
/// small ones become zero.
bool readExtreme(std::string_view text, double& value) {
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    stream >> value;
    return !stream.fail();
}

/// Builds the value from the reader's events. Each event answers whether to go on; fault() says why not.
class Builder {
  public:
    explicit Builder(int maximumDepth) : m_maximumDepth(static_cast<std::size_t>(std::max(maximumDepth, 0))) {}

    const char* fault() const { return m_fault; }
    Json takeResult() { return std::move(m_result); }

    bool Null() { return add(Json()); }
    bool Bool(bool value) { return add(value); }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool) { return addNumber({text, length}); }

    // Events of the reader's own number conversion, which is switched off.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

    bool String(const char* text, rapidjson::SizeType length, bool) {
        return check({text, length}) && add(std::string(text, length));
    }
    bool Key(const char* text, rapidjson::SizeType length, bool) {
        m_open.back().key.assign(text, length);
        return check(m_open.back().key);
    }
    bool StartObject() { return open(Json::Object()); }
    bool StartArray() { return open(Json::Array()); }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool EndArray(rapidjson::SizeType) { return close(); }

  private:
    struct Container {
        explicit Container(Json container) : value(std::move(container)) {}
        Json value;
        std::string key; // of the member that comes next
    };

    bool stop(const char* fault) {
        m_fault = fault;
        return false;
    }

    /// The reader lets half a surrogate pair through when it is written as an escape.
    bool check(std::string_view text) { return isValidUTF8(text) || stop("Text is not valid UTF-8"); }

    bool add(Json value) {
        if (m_open.empty())
            m_result = std::move(value);
        else if (auto* array = m_open.back().value.asArray())
            array->push_back(std::move(value));
        else
            m_open.back().value.asObject()->insert_or_assign(std::move(m_open.back().key), std::move(value));
        return true;
    }

    bool addNumber(std::string_view text) {
        std::int64_t whole = 0;
        const char* end = text.data() + text.size();
        const auto asWhole = std::from_chars(text.data(), end, whole);
        if (asWhole.ec == std::errc{} && asWhole.ptr == end)
            return add(whole);
        double real = 0;
        if (std::from_chars(text.data(), end, real).ec == std::errc::result_out_of_range && !readExtreme(text, real))
            return stop("Number too big to be stored");
        return add(real);
    }

    bool open(Json container) {
        if (m_open.size() == m_maximumDepth)
            return stop("Nesting is too deep");
        m_open.emplace_back(std::move(container));
        return true;
    }

    bool close() {
        Json finished = std::move(m_open.back().value);
        m_open.pop_back();
        return add(std::move(finished));
    }

    std::vector<Container> m_open;
    std::size_t m_maximumDepth;
    Json m_result;
    const char* m_fault = nullptr;
};

} // namespace

Json Json::parse(std::string_view text, int maximumDepth) {
    // Iterative, since the recursive reader overruns the stack; numbers as text, since the reader's own conversion is
    // either imprecise or, in full precision, runs out of its buffers on long fractions.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory> reader;
    Builder builder(maximumDepth);
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, builder);
    if (builder.fault() != nullptr)
        fail(text, stream.Tell(), builder.fault());
    if (result.IsError())
        fail(text, result.Offset(), rapidjson::GetParseError_En(result.Code()));
    // The reader takes a zero byte for the end of the text.
    if (stream.Tell() != text.size())
        fail(text, stream.Tell(), "Something stands behind the value");
    return builder.takeResult();
}

} // namespace quillorn
