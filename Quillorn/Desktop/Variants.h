#pragma once

#include "Platform/UUID.h"

#include <QString>
#include <QVariant>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace quillorn {

// What the view models hold, as the toolkit's values. A record inside a row gets an overload of its own.

inline QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline QVariant toVariant(std::string_view text) {
    return toQString(text);
}
inline QVariant toVariant(const std::string& text) {
    return toQString(text);
}
inline QVariant toVariant(const char* text) {
    return toQString(text);
}
inline QVariant toVariant(const UUID& id) {
    return toQString(id.string());
}
template <typename Number>
    requires std::is_arithmetic_v<Number>
QVariant toVariant(Number number) {
    if constexpr (std::same_as<Number, bool>)
        return number;
    else if constexpr (std::floating_point<Number>)
        return static_cast<double>(number);
    else
        return static_cast<qlonglong>(number);
}
template <typename Enum>
    requires std::is_enum_v<Enum>
QVariant toVariant(Enum value) {
    return static_cast<int>(value);
}
template <typename Value>
QVariant toVariant(const std::optional<Value>& value);
template <typename Value>
QVariant toVariant(const std::vector<Value>& values);

template <typename Value>
QVariant toVariant(const std::optional<Value>& value) {
    return value ? toVariant(*value) : QVariant();
}
template <typename Value>
QVariant toVariant(const std::vector<Value>& values) {
    QVariantList list;
    list.reserve(static_cast<qsizetype>(values.size()));
    for (const Value& value : values)
        list.append(toVariant(value));
    return list;
}

/// The id that a screen hands back; nothing for none.
inline std::optional<UUID> toId(const QString& text) {
    return UUID::parse(text.toStdString());
}

template <typename Pointer>
struct MemberPointer;
template <typename Owner, typename Value>
struct MemberPointer<Value Owner::*> {
    using owner = Owner;
};
template <auto Member>
using MemberOwner = typename MemberPointer<decltype(Member)>::owner;

} // namespace quillorn
