#pragma once

#include "API/APIError.h"
#include "Store/ModelContext.h"

#include <optional>
#include <vector>

namespace quillorn {

class Tag;

/// The record of that id; throws APIError::notFound with the resource's word.
template <class Type>
Type& findOrThrow(ModelContext& context, const UUID& id, const char* resource) {
    if (Type* found = context.find<Type>(id))
        return *found;
    throw APIError::notFound(resource, id);
}

/// The same for a link that a request may leave out; null then.
template <class Type>
Type* findLinked(ModelContext& context, const std::optional<UUID>& id, const char* resource) {
    return id ? &findOrThrow<Type>(context, *id, resource) : nullptr;
}

/// The tags with these ids; ids without a tag are dropped.
std::vector<Tag*> findTags(ModelContext& context, const std::vector<UUID>& ids);

} // namespace quillorn
