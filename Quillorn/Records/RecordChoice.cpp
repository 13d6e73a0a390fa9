#include "Records/RecordChoice.h"

#include "Models/Client.h"
#include "Models/Project.h"
#include "Models/ProjectTask.h"
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

const std::string& nameOf(const Client& client) {
    return client.name();
}
const std::string& nameOf(const Project& project) {
    return project.name();
}
const std::string& nameOf(const ProjectTask& task) {
    return task.title();
}

bool isSetAside(const Client& client) {
    return client.isArchived();
}
bool isSetAside(const Project& project) {
    return project.isArchived();
}
bool isSetAside(const ProjectTask& task) {
    return task.isCompleted();
}

template <class Object>
Object& choose(ModelContext& context, std::string_view typed, const Text& text, const char* word) {
    if (const auto id = UUID::parse(typed))
        if (auto* object = context.find<Object>(*id))
            return *object;
    std::vector<Object*> all = context.fetch<Object>();
    std::ranges::sort(all, [&](const Object* a, const Object* b) { return text.compare(nameOf(*a), nameOf(*b)) < 0; });
    const Text::Needle part = text.needle(typed);
    using Fits = std::function<bool(const Object&)>;
    const std::array<Fits, 4> ways = {
        [&](const Object& each) { return nameOf(each) == typed; },
        [&](const Object& each) { return text.compareIgnoringCase(nameOf(each), typed) == 0; },
        [&](const Object& each) { return beginsId(each.id(), typed); },
        [&](const Object& each) { return part.isIn(nameOf(each)); },
    };
    for (const Fits& fits : ways)
        for (const bool setAside : {false, true}) {
            std::vector<Object*> found;
            std::ranges::copy_if(all, std::back_inserter(found),
                                 [&](const Object* each) { return isSetAside(*each) == setAside && fits(*each); });
            if (found.size() == 1)
                return *found.front();
            if (found.empty())
                continue;
            std::string list = fmt::format("several {}s fit \"{}\":", word, typed);
            for (const Object* each : found)
                list += fmt::format("\n  {}  {}", each->id().string(), nameOf(*each));
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

ProjectTask& chooseTask(ModelContext& context, std::string_view typed, const Text& text) {
    return choose<ProjectTask>(context, typed, text, "task");
}

} // namespace quillorn
