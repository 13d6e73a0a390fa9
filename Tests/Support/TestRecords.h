#pragma once

#include "Models/ChatMessage.h"
#include "Models/Client.h"
#include "Models/Note.h"
#include "Models/Project.h"
#include "Models/ProjectDivider.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TimeEntry.h"
#include "Store/ModelContext.h"

#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace quillorn {

/// "2026-01-15T12:00:00Z" as a date; the instant at which FakeClock starts.
inline const Date testNow = parseISO8601("2026-01-15T12:00:00Z").value();

inline Date date(std::string_view text) {
    return parseISO8601(text).value();
}

/// A new record of the context, made at testNow.
template <class Type>
Type& make(ModelContext& context, typename Type::Arguments arguments = {}) {
    if constexpr (std::is_same_v<Type, TimeEntry>)
        return context.insert<Type>(std::move(arguments));
    else
        return context.insert<Type>(std::move(arguments), testNow);
}

/// A unit of work of its own, from its start to its save.
template <class Work>
void change(ModelContainer& container, const Work& work) {
    ModelContext context(container);
    work(context);
    context.save();
}

/// Whatever a record of that type is called by.
template <class Record>
std::string nameOf(const Record& record) {
    if constexpr (std::is_same_v<Record, TimeEntry>)
        return record.title().value_or("");
    else if constexpr (requires { record.name(); })
        return record.name();
    else if constexpr (requires { record.title(); })
        return record.title();
    else
        return record.content();
}

/// The names of a list's or vector's members, in their order.
template <class Records>
std::vector<std::string> namesOf(const Records& records) {
    std::vector<std::string> names;
    for (const auto* record : records)
        names.push_back(nameOf(*record));
    return names;
}

/// The record of that name, in a context where there is exactly one.
template <class Type>
Type& named(ModelContext& context, std::string_view name) {
    for (Type* record : context.fetch<Type>())
        if (nameOf(*record) == name)
            return *record;
    throw std::runtime_error("no record named " + std::string(name));
}

} // namespace quillorn
