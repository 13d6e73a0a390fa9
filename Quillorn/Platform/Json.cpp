#include "Platform/Json.h"

#include "Platform/Text.h"

namespace quillorn {

namespace {

void requireUTF8Text(std::string_view text) {
    if (!isValidUTF8(text))
        throw JsonError("Text is not valid UTF-8");
}

void requireUTF8(const Json& value) {
    if (const auto* text = value.asString())
        requireUTF8Text(*text);
    else if (const auto* array = value.asArray())
        for (const Json& element : *array)
            requireUTF8(element);
    else if (const auto* object = value.asObject())
        for (const auto& [key, member] : *object) {
            requireUTF8Text(key);
            requireUTF8(member);
        }
}

} // namespace

// Here rather than in each file that includes the header: they instantiate a good deal.
Json::Json(const Json&) = default;
Json::Json(Json&&) noexcept = default;
Json& Json::operator=(const Json&) = default;
Json& Json::operator=(Json&&) noexcept = default;
Json::~Json() = default;

bool operator==(const Json& a, const Json& b) {
    return a.m_value == b.m_value;
}

const Json* Json::find(std::string_view key) const {
    const Object* object = asObject();
    if (object == nullptr)
        return nullptr;
    const auto found = object->find(key);
    return found == object->end() ? nullptr : &found->second;
}

std::string Json::text(Style style) const {
    requireUTF8(*this);
    return jsonText([this](JsonWriter& writer) { writer.value(*this); }, style);
}

std::string jsonText(const std::function<void(JsonWriter&)>& write, Json::Style style) {
    std::string text;
    JsonWriter writer([&](std::string_view piece) { text += piece; }, style);
    write(writer);
    writer.finish();
    return text;
}

} // namespace quillorn
