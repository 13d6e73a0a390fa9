#pragma once

#include "CLI/Batch.h"
#include "CLI/Confirm.h"
#include "CLI/Output.h"
#include "CLI/RecordNames.h"
#include "CLI/Session.h"
#include "Records/Rows.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/core.h>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// What a command works with on the user's store.
struct StoreWork {
    Session& session;
    ModelContext& context;
    Date now;

    const Text& text() const { return session.text(); }
    const Calendar& calendar() const { return session.calendar(); }
};

/// Opens the user's store for `work`; one that can't be opened is a failure.
ExitStatus withStore(const ProcessInfo& process, ModelContext::Intent intent,
                     const std::function<ExitStatus(StoreWork& work)>& work);

/// Throws std::runtime_error with the first of what is wrong with a request.
template <class Request>
void requireFaultless(const Request& request) {
    if (const auto faults = request.faults(); !faults.empty())
        throw std::runtime_error(faults.front());
}

/// The records as JSON, or a line for each: what was done and to what.
template <class Rows>
void printChanged(StoreWork& work, const std::vector<typename Rows::Object*>& objects, bool json,
                  std::string_view done) {
    if (json)
        return printJson([&](JsonWriter& writer) { writeRows(writer, Rows(work.context, objects, work.now)); });
    for (const auto* each : objects)
        fmt::print("{}: {}\n", done, shown(nameOf(*each)));
}

/// Which records a command is about, how it finds one, and how it says what it did.
template <class Rows>
struct Chosen {
    using Object = typename Rows::Object;
    using Choose = Object& (*)(ModelContext& context, std::string_view typed, const Text& text);

    const std::vector<std::string>& arguments;
    Choose choose;
    bool json = false;
};

/// Changes the record that each argument names, and saves once. `batch` has them already, for nobody should have to
/// wait for standard input while the store is open for writing; `change(object)` returns what was changed, mostly the
/// object, and changes nothing where it throws.
template <class Rows, class Change>
ExitStatus changeEach(StoreWork& work, Batch& batch, const Chosen<Rows>& chosen, std::string_view done,
                      const Change& change) {
    std::vector<typename Rows::Object*> changed;
    batch.run([&](const std::string& argument) {
        auto* object = &change(chosen.choose(work.context, argument, work.text()));
        if (std::ranges::find(changed, object) == changed.end())
            changed.push_back(object);
    });
    if (!changed.empty())
        work.context.save();
    printChanged<Rows>(work, changed, chosen.json, done);
    return batch.status();
}

/// Deletes the record that each argument names, asked once for all of them: `question(objects)` has the words. Nobody
/// else is kept waiting meanwhile. `remove(work, object)` does it.
template <class Rows, class Question, class Remove>
ExitStatus deleteEach(const ProcessInfo& process, const Chosen<Rows>& chosen, bool isConfirmed,
                      const Question& question, const Remove& remove) {
    Batch batch(chosen.arguments);
    return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
        std::vector<typename Rows::Object*> found;
        batch.run([&](const std::string& argument) {
            auto* object = &chosen.choose(work.context, argument, work.text());
            if (std::ranges::find(found, object) == found.end())
                found.push_back(object);
        });
        if (!found.empty()) {
            if (!agrees(question(found), isConfirmed))
                return ExitStatus::failure;
            ModelContext context(work.context.container(), ModelContext::Intent::update);
            StoreWork update{work.session, context, work.now};
            for (const auto* each : found)
                if (auto* object = context.find<typename Rows::Object>(each->id()))
                    remove(update, *object);
            context.save();
        }
        printChanged<Rows>(work, found, chosen.json, "Deleted"); // as they were, which this context still shows
        return batch.status();
    });
}

/// Nothing but the record, and what the store's rules take along.
inline void removeAlone(StoreWork& work, Entity& object) {
    work.context.remove(object);
}

/// The question for one record, or a general one for several.
template <class Object, class Ask>
Confirmation questionFor(const std::vector<Object*>& objects, std::string_view plural, const Ask& ask) {
    return objects.size() == 1 ? ask(*objects.front())
                               : Confirmation{fmt::format("Delete {} {}?", objects.size(), plural),
                                              "This permanently deletes them with all that belongs to them. This can’t "
                                              "be undone."};
}

} // namespace quillorn
