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
#include <tuple>
#include <type_traits>
#include <utility>
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

/// What descriptions of a field say beyond its form. JSON where it says so.
struct FieldWords {
    std::string_view description{};
    /// In place of the description in requests that change a record.
    std::string_view inUpdate{};
    std::optional<std::int64_t> minimum{};
    std::optional<std::int64_t> maximum{};
    /// In characters.
    std::optional<std::int64_t> maximumLength{};
    /// A regular expression.
    std::string_view pattern{};
    /// JSON: what a new record gets where the field is absent.
    std::string_view defaultValue{};
    /// JSON: the list of the values that there are.
    std::string_view choices{};
};

/// One field of a wire record, made by wireFields.
struct WireField {
    std::string_view name;
    /// Among the fields as they were declared.
    std::size_t place;
    /// Otherwise it is left out where absent, and null reads as absent.
    bool required;
    const WireShape* shape;
    /// False, and nothing written, where the value is absent.
    bool (*write)(JsonWriter& writer, std::string_view name, const void* record);
    /// False for a value of another form.
    bool (*read)(const Json& value, void* record);
};

/// The fields of a record type, made by wireFields.
template <std::size_t Count>
struct WireFields {
    /// In the order in which they are written, that of the names.
    std::array<WireField, Count> fields;
    /// As they were declared.
    std::array<FieldWords, Count> words;
};

/// An update leaves alone what it does not name.
enum class RecordUse { whole, update };

/// A plain record as JSON: its fields stand here once, and encoding, decoding and its description follow from them.
/// Each record struct returns its own by a static recordType().
struct RecordType {
    template <std::size_t Count>
    constexpr RecordType(std::string_view schemaName, const WireFields<Count>& list, RecordUse useOfIt = {})
        : name(schemaName),
          fields(list.fields),
          words(list.words),
          use(useOfIt) {}

    /// The name of its schema.
    std::string_view name;
    /// In the order in which they are written, that of the names.
    std::span<const WireField> fields;
    /// By the places of the fields.
    std::span<const FieldWords> words;
    RecordUse use;
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

template <class Pointer>
struct MemberOf;
template <class Record, class Held>
struct MemberOf<Held Record::*> {
    using Owner = Record;
    using Value = Held;
};
template <class Record, class Held>
struct MemberOf<std::optional<Held> Record::*> {
    using Owner = Record;
    using Value = Held;
};

/// How one member of a record is reached where nothing but the address of the record is known.
template <class Record, auto Member>
struct WireAccess {
    using Value = typename MemberOf<decltype(Member)>::Value;
    using Held = std::remove_cvref_t<decltype(std::declval<Record&>().*Member)>;

    static bool write(JsonWriter& writer, std::string_view name, const void* record) {
        const Held& held = static_cast<const Record*>(record)->*Member;
        if constexpr (isOptional<Held>) {
            if (!held)
                return false;
            writer.key(name);
            WireForm<Value>::write(writer, *held);
        } else {
            writer.key(name);
            WireForm<Value>::write(writer, held);
        }
        return true;
    }
    static bool read(const Json& json, void* record) {
        Held& held = static_cast<Record*>(record)->*Member;
        if constexpr (isOptional<Held>)
            return WireForm<Value>::read(json, held.emplace());
        else
            return WireForm<Value>::read(json, held);
    }
};

/// A member as a field of that name; `Getter` is where copyFields takes its value from.
template <auto Member, auto Getter>
struct NamedField {
    std::string_view name;
    FieldWords words;
};

template <auto Member, auto Getter = nullptr>
constexpr NamedField<Member, Getter> wireField(std::string_view name, const FieldWords& words) {
    return {name, words};
}
template <auto Member, auto Getter = nullptr>
constexpr NamedField<Member, Getter> wireField(std::string_view name, std::string_view description = {}) {
    return {name, {.description = description}};
}

/// The field as one of `Record`, which has the member itself or by a struct that it shares with other records.
template <class Record, auto Member, auto Getter>
    requires std::derived_from<Record, typename MemberOf<decltype(Member)>::Owner>
constexpr WireField fieldOf(const NamedField<Member, Getter>& field) {
    using Access = WireAccess<Record, Member>;
    return {.name = field.name,
            .place = 0,
            .required = !isOptional<typename Access::Held>,
            .shape = &WireForm<typename Access::Value>::shape,
            .write = &Access::write,
            .read = &Access::read};
}

template <class... Fields>
constexpr std::tuple<Fields...> asGroup(const std::tuple<Fields...>& group) {
    return group;
}
template <auto Member, auto Getter>
constexpr std::tuple<NamedField<Member, Getter>> asGroup(const NamedField<Member, Getter>& field) {
    return {field};
}

/// The fields of a record. `parts` are fields, and groups of them in a std::tuple; those of another record do not
/// compile.
template <class Record, class... Parts>
consteval auto wireFields(const Parts&... parts) {
    return std::apply(
        [](const auto&... field) {
            WireFields<sizeof...(field)> list{{fieldOf<Record>(field)...}, {field.words...}};
            for (std::size_t i = 0; i < list.fields.size(); ++i)
                list.fields[i].place = i;
            std::ranges::sort(list.fields, {}, &WireField::name);
            return list;
        },
        std::tuple_cat(asGroup(parts)...));
}

/// Fills those fields of a group that name a getter of `object`. Enums become their raw values.
template <class Object, class Record, auto... Members, auto... Getters>
void copyFields(const std::tuple<NamedField<Members, Getters>...>&, const Object& object, Record& record) {
    const auto copy = [&]<auto Member, auto Getter>() {
        if constexpr (!std::is_same_v<decltype(Getter), std::nullptr_t>) {
            if constexpr (std::is_enum_v<std::remove_cvref_t<decltype((object.*Getter)())>>)
                record.*Member = static_cast<std::int64_t>((object.*Getter)());
            else
                record.*Member = (object.*Getter)();
        }
    };
    (copy.template operator()<Members, Getters>(), ...);
}

} // namespace quillorn
