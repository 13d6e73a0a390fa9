#include "Platform/JsonEvents.h"

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

/// Hands on what the library reads, as far as it is sound. Each event answers whether to go on; fault() says why not.
class Adapter {
  public:
    Adapter(JsonEvents& events, int maximumDepth) : m_events(events), m_depthLeft(std::max(maximumDepth, 0)) {}

    const char* fault() const { return m_fault; }

    bool Null() { return tell<&JsonEvents::null>(); }
    bool Bool(bool value) { return tell<&JsonEvents::boolean>(value); }
    bool RawNumber(const char* text, rapidjson::SizeType length, bool) { return takeNumber({text, length}); }

    // Events of the reader's own number conversion, which is switched off.
    bool Int(int) { return false; }
    bool Uint(unsigned) { return false; }
    bool Int64(std::int64_t) { return false; }
    bool Uint64(std::uint64_t) { return false; }
    bool Double(double) { return false; }

    bool String(const char* text, rapidjson::SizeType length, bool) {
        return takeText<&JsonEvents::string>({text, length});
    }
    bool Key(const char* text, rapidjson::SizeType length, bool) { return takeText<&JsonEvents::key>({text, length}); }
    bool StartObject() { return goDeeper() && tell<&JsonEvents::beginObject>(); }
    bool StartArray() { return goDeeper() && tell<&JsonEvents::beginArray>(); }
    bool EndObject(rapidjson::SizeType) { return goBack() && tell<&JsonEvents::endObject>(); }
    bool EndArray(rapidjson::SizeType) { return goBack() && tell<&JsonEvents::endArray>(); }

  private:
    template <auto Event, typename... Values>
    bool tell(Values... values) {
        (m_events.*Event)(values...);
        return true;
    }
    bool stop(const char* fault) {
        m_fault = fault;
        return false;
    }
    bool goDeeper() { return m_depthLeft-- > 0 || stop("Nesting is too deep"); }
    bool goBack() { return ++m_depthLeft > 0; }

    /// The reader lets half a surrogate pair through when it is written as an escape.
    template <auto Event>
    bool takeText(std::string_view text) {
        return isValidUTF8(text) ? tell<Event>(text) : stop("Text is not valid UTF-8");
    }

    bool takeNumber(std::string_view text) {
        std::int64_t whole = 0;
        const char* end = text.data() + text.size();
        const auto asWhole = std::from_chars(text.data(), end, whole);
        if (asWhole.ec == std::errc{} && asWhole.ptr == end)
            return tell<&JsonEvents::integer>(whole);
        double real = 0;
        if (std::from_chars(text.data(), end, real).ec == std::errc::result_out_of_range && !readExtreme(text, real))
            return stop("Number too big to be stored");
        return tell<&JsonEvents::number>(real);
    }

    JsonEvents& m_events;
    int m_depthLeft;
    const char* m_fault = nullptr;
};

} // namespace

void readJson(std::string_view text, JsonEvents& events, int maximumDepth) {
    // Iterative, since the recursive reader overruns the stack; numbers as text, since the reader's own conversion is
    // either imprecise or, in full precision, runs out of its buffers on long fractions.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag;
    rapidjson::MemoryStream stream(text.data(), text.size());
    rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, JsonMemory> reader;
    Adapter adapter(events, maximumDepth);
    const rapidjson::ParseResult result = reader.Parse<flags>(stream, adapter);
    if (adapter.fault() != nullptr)
        fail(text, stream.Tell(), adapter.fault());
    if (result.IsError())
        fail(text, result.Offset(), rapidjson::GetParseError_En(result.Code()));
    // The reader takes a zero byte for the end of the text.
    if (stream.Tell() != text.size())
        fail(text, stream.Tell(), "Something stands behind the value");
}

} // namespace quillorn
