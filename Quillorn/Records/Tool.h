#pragma once

#include "Platform/Clock.h"
#include "Records/ClientDTO.h"
#include "Records/NoteDTO.h"
#include "Records/ProjectDTO.h"
#include "Records/Rows.h"
#include "Records/TagDTO.h"
#include "Records/TaskDTO.h"
#include "Records/TimeEntryDTO.h"
#include "Records/ToolParameters.h"

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace quillorn {

class Text;

/// What a tool works with while it is called.
struct ToolCall {
    ModelContext& context;
    Date now;
    const Text& text;
};

/// What the tools need of the outside world. Referred to, not owned.
struct ToolEnvironment {
    ModelContainer& container;
    const Clock& clock;
    const Text& text;
};

/// One entry of a catalogue: what a model is told of a tool, and the tool itself.
struct Tool {
    std::string name;
    std::string description;
    /// A JSON Schema of the arguments.
    Json::Object parameters;
    /// Returns the result as text. Throws ToolError or RecordNotFound for a fault of the caller's; nothing is changed
    /// then.
    std::function<std::string(const ToolEnvironment&, const Json::Object& arguments)> run;
};

/// In which form a tool returns a record: that of the REST API.
template <class Object>
struct RowsOf;
template <>
struct RowsOf<Client> : std::type_identity<ClientRows> {};
template <>
struct RowsOf<Project> : std::type_identity<ProjectRows> {};
template <>
struct RowsOf<ProjectTask> : std::type_identity<TaskRows> {};
template <>
struct RowsOf<TimeEntry> : std::type_identity<TimeEntryRows> {};
template <>
struct RowsOf<Note> : std::type_identity<NoteRows> {};
template <>
struct RowsOf<Tag> : std::type_identity<TagRows> {};

template <class Object>
std::string resultText(const ToolCall& call, Object& object) {
    const auto record = recordOf<typename RowsOf<Object>::type>(object, call.now);
    return jsonText([&](JsonWriter& writer) { write(writer, record); });
}

template <class Object>
std::string resultText(const ToolCall& call, const std::vector<Object*>& objects) {
    const typename RowsOf<Object>::type rows(call.context, objects, call.now);
    return jsonText([&](JsonWriter& writer) { writeRows(writer, rows); });
}

/// What the two below share.
template <class Arguments, class Work>
Tool makeTool(std::string name, std::string description, ToolParameters<Arguments> parameters,
              ModelContext::Intent intent, Work work) {
    Json::Object schema = parameters.schema();
    // The arguments first: a faulty call costs nobody the store.
    auto run = [parameters = std::move(parameters), intent, work](const ToolEnvironment& environment,
                                                                  const Json::Object& given) -> std::string {
        const Arguments arguments = parameters.read(given);
        ModelContext context(environment.container, intent);
        return work(ToolCall{context, environment.clock.now(), environment.text}, arguments);
    };
    return {std::move(name), std::move(description), std::move(schema), std::move(run)};
}

/// A tool that only reads: `handler(call, arguments)` returns an object or a list of them.
template <class Arguments, class Handler>
Tool readingTool(std::string name, std::string description, ToolParameters<Arguments> parameters, Handler handler) {
    return makeTool(std::move(name), std::move(description), std::move(parameters), ModelContext::Intent::read,
                    [handler](const ToolCall& call, const Arguments& arguments) {
                        return resultText(call, handler(call, arguments));
                    });
}

/// A tool that changes the store, which is saved when the handler returns: the object that it made or changed, or
/// nothing where it has deleted one.
template <class Arguments, class Handler>
Tool changingTool(std::string name, std::string description, ToolParameters<Arguments> parameters, Handler handler) {
    return makeTool(std::move(name), std::move(description), std::move(parameters), ModelContext::Intent::update,
                    [handler](const ToolCall& call, const Arguments& arguments) -> std::string {
                        if constexpr (std::is_void_v<decltype(handler(call, arguments))>) {
                            handler(call, arguments);
                            call.context.save();
                            return R"({"deleted": true})";
                        } else {
                            auto& object = handler(call, arguments);
                            call.context.save();
                            return resultText(call, object);
                        }
                    });
}

} // namespace quillorn
