#include "Records/WireRecord.h"

#include <cmath>

namespace quillorn {

namespace {

/// What `parse` makes of a text; false for other values and where it makes nothing.
template <class Value>
bool readText(const Json& json, Value& value, std::optional<Value> (*parse)(std::string_view)) {
    const std::string* text = json.asString();
    const auto parsed = text == nullptr ? std::nullopt : parse(*text);
    if (parsed)
        value = *parsed;
    return parsed.has_value();
}

} // namespace

void writeRecord(JsonWriter& writer, const RecordType& type, const void* record, AbsentField absent) {
    writer.beginObject();
    for (const WireField& field : type.fields)
        if (!field.write(writer, field.name, record) && absent == AbsentField::null) {
            writer.key(field.name);
            writer.null();
        }
    writer.endObject();
}

bool readRecord(const Json& value, const RecordType& type, void* record) {
    if (value.asObject() == nullptr)
        return false;
    return std::ranges::all_of(type.fields, [&](const WireField& field) {
        const Json* member = value.find(field.name);
        const bool isAbsent = member == nullptr || member->isNull();
        return isAbsent ? !field.required : field.read(*member, record);
    });
}

bool WireForm<std::string>::read(const Json& json, std::string& value) {
    const std::string* text = json.asString();
    if (text != nullptr)
        value = *text;
    return text != nullptr;
}

bool WireForm<bool>::read(const Json& json, bool& value) {
    const bool* flag = json.asBool();
    if (flag != nullptr)
        value = *flag;
    return flag != nullptr;
}

bool WireForm<std::int64_t>::read(const Json& json, std::int64_t& value) {
    if (const std::int64_t* whole = json.asInteger()) {
        value = *whole;
        return true;
    }
    constexpr double limit = 9223372036854775808.0; // 2^63
    const double* real = json.asDouble();
    if (real == nullptr || std::trunc(*real) != *real || *real < -limit || *real >= limit)
        return false;
    value = static_cast<std::int64_t>(*real);
    return true;
}

bool WireForm<double>::read(const Json& json, double& value) {
    if (const double* real = json.asDouble())
        value = *real;
    else if (const std::int64_t* whole = json.asInteger())
        value = static_cast<double>(*whole);
    else
        return false;
    return true;
}

void WireForm<Json::Object>::write(JsonWriter& writer, const Json::Object& members) {
    writer.beginObject();
    for (const auto& [name, value] : members) {
        writer.key(name);
        writer.value(value);
    }
    writer.endObject();
}

bool WireForm<Json::Object>::read(const Json& json, Json::Object& members) {
    const Json::Object* object = json.asObject();
    if (object != nullptr)
        members = *object;
    return object != nullptr;
}

bool WireForm<UUID>::read(const Json& json, UUID& value) {
    return readText(json, value, &UUID::parse);
}

bool WireForm<Date>::read(const Json& json, Date& value) {
    return readText(json, value, &parseISO8601);
}

} // namespace quillorn
