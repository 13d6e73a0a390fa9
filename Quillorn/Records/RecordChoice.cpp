#include "Records/RecordChoice.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/Sorting.h"
#include "Platform/Text.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <array>
#include <fmt/core.h>
#include <functional>

namespace quillorn {

namespace {

constexpr std::size_t leastOfAnId = 4;

bool beginsId(const UUID& id, std::string_view typed) {
    const std::string text = id.string();
    const auto same = [](char a, char b) {
        return a == (b >= 'a' && b <= 'f' ? static_cast<char>(b - ('a' - 'A')) : b);
    };
    return typed.size() >= leastOfAnId && typed.size() <= text.size() &&
           std::ranges::equal(std::string_view(text).substr(0, typed.size()), typed, same);
}

template <class Object>
Object& choose(ModelContext& context, std::string_view typed, const Text& text, const char* word) {
    std::vector<Object*> all = context.fetch<Object>();
    sortByName(all, text);
    const Text::Needle part = text.needle(typed);
    using Fits = std::function<bool(const Object&)>;
    const std::array<Fits, 5> ways = {
        [&](const Object& each) { return UUID::parse(typed) == each.id(); },
        [&](const Object& each) { return each.name() == typed; },
        [&](const Object& each) { return text.compareIgnoringCase(each.name(), typed) == 0; },
        [&](const Object& each) { return beginsId(each.id(), typed); },
        [&](const Object& each) { return part.isIn(each.name()); },
    };
    for (const Fits& fits : ways)
        for (const bool isArchived : {false, true}) {
            std::vector<Object*> found;
            std::ranges::copy_if(all, std::back_inserter(found),
                                 [&](const Object* each) { return each->isArchived() == isArchived && fits(*each); });
            if (found.size() == 1)
                return *found.front();
            if (found.empty())
                continue;
            std::string list = fmt::format("several {}s fit \"{}\":", word, typed);
            for (const Object* each : found)
                list += fmt::format("\n  {}  {}", each->id().string(), each->name());
            throw RecordChoiceError(list);
        }
    throw RecordChoiceError(fmt::format("there is no {} \"{}\"", word, typed));
}

} // namespace

Project& chooseProject(ModelContext& context, std::string_view typed, const Text& text) {
    return choose<Project>(context, typed, text, "project");
}

Client& chooseClient(ModelContext& context, std::string_view typed, const Text& text) {
    return choose<Client>(context, typed, text, "client");
}

} // namespace quillorn
