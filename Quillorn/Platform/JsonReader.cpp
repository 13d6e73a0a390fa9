#include "Platform/Json.h"
#include "Platform/JsonEvents.h"

namespace quillorn {

namespace {

/// Builds the value of what is read.
class Builder final : public JsonEvents {
  public:
    Json takeResult() { return std::move(m_result); }

    void beginObject() override { m_open.emplace_back(Json::Object()); }
    void beginArray() override { m_open.emplace_back(Json::Array()); }
    void endObject() override { close(); }
    void endArray() override { close(); }
    void key(std::string_view name) override { m_open.back().key = name; }
    void null() override { add(Json()); }
    void boolean(bool value) override { add(value); }
    void integer(std::int64_t value) override { add(value); }
    void number(double value) override { add(value); }
    void string(std::string_view value) override { add(value); }

  private:
    struct Container {
        explicit Container(Json container) : value(std::move(container)) {}
        Json value;
        std::string key; // of the member that comes next
    };

    void add(Json value) {
        if (m_open.empty())
            m_result = std::move(value);
        else if (auto* array = m_open.back().value.asArray())
            array->push_back(std::move(value));
        else
            m_open.back().value.asObject()->insert_or_assign(std::move(m_open.back().key), std::move(value));
    }

    void close() {
        Json finished = std::move(m_open.back().value);
        m_open.pop_back();
        add(std::move(finished));
    }

    std::vector<Container> m_open;
    Json m_result;
};

} // namespace

Json Json::parse(std::string_view text, int maximumDepth) {
    Builder builder;
    readJson(text, builder, maximumDepth);
    return builder.takeResult();
}

} // namespace quillorn
