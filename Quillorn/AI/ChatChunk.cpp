#include "AI/ChatChunk.h"

#include "Platform/JsonEvents.h"

#include <utility>

namespace quillorn {

namespace {

/// What an object or array is in a chunk.
enum class Place { elsewhere, chunk, choices, choice, delta, calls, call, function };

enum class Member { unknown, choices, finishReason, delta, content, toolCalls, index, id, function, name, arguments };

struct MemberName {
    Place owner;
    std::string_view name;
    Member member;
};
constexpr MemberName memberNames[] = {{Place::chunk, "choices", Member::choices},
                                      {Place::choice, "finish_reason", Member::finishReason},
                                      {Place::choice, "delta", Member::delta},
                                      {Place::delta, "content", Member::content},
                                      {Place::delta, "tool_calls", Member::toolCalls},
                                      {Place::call, "index", Member::index},
                                      {Place::call, "id", Member::id},
                                      {Place::call, "function", Member::function},
                                      {Place::function, "name", Member::name},
                                      {Place::function, "arguments", Member::arguments}};

Member memberOf(Place owner, std::string_view name) {
    for (const MemberName& each : memberNames)
        if (each.owner == owner && each.name == name)
            return each.member;
    return Member::unknown;
}

/// Follows the events of a chunk. Of a repeated member the last one counts.
class ChunkReader final : public JsonEvents {
  public:
    ChunkReader() { m_open.reserve(8); }
    ChatChunk takeChunk() { return std::move(m_chunk); }

    void beginObject() override { open(objectHere()); }
    void beginArray() override {
        if (m_member == Member::choices)
            return open(Place::choices);
        if (m_member == Member::toolCalls)
            return open(Place::calls);
        takeOther();
        open(Place::elsewhere);
    }
    void endObject() override { m_open.pop_back(); }
    void endArray() override {
        const Container ended = m_open.back();
        m_open.pop_back();
        if (ended.hasOthers)
            forget(ended.place == Place::choices ? Member::choices : Member::toolCalls);
    }
    void key(std::string_view name) override {
        m_member = memberOf(m_open.back().place, name);
        forget(m_member);
    }
    void null() override { takeOther(); }
    void boolean(bool) override { takeOther(); }
    void number(double) override { takeOther(); }
    void integer(std::int64_t value) override {
        if (std::exchange(m_member, Member::unknown) == Member::index)
            m_chunk.calls.back().index = value;
        else
            takeOther();
    }
    void string(std::string_view value) override {
        if (std::optional<std::string>* text = textOf(std::exchange(m_member, Member::unknown)))
            text->emplace(value);
        else
            takeOther();
    }

  private:
    struct Container {
        Place place;
        bool hasElements = false;
        bool hasOthers = false; // than objects, in an array of objects
    };

    void open(Place place) {
        m_open.push_back({place});
        m_member = Member::unknown;
    }

    Place objectHere() {
        if (m_open.empty())
            return Place::chunk;
        if (m_member == Member::delta)
            return Place::delta;
        if (m_member == Member::function)
            return Place::function;
        Container& container = m_open.back();
        if (container.place == Place::choices)
            return std::exchange(container.hasElements, true) ? Place::elsewhere : Place::choice;
        if (container.place != Place::calls)
            return Place::elsewhere;
        m_chunk.calls.emplace_back();
        return Place::call;
    }

    /// A value that stands where we expect none of its kind.
    void takeOther() {
        m_member = Member::unknown;
        if (!m_open.empty() && (m_open.back().place == Place::choices || m_open.back().place == Place::calls))
            m_open.back().hasOthers = true;
    }

    std::optional<std::string>* textOf(Member member) {
        switch (member) {
        case Member::finishReason:
            return &m_chunk.finishReason;
        case Member::content:
            return &m_chunk.text;
        case Member::id:
            return &m_chunk.calls.back().id;
        case Member::name:
            return &m_chunk.calls.back().name;
        case Member::arguments:
            return &m_chunk.calls.back().argumentsChunk;
        default:
            return nullptr;
        }
    }

    /// What an earlier member of that name has said.
    void forget(Member member) {
        if (std::optional<std::string>* text = textOf(member))
            return text->reset();
        switch (member) {
        case Member::choices:
            m_chunk = {};
            break;
        case Member::delta:
            m_chunk.text.reset();
            [[fallthrough]];
        case Member::toolCalls:
            m_chunk.calls.clear();
            break;
        case Member::index:
            m_chunk.calls.back().index = 0;
            break;
        case Member::function:
            m_chunk.calls.back().name.reset();
            m_chunk.calls.back().argumentsChunk.reset();
            break;
        default:
            break;
        }
    }

    std::vector<Container> m_open;
    Member m_member = Member::unknown; // whose value comes next
    ChatChunk m_chunk;
};

} // namespace

ChatChunk ChatChunk::parse(std::string_view json) {
    ChunkReader reader;
    readJson(json, reader);
    return reader.takeChunk();
}

} // namespace quillorn
