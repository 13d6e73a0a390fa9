#pragma once

#include "Records/WireRecord.h"
#include "Store/ModelContext.h"

#include <optional>
#include <vector>

// Saved objects become records by way of a class of "rows", one for each kind of record:
//
//     class Rows {
//         using Object = …; using Record = …;
//         Rows(ModelContext& context, std::vector<Object*> objects, Date now);
//         std::size_t size() const;
//         void fill(std::size_t index, Record& record) const;
//     };
//
// Its constructor loads all that the records show, in a constant number of statements; fill() reads nothing any more.

namespace quillorn {

template <class Rows>
typename Rows::Record recordOf(typename Rows::Object& object, Date now) {
    typename Rows::Record record;
    Rows(object.context(), {&object}, now).fill(0, record);
    return record;
}

template <class Rows>
void writeRows(JsonWriter& writer, const Rows& rows) {
    writer.beginArray();
    typename Rows::Record record; // one for all: its texts keep their memory
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows.fill(i, record);
        write(writer, record);
    }
    writer.endArray();
}

/// The id of what a to-one relation leads to.
template <class Object>
std::optional<UUID> idOf(const Object* object) {
    return object != nullptr ? std::optional(object->id()) : std::nullopt;
}

} // namespace quillorn
