#include "Platform/Json.h"
#include "Platform/JsonMemory.h"
#include "Platform/UTF8.h"

#include <array>
#include <cmath>
#include <cstring>
#include <rapidjson/prettywriter.h>
#include <utility>

namespace quillorn {

namespace {

/// The output stream that the JSON writers below write to: a buffer that goes to the sink when it is full.
class SinkStream {
  public:
    using Ch = char;

    explicit SinkStream(JsonWriter::Sink sink) : m_sink(std::move(sink)), m_buffer(new char[capacity]) {}

    void Put(char c) {
        if (m_size == capacity)
            drain();
        m_buffer[m_size++] = c;
    }

    void Flush() {} // the writers call it at the end of the text; finish() decides here

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
            Put(c);
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

// Found by the writers in place of their one-by-one default.
[[maybe_unused]] void PutN(SinkStream& stream, char c, std::size_t count) {
    stream.fill(c, count);
}

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

/// How many bytes at the beginning can be copied as they are.
std::size_t plainLength(std::string_view text) {
    // Eight at a time: each subtraction sets the highest bit of a byte below 0x20, of a quote, of a backslash.
    constexpr std::uint64_t each = 0x0101010101010101;
    std::size_t length = 0;
    for (std::uint64_t word = 0; length + sizeof word <= text.size(); length += sizeof word) {
        std::memcpy(&word, text.data() + length, sizeof word);
        const std::uint64_t marked =
            word | (word - each * 0x20) | ((word ^ each * '"') - each) | ((word ^ each * '\\') - each);
        if ((marked & each * 0x80) != 0)
            break;
    }
    while (length < text.size() && byteKinds[static_cast<unsigned char>(text[length])] == ByteKind::plain)
        ++length;
    return length;
}

/// Copies whole runs, where the library's own goes byte by byte, and checks the encoding on the way.
void appendQuoted(SinkStream& stream, std::string_view text) {
    stream.Put('"');
    std::size_t runStart = 0;
    std::size_t at = 0;
    const auto endRun = [&] { stream.append(text.substr(runStart, at - runStart)); };
    while ((at += plainLength(text.substr(at))) < text.size()) {
        if (byteKinds[static_cast<unsigned char>(text[at])] == ByteKind::escaped) {
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
    stream.Put('"');
}

using Encoding = rapidjson::UTF8<>;

struct CompactWriter : rapidjson::Writer<SinkStream, Encoding, Encoding, JsonMemory> {
    using Writer::Writer;
    void text(std::string_view value) {
        Prefix(rapidjson::kStringType);
        appendQuoted(*os_, value);
    }
};

using PrettyBase = rapidjson::PrettyWriter<SinkStream, Encoding, Encoding, JsonMemory>;

struct PrettyWriter : PrettyBase {
    explicit PrettyWriter(SinkStream& stream) : PrettyBase(stream) { SetIndent(' ', 2); }
    void text(std::string_view value) {
        PrettyPrefix(rapidjson::kStringType);
        appendQuoted(*os_, value);
    }
};

} // namespace

struct JsonWriter::State {
    State(Sink sink, Json::Style style) : stream(std::move(sink)), isPretty(style == Json::Style::pretty) {}

    template <typename Event>
    void write(Event event) {
        if (isPretty)
            event(pretty);
        else
            event(compact);
    }

    SinkStream stream;
    bool isPretty;
    CompactWriter compact{stream};
    PrettyWriter pretty{stream};
};

JsonWriter::JsonWriter(Sink sink, Json::Style style) : m_state(std::make_unique<State>(std::move(sink), style)) {}
JsonWriter::~JsonWriter() = default;

void JsonWriter::beginObject() {
    m_state->write([](auto& writer) { writer.StartObject(); });
}

void JsonWriter::endObject() {
    m_state->write([](auto& writer) { writer.EndObject(); });
}

void JsonWriter::beginArray() {
    m_state->write([](auto& writer) { writer.StartArray(); });
}

void JsonWriter::endArray() {
    m_state->write([](auto& writer) { writer.EndArray(); });
}

void JsonWriter::key(std::string_view name) {
    string(name);
}

void JsonWriter::null() {
    m_state->write([](auto& writer) { writer.Null(); });
}

void JsonWriter::boolean(bool value) {
    m_state->write([=](auto& writer) { writer.Bool(value); });
}

void JsonWriter::integer(std::int64_t value) {
    m_state->write([=](auto& writer) { writer.Int64(value); });
}

void JsonWriter::number(double value) {
    if (!std::isfinite(value))
        throw JsonError("JSON has no number for infinity and not-a-number");
    m_state->write([=](auto& writer) { writer.Double(value); });
}

void JsonWriter::string(std::string_view value) {
    m_state->write([=](auto& writer) { writer.text(value); });
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
