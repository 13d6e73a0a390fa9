#pragma once

#include <cstdint>
#include <string_view>

namespace quillorn {

/// What a JSON text holds, in its order. The texts last no longer than the call.
class JsonEvents {
  public:
    virtual void beginObject() = 0;
    virtual void endObject() = 0;
    virtual void beginArray() = 0;
    virtual void endArray() = 0;
    virtual void key(std::string_view name) = 0;
    virtual void null() = 0;
    virtual void boolean(bool value) = 0;
    /// A whole number that fits 64 bits.
    virtual void integer(std::int64_t value) = 0;
    /// Any other number.
    virtual void number(double value) = 0;
    virtual void string(std::string_view value) = 0;

  protected:
    ~JsonEvents() = default;
};

/// Reads what Json::parse reads, with the same faults, and keeps nothing of it: for those who need little of a text. A
/// fault comes behind the events of what stands before it.
void readJson(std::string_view text, JsonEvents& events, int maximumDepth = 512);

} // namespace quillorn
