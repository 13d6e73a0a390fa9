#pragma once

#include "Platform/Date.h"
#include "Platform/Text.h"

#include <algorithm>
#include <functional>
#include <utility>
#include <vector>

namespace quillorn {

/// Sorts by a key of each object and leaves equals in their order. The keys are taken out once: comparing objects where
/// they lie takes three times as long.
template <class Object, class KeyOf, class Before = std::less<>>
void sortByKey(std::vector<Object*>& objects, const KeyOf& keyOf, Before before = {}) {
    std::vector<std::pair<decltype(keyOf(*objects.front())), Object*>> keyed;
    keyed.reserve(objects.size());
    for (Object* object : objects)
        keyed.emplace_back(keyOf(*object), object);
    std::stable_sort(keyed.begin(), keyed.end(),
                     [&](const auto& a, const auto& b) { return before(a.first, b.first); });
    std::transform(keyed.begin(), keyed.end(), objects.begin(), [](const auto& entry) { return entry.second; });
}

/// The latest first, by one of their dates.
template <class Object>
void sortLatestFirst(std::vector<Object*>& objects, Date (Object::*date)() const) {
    sortByKey(objects, [=](const Object& object) { return (object.*date)(); }, std::greater<>());
}

/// By name, as a file list of the locale would show them; equal names by id.
template <class Object>
void sortByName(std::vector<Object*>& objects, const Text& text) {
    std::sort(objects.begin(), objects.end(), [&](const Object* a, const Object* b) {
        const int order = text.compare(a->name(), b->name());
        return order != 0 ? order < 0 : a->id() < b->id();
    });
}

} // namespace quillorn
