#include "Store/ContextRelease.h"

#include <algorithm>

namespace quillorn {

void ContextRelease::run() {
    for (auto& registry : m_context.m_registries)
        for (const auto& object : registry.objects)
            if (object->m_holds > 0)
                keepWithRelations(*object);
    for (const auto* objects : {&m_context.m_inserted, &m_context.m_changed, &m_context.m_removed})
        for (Entity* object : *objects)
            keepWithRelations(*object);
    for (const auto& change : m_context.m_links) {
        keepWithRelations(*change.owner);
        keepWithRelations(*change.other);
    }
    for (auto& registry : m_context.m_registries)
        for (const auto& object : registry.objects)
            if (object->m_isKept)
                unloadWhatGoes(*object);
    for (auto& registry : m_context.m_registries)
        dropTheRest(registry);
}

void ContextRelease::keep(Entity* object) {
    if (object != nullptr)
        object->m_isKept = true;
}

void ContextRelease::keepWithRelations(Entity& object) {
    keep(&object);
    for (const Column& column : object.m_type->columns)
        if (column.reference != nullptr)
            keep(column.reference(object).m_object);
    for (const ToMany& relation : object.m_type->relations)
        for (Entity* member : relation.list(object).m_items)
            keep(member);
}

/// What an object that stays for the sake of another has loaded itself may go.
void ContextRelease::unloadWhatGoes(Entity& object) const {
    for (const Column& column : object.m_type->columns) {
        if (column.reference == nullptr)
            continue;
        ReferenceBase& reference = column.reference(object);
        if (reference.m_object == nullptr || reference.m_object->m_isKept)
            continue;
        reference.m_key = reference.m_object->isDeleted() ? 0 : reference.m_object->m_key;
        reference.m_object = nullptr;
        reference.m_resolved = reference.m_key == 0;
    }
    for (const ToMany& relation : object.m_type->relations) {
        ListBase& list = relation.list(object);
        if (std::ranges::all_of(list.m_items, &Entity::m_isKept))
            continue;
        list.m_items.clear();
        list.m_state = ListBase::State::notLoaded;
    }
}

void ContextRelease::dropTheRest(ModelContext::Registry& registry) const {
    std::erase_if(registry.objects, [](const auto& object) { return !object->m_isKept; });
    registry.objects.shrink_to_fit();
    registry.byKey = {};
    registry.byId.clear();
    registry.indexed = 0;
    for (const auto& object : registry.objects) {
        object->m_isKept = false;
        if (object->m_key != 0)
            registry.byKey[object->m_key] = object.get();
    }
}

} // namespace quillorn
