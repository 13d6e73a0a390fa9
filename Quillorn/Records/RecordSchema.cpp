#include "Records/RecordSchema.h"

#include "Records/WireRecord.h"

#include <algorithm>

namespace quillorn {

namespace {

void writeText(JsonWriter& writer, std::string_view key, std::string_view text) {
    if (text.empty())
        return;
    writer.key(key);
    writer.string(text);
}

void writeNumber(JsonWriter& writer, std::string_view key, std::optional<std::int64_t> number) {
    if (!number)
        return;
    writer.key(key);
    writer.integer(*number);
}

void writeJson(JsonWriter& writer, std::string_view key, std::string_view json) {
    if (json.empty())
        return;
    writer.key(key);
    writer.value(Json::parse(json));
}

void writeType(JsonWriter& writer, std::string_view type, bool mayBeNull) {
    if (!mayBeNull)
        return writeText(writer, "type", type);
    writer.key("type");
    writer.value(Json::Array{type, "null"});
}

void writeProperty(JsonWriter& writer, const WireShape& shape, const FieldWords& words, RecordUse use, bool mayBeNull) {
    const bool isUpdate = use == RecordUse::update;
    writer.beginObject();
    if (shape.record != nullptr)
        writeText(writer, "$ref", "#/components/schemas/" + std::string(shape.record().name));
    else
        writeType(writer, shape.type, mayBeNull);
    if (shape.items != nullptr) {
        writer.key("items");
        writeProperty(writer, *shape.items, {}, use, false);
    }
    writeText(writer, "description", isUpdate && !words.inUpdate.empty() ? words.inUpdate : words.description);
    writeJson(writer, "enum", words.choices);
    writeText(writer, "format", shape.format);
    writeNumber(writer, "minimum", words.minimum);
    writeNumber(writer, "maximum", words.maximum);
    writeNumber(writer, "maxLength", words.maximumLength);
    writeText(writer, "pattern", words.pattern);
    if (!isUpdate)
        writeJson(writer, "default", words.defaultValue);
    writer.endObject();
}

} // namespace

void writeSchema(JsonWriter& writer, const RecordType& type) {
    // Null in a request is the same as leaving out; no answer has it.
    const bool isRequest = type.name.ends_with("Request");
    std::vector<const WireField*> fields;
    for (const WireField& field : type.fields)
        fields.push_back(&field);
    std::ranges::sort(fields, {}, &WireField::place);

    writer.beginObject();
    writer.key("properties");
    writer.beginObject();
    for (const WireField* field : fields) {
        writer.key(field->name);
        writeProperty(writer, *field->shape, type.words[field->place], type.use, isRequest && !field->required);
    }
    writer.endObject();
    if (std::ranges::any_of(fields, &WireField::required)) {
        writer.key("required");
        writer.beginArray();
        for (const WireField* field : fields)
            if (field->required)
                writer.string(field->name);
        writer.endArray();
    }
    writer.endObject();
}

} // namespace quillorn
