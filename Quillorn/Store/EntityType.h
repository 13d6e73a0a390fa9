#pragma once

#include "Store/Entity.h"
#include "Store/Schema.h"
#include "Store/Statement.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <source_location>
#include <span>
#include <string>
#include <string_view>

namespace quillorn {

/// How many cases an enum that is stored by its raw value has; specialised beside each such enum. Raw values are
/// 0 to Count - 1.
template <class Enum>
struct EnumCases;

/// The case of that raw value; absent when there is none.
template <class Enum>
constexpr std::optional<Enum> enumFromRaw(std::int64_t raw) {
    if (raw < 0 || raw >= EnumCases<Enum>::count)
        return std::nullopt;
    return static_cast<Enum>(raw);
}

/// One column of an entity's table, made by column<&Type::m_field>("field"). The key and the id, which every record
/// has, stand in no such list.
struct Column {
    std::string_view name;
    StorageType storage;
    bool required;
    void (*bind)(const Entity&, Statement&, int parameter);
    void (*read)(Entity&, const Statement&, int column);
    /// The default as an SQL literal, taken from a blank object; empty for none.
    std::string (*defaultLiteral)(const Entity& blank);
    /// The rest is for to-one relations.
    const EntityType& (*target)() = nullptr;
    OnDelete onDelete = OnDelete::clear;
    ReferenceBase& (*reference)(Entity&) = nullptr;
    /// Tells the fields of a class apart; see memberName.
    std::string_view member{};
};

/// A to-many relation: the other side of a to-one column, or one side of a table of links.
struct ToMany {
    std::string_view name;
    const EntityType& (*target)();
    ListBase& (*list)(Entity&);
    /// The column of the target that refers back or, over links, the relation of the target that mirrors this one.
    std::string_view inverse;
    /// As in Column.
    std::string_view member;
    /// Over links: their table and its two columns.
    std::string_view linkTable{};
    std::string_view ownColumn{};
    std::string_view otherColumn{};

    bool overLinks() const { return !linkTable.empty(); }
};

/// All that the store knows of an entity; each entity class has one, returned by its entityType().
struct EntityType {
    std::string_view name;
    std::span<const Column> columns;
    std::span<const ToMany> relations;
    std::unique_ptr<Entity> (*make)();
    std::vector<std::vector<std::string>> indexes;
    /// "SELECT key, id, …all columns… FROM table", without a WHERE.
    std::string select;
    /// INSERT of the key, the id and all columns, in this order.
    std::string insert;

    std::size_t columnNamed(std::string_view column) const;
    std::size_t relationNamed(std::string_view relation) const;
    /// The relation of `columns[column].target` that mirrors that to-one column; null when the target has none.
    const ToMany* inverseOf(std::size_t column) const;
};

EntityType makeEntityType(std::string_view name, std::span<const Column> columns, std::span<const ToMany> relations,
                          std::unique_ptr<Entity> (*make)(), std::vector<std::vector<std::string>> indexes = {});
/// The table that holds the type's records.
TableSchema tableSchema(const EntityType& type);

std::string sqlLiteral(std::int64_t value);
std::string sqlLiteral(std::string_view value);

/// How one type of field is stored. Specialised for the types that entities use.
template <class Field>
struct FieldStorage;

template <>
struct FieldStorage<std::string> {
    static constexpr StorageType storage = StorageType::text;
    static constexpr bool required = true;
    static void bind(const std::string& value, Statement& statement, int index) { statement.bind(index, value); }
    static void read(std::string& value, const Statement& statement, int index) { value = statement.text(index); }
    static std::string literal(const std::string& value) { return sqlLiteral(std::string_view(value)); }
};

template <>
struct FieldStorage<UUID> {
    static constexpr StorageType storage = StorageType::blob;
    static constexpr bool required = true;
    static void bind(const UUID& value, Statement& statement, int index) { statement.bind(index, value); }
    static void read(UUID& value, const Statement& statement, int index) { value = statement.uuid(index); }
    static std::string literal(const UUID&) { return {}; }
};

template <>
struct FieldStorage<Date> {
    static constexpr StorageType storage = StorageType::integer;
    static constexpr bool required = true;
    static void bind(Date value, Statement& statement, int index) {
        statement.bind(index, std::int64_t{value.time_since_epoch().count()});
    }
    static void read(Date& value, const Statement& statement, int index) {
        value = Date(std::chrono::microseconds(statement.integer(index)));
    }
    static std::string literal(Date) { return {}; }
};

template <class Number>
    requires std::is_integral_v<Number>
struct FieldStorage<Number> {
    static constexpr StorageType storage = StorageType::integer;
    static constexpr bool required = true;
    static void bind(Number value, Statement& statement, int index) { statement.bind(index, std::int64_t{value}); }
    static void read(Number& value, const Statement& statement, int index) {
        value = static_cast<Number>(statement.integer(index));
    }
    static std::string literal(Number value) { return sqlLiteral(std::int64_t{value}); }
};

template <class Enum>
    requires std::is_enum_v<Enum>
struct FieldStorage<Enum> {
    static constexpr StorageType storage = StorageType::integer;
    static constexpr bool required = true;
    static void bind(Enum value, Statement& statement, int index) {
        statement.bind(index, static_cast<std::int64_t>(value));
    }
    /// A raw value without a case leaves the default.
    static void read(Enum& value, const Statement& statement, int index) {
        if (const auto known = enumFromRaw<Enum>(statement.integer(index)))
            value = *known;
    }
    static std::string literal(Enum value) { return sqlLiteral(static_cast<std::int64_t>(value)); }
};

template <class Value>
struct FieldStorage<std::optional<Value>> {
    static constexpr StorageType storage = FieldStorage<Value>::storage;
    static constexpr bool required = false;
    static void bind(const std::optional<Value>& value, Statement& statement, int index) {
        if (value)
            FieldStorage<Value>::bind(*value, statement, index);
        else
            statement.bindNull(index);
    }
    static void read(std::optional<Value>& value, const Statement& statement, int index) {
        if (statement.isNull(index))
            value.reset();
        else
            FieldStorage<Value>::read(value.emplace(), statement, index);
    }
    static std::string literal(const std::optional<Value>&) { return {}; }
};

/// Type-erased access to one field of an entity class.
template <class Class, class Field, Field Class::* Member>
struct FieldAccess {
    static Field& field(Entity& entity) { return static_cast<Class&>(entity).*Member; }
    static const Field& field(const Entity& entity) { return static_cast<const Class&>(entity).*Member; }
};

/// A text that is equal exactly for the same member. Addresses would do, but comparing them is no constant expression
/// under UndefinedBehaviorSanitizer.
template <auto Member>
consteval std::string_view memberName() {
    return std::source_location::current().function_name();
}

template <auto Member>
struct ColumnAccess;

template <class Class, class Field, Field Class::* Member>
struct ColumnAccess<Member> : FieldAccess<Class, Field, Member> {
    using Access = FieldAccess<Class, Field, Member>;

    static constexpr Column plain(std::string_view name) {
        using Storage = FieldStorage<Field>;
        return {
            .name = name,
            .storage = Storage::storage,
            .required = Storage::required,
            .bind = [](const Entity& entity, Statement& statement,
                       int index) { Storage::bind(Access::field(entity), statement, index); },
            .read = [](Entity& entity, const Statement& statement,
                       int index) { Storage::read(Access::field(entity), statement, index); },
            .defaultLiteral = [](const Entity& blank) { return Storage::literal(Access::field(blank)); },
            .member = memberName<Member>(),
        };
    }

    static constexpr Column toOne(std::string_view name, OnDelete onDelete) {
        return {
            .name = name,
            .storage = StorageType::integer,
            .required = false,
            .bind =
                [](const Entity& entity, Statement& statement, int index) {
                    const ReferenceBase& reference = Access::field(entity);
                    if (const RowKey key = Entity::keyOf(reference); key != 0)
                        statement.bind(index, key);
                    else
                        statement.bindNull(index);
                },
            .read =
                [](Entity& entity, const Statement& statement, int index) {
                    ReferenceBase& reference = Access::field(entity);
                    reference.m_object = nullptr;
                    reference.m_key = statement.integer(index);
                    reference.m_resolved = reference.m_key == 0;
                },
            .defaultLiteral = [](const Entity&) { return std::string(); },
            .target = &Field::TargetType::entityType,
            .onDelete = onDelete,
            .reference = [](Entity& entity) -> ReferenceBase& { return Access::field(entity); },
            .member = memberName<Member>(),
        };
    }
};

template <auto Member>
constexpr Column column(std::string_view name) {
    return ColumnAccess<Member>::plain(name);
}

/// `onDelete` is what happens to this record when the one it refers to is deleted.
template <auto Member>
constexpr Column toOne(std::string_view name, OnDelete onDelete) {
    return ColumnAccess<Member>::toOne(name, onDelete);
}

template <auto Member>
struct RelationAccess;

template <class Class, class Field, Field Class::* Member>
struct RelationAccess<Member> {
    static ListBase& list(Entity& entity) { return static_cast<Class&>(entity).*Member; }
    static constexpr ToMany relation(std::string_view name, std::string_view inverse) {
        return {.name = name,
                .target = &Field::TargetType::entityType,
                .list = &RelationAccess::list,
                .inverse = inverse,
                .member = memberName<Member>()};
    }
};

/// The other side of the to-one column `inverse` of the target.
template <auto Member>
constexpr ToMany toMany(std::string_view name, std::string_view inverse) {
    return RelationAccess<Member>::relation(name, inverse);
}

/// One side of a many-to-many relation; `inverse` is the target's relation over the same links.
template <auto Member>
constexpr ToMany manyToMany(std::string_view name, std::string_view inverse, std::string_view linkTable,
                            std::string_view ownColumn, std::string_view otherColumn) {
    ToMany relation = RelationAccess<Member>::relation(name, inverse);
    relation.linkTable = linkTable;
    relation.ownColumn = ownColumn;
    relation.otherColumn = otherColumn;
    return relation;
}

/// The place of a field in its type's table, found at compile time.
template <auto Member, std::size_t Count, class Entry>
consteval std::size_t placeOf(const std::array<Entry, Count>& table) {
    for (std::size_t place = 0; place < Count; ++place)
        if (table[place].member == memberName<Member>())
            return place;
    throw "the field stands in no table"; // fails the compilation
}

} // namespace quillorn
