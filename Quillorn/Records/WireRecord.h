#pragma once

#include "Platform/Date.h"
#include "Platform/Json.h"
#include "Platform/UUID.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

struct RecordType;

/// The JSON form of a field, in the words of JSON Schema.
struct WireShape {
    std::string_view type;
    std::string_view format{};
    /// Of an array.
    const WireShape* items = nullptr;
    /// Of an object.
    const RecordType& (*record)() = nullptr;
};

/// One field of a wire record, made by wireField<&Record::field>("field").
struct WireField {
    std::string_view name;
    /// Otherwise it is left out where absent, and null reads as absent.
    bool required;
    const WireShape* shape;
    /// False, and nothing written, where the value is absent.
    bool (*write)(JsonWriter& writer, std::string_view name, const void* record);
    /// False for a value of another form.
    bool (*read)(const Json& value, void* record);
};

/// A plain record as JSON: its fields stand here once, and encoding, decoding and its description follow from them.
/// Each record struct returns its own by a static recordType().
struct RecordType {
    /// The name of its schema.
    std::string_view name;
    /// In the order in which they are written, that of the names.
    std::span<const WireField> fields;
};

template <class Record>
concept WireRecord = requires {
    { Record::recordType() } -> std::same_as<const RecordType&>;
};

enum class AbsentField { leftOut, null };
void writeRecord(JsonWriter& writer, const RecordType& type, const void* record,
                 AbsentField absent = AbsentField::leftOut);
/// False when a required key is missing or a value has another form; the record is then half filled. Unknown keys are
/// ignored.
bool readRecord(const Json& value, const RecordType& type, void* record);

template <WireRecord Record>
void write(JsonWriter& writer, const Record& record) {
    writeRecord(writer, Record::recordType(), &record);
}

/// How one type of field stands in JSON. Specialised for the types that records use.
template <class Value>
struct WireForm;

template <>
struct WireForm<std::string> {
    static constexpr WireShape shape{.type = "string"};
    static void write(JsonWriter& writer, const std::string& value) { writer.string(value); }
    static bool read(const Json& json, std::string& value);
};

template <>
struct WireForm<bool> {
    static constexpr WireShape shape{.type = "boolean"};
    static void write(JsonWriter& writer, bool value) { writer.boolean(value); }
    static bool read(const Json& json, bool& value);
};

/// Reads every number that is whole, however it is written.
template <>
struct WireForm<std::int64_t> {
    static constexpr WireShape shape{.type = "integer"};
    static void write(JsonWriter& writer, std::int64_t value) { writer.integer(value); }
    static bool read(const Json& json, std::int64_t& value);
};

template <>
struct WireForm<double> {
    static constexpr WireShape shape{.type = "number"};
    static void write(JsonWriter& writer, double value) { writer.number(value); }
    static bool read(const Json& json, double& value);
};

template <>
struct WireForm<UUID> {
    static constexpr WireShape shape{.type = "string", .format = "uuid"};
    static void write(JsonWriter& writer, const UUID& value) {
        const auto text = value.text();
        writer.string({text.data(), text.size()});
    }
    static bool read(const Json& json, UUID& value);
};

template <>
struct WireForm<Date> {
    static constexpr WireShape shape{.type = "string", .format = "date-time"};
    static void write(JsonWriter& writer, Date value) {
        const auto text = iso8601Characters(value);
        writer.string({text.data(), text.size()});
    }
    static bool read(const Json& json, Date& value);
};

/// A value of any form.
template <>
struct WireForm<Json> {
    static constexpr WireShape shape{};
    static void write(JsonWriter& writer, const Json& value) { writer.value(value); }
    static bool read(const Json& json, Json& value) {
        value = json;
        return true;
    }
};

/// An object of any members.
template <>
struct WireForm<Json::Object> {
    static constexpr WireShape shape{.type = "object"};
    static void write(JsonWriter& writer, const Json::Object& members);
    static bool read(const Json& json, Json::Object& members);
};

template <WireRecord Record>
struct WireForm<Record> {
    static constexpr WireShape shape{.type = "object", .record = &Record::recordType};
    static void write(JsonWriter& writer, const Record& value) { quillorn::write(writer, value); }
    static bool read(const Json& json, Record& value) { return readRecord(json, Record::recordType(), &value); }
};

template <class Value>
struct WireForm<std::vector<Value>> {
    static constexpr WireShape shape{.type = "array", .items = &WireForm<Value>::shape};
    static void write(JsonWriter& writer, const std::vector<Value>& values) {
        writer.beginArray();
        for (const Value& value : values)
            WireForm<Value>::write(writer, value);
        writer.endArray();
    }
    static bool read(const Json& json, std::vector<Value>& values) {
        const Json::Array* elements = json.asArray();
        if (elements == nullptr)
            return false;
        values.resize(elements->size());
        for (std::size_t i = 0; i < values.size(); ++i)
            if (!WireForm<Value>::read((*elements)[i], values[i]))
                return false;
        return true;
    }
};

template <class Value>
inline constexpr bool isOptional = false;
template <class Value>
inline constexpr bool isOptional<std::optional<Value>> = true;

template <auto Member>
struct WireAccess;

template <class Record, class Value, Value Record::* Member>
    requires(!isOptional<Value>)
struct WireAccess<Member> {
    static bool write(JsonWriter& writer, std::string_view name, const void* record) {
        writer.key(name);
        WireForm<Value>::write(writer, static_cast<const Record*>(record)->*Member);
        return true;
    }
    static bool read(const Json& json, void* record) {
        return WireForm<Value>::read(json, static_cast<Record*>(record)->*Member);
    }
    static constexpr WireField field(std::string_view name) {
        return {name, true, &WireForm<Value>::shape, &write, &read};
    }
};

template <class Record, class Value, std::optional<Value> Record::* Member>
struct WireAccess<Member> {
    static bool write(JsonWriter& writer, std::string_view name, const void* record) {
        const std::optional<Value>& value = static_cast<const Record*>(record)->*Member;
        if (!value)
            return false;
        writer.key(name);
        WireForm<Value>::write(writer, *value);
        return true;
    }
    static bool read(const Json& json, void* record) {
        return WireForm<Value>::read(json, (static_cast<Record*>(record)->*Member).emplace());
    }
    static constexpr WireField field(std::string_view name) {
        return {name, false, &WireForm<Value>::shape, &write, &read};
    }
};

template <auto Member>
constexpr WireField wireField(std::string_view name) {
    return WireAccess<Member>::field(name);
}

/// The fields in the order in which they are written.
template <std::size_t Count>
consteval std::array<WireField, Count> wireFields(const WireField (&fields)[Count]) {
    std::array<WireField, Count> sorted{};
    std::copy(std::begin(fields), std::end(fields), sorted.begin());
    std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return sorted;
}

} // namespace quillorn
