#include "Platform/Json.h"
#include "Platform/UTF8.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <rapidjson/internal/dtoa.h>
#include <utility>

namespace quillorn {

namespace {

/// A buffer that goes to the sink when it is full.
class SinkStream {
  public:
    explicit SinkStream(JsonWriter::Sink sink) : m_sink(std::move(sink)), m_buffer(new char[capacity]) {}

    void put(char c) {
        if (m_size == capacity)
            drain();
        m_buffer[m_size++] = c;
    }

    void append(std::string_view text) {
        while (text.size() > capacity - m_size) {
            const std::size_t part = capacity - m_size;
            std::memcpy(m_buffer.get() + m_size, text.data(), part);
            m_size = capacity;
            text.remove_prefix(part);
            drain();
        }
        std::memcpy(m_buffer.get() + m_size, text.data(), text.size());
        m_size += text.size();
    }

    void fill(char c, std::size_t count) {
        for (; count > capacity - m_size; --count)
            put(c);
        std::memset(m_buffer.get() + m_size, c, count);
        m_size += count;
    }

    void drain() {
        const std::size_t size = std::exchange(m_size, 0); // first, so that a sink that throws leaves room
        if (size > 0)
            m_sink({m_buffer.get(), size});
    }

  private:
    static constexpr std::size_t capacity = 64 * 1024;

    JsonWriter::Sink m_sink;
    std::unique_ptr<char[]> m_buffer; // left uninitialised: many writers write little
    std::size_t m_size = 0;
};

enum class ByteKind : std::uint8_t { plain, escaped, multibyte };

constexpr std::array<ByteKind, 256> byteKinds = [] {
    std::array<ByteKind, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte)
        if (byte >= 0x80)
            kinds[byte] = ByteKind::multibyte;
        else if (byte < 0x20 || byte == '"' || byte == '\\')
            kinds[byte] = ByteKind::escaped;
    return kinds;
}();

void appendEscape(SinkStream& stream, char c) {
    switch (c) {
    case '"':
        return stream.append("\\\"");
    case '\\':
        return stream.append("\\\\");
    case '\b':
        return stream.append("\\b");
    case '\f':
        return stream.append("\\f");
    case '\n':
        return stream.append("\\n");
    case '\r':
        return stream.append("\\r");
    case '\t':
        return stream.append("\\t");
    default:
        constexpr std::string_view digits = "0123456789ABCDEF";
        const auto byte = static_cast<unsigned char>(c);
        const char escape[] = {'\\', 'u', '0', '0', digits[byte >> 4], digits[byte & 0x0F]};
        stream.append({escape, sizeof escape});
    }
}

/// Whether any of eight bytes is one that can't be copied as it is.
bool needsCare(const char* bytes) {
    constexpr std::uint64_t ones = 0x0101010101010101u;
    constexpr std::uint64_t highs = ones << 7;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    const auto hasZero = [](std::uint64_t value) { return (value - ones) & ~value; };
    const std::uint64_t below20 = (word - ones * 0x20) & ~word;
    return ((word | below20 | hasZero(word ^ ones * '"') | hasZero(word ^ ones * '\\')) & highs) != 0;
}

/// Copies whole runs and checks the encoding on the way.
void appendQuoted(SinkStream& stream, std::string_view text) {
    stream.put('"');
    std::size_t runStart = 0;
    std::size_t at = 0;
    const auto endRun = [&] { stream.append(text.substr(runStart, at - runStart)); };
    while (at < text.size()) {
        if (text.size() - at >= 8 && !needsCare(text.data() + at)) {
            at += 8;
            continue;
        }
        const ByteKind kind = byteKinds[static_cast<unsigned char>(text[at])];
        if (kind == ByteKind::plain) {
            ++at;
        } else if (kind == ByteKind::escaped) {
            endRun();
            appendEscape(stream, text[at]);
            runStart = ++at;
        } else {
            const UTF8Sequence sequence = firstUTF8Sequence(text.substr(at));
            if (!sequence.isValid) {
                endRun();
                stream.append(replacementCharacter);
                runStart = at + sequence.length;
            }
            at += sequence.length;
        }
    }
    endRun();
    stream.put('"');
}

} // namespace

/// Commas, line breaks and indents. That goes faster than through the library's writer, which keeps a stack of levels
/// for each of its checks.
struct JsonWriter::State {
    State(Sink sink, Json::Style style) : stream(std::move(sink)), isPretty(style == Json::Style::pretty) {}

    /// What stands before a value: nothing after its key.
    void beginValue() {
        if (std::exchange(isAfterKey, false) || depth == 0)
            return;
        if (!std::exchange(isFirst, false))
            stream.put(',');
        breakLine();
    }

    void beginKey() {
        beginValue();
        isAfterKey = true;
    }

    void open(char bracket) {
        beginValue();
        stream.put(bracket);
        ++depth;
        isFirst = true;
    }

    void close(char bracket) {
        --depth;
        if (!std::exchange(isFirst, false)) // the level around has this one
            breakLine();
        stream.put(bracket);
    }

    void breakLine() {
        if (!isPretty)
            return;
        stream.put('\n');
        stream.fill(' ', 2 * depth);
    }

    SinkStream stream;
    const bool isPretty;
    bool isAfterKey = false;
    bool isFirst = true; // nothing stands in the innermost level yet
    std::size_t depth = 0;
};

JsonWriter::JsonWriter(Sink sink, Json::Style style) : m_state(std::make_unique<State>(std::move(sink), style)) {}
JsonWriter::~JsonWriter() = default;

void JsonWriter::beginObject() {
    m_state->open('{');
}

void JsonWriter::endObject() {
    m_state->close('}');
}

void JsonWriter::beginArray() {
    m_state->open('[');
}

void JsonWriter::endArray() {
    m_state->close(']');
}

void JsonWriter::key(std::string_view name) {
    m_state->beginKey();
    appendQuoted(m_state->stream, name);
    m_state->stream.append(m_state->isPretty ? ": " : ":");
}

void JsonWriter::null() {
    m_state->beginValue();
    m_state->stream.append("null");
}

void JsonWriter::boolean(bool value) {
    m_state->beginValue();
    m_state->stream.append(value ? "true" : "false");
}

void JsonWriter::integer(std::int64_t value) {
    m_state->beginValue();
    char digits[20];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    m_state->stream.append({digits, static_cast<std::size_t>(end - digits)});
}

void JsonWriter::number(double value) {
    if (!std::isfinite(value))
        throw JsonError("JSON has no number for infinity and not-a-number");
    m_state->beginValue();
    char digits[32];
    const char* end = rapidjson::internal::dtoa(value, digits);
    m_state->stream.append({digits, static_cast<std::size_t>(end - digits)});
}

void JsonWriter::string(std::string_view value) {
    m_state->beginValue();
    appendQuoted(m_state->stream, value);
}

void JsonWriter::value(const Json& value) {
    if (value.isNull())
        return null();
    if (const bool* flag = value.asBool())
        return boolean(*flag);
    if (const std::int64_t* whole = value.asInteger())
        return integer(*whole);
    if (const double* real = value.asDouble())
        return number(*real);
    if (const std::string* text = value.asString())
        return string(*text);
    if (const Json::Array* array = value.asArray()) {
        beginArray();
        for (const Json& element : *array)
            this->value(element);
        return endArray();
    }
    beginObject();
    for (const auto& [name, member] : *value.asObject()) {
        key(name);
        this->value(member);
    }
    endObject();
}

void JsonWriter::finish() {
    m_state->stream.drain();
}

} // namespace quillorn
