#pragma once

#include "CLI/Definitions.h"
#include "CLI/StoreWork.h"
#include "CLI/Words.h"

#include <optional>

// The commands that every kind of record has, for the files that define them. What they call comes by value: of a
// function that is a pointer, which a lambda can keep.

namespace quillorn {

/// What was typed for a command of records.
struct RecordOptions {
    /// The records that are there, or what is made.
    std::vector<std::string> names;
    bool json = false;
    bool isConfirmed = false;
};

/// A kind of record on the command line.
template <class Rows>
struct RecordKind {
    CLI::App* parent;
    Action& action;
    /// "CLIENT"; what completions go by.
    const char* argument;
    /// "Clients: id, name, ..."
    const char* argumentWords;
    typename Chosen<Rows>::Choose choose;
};

/// A command that changes the records which it names: `change(work, options)` returns what does it to each.
template <class Options, class Rows, class MakeChange>
CLI::App* addChanging(const RecordKind<Rows>& kind, const char* name, const char* words, const char* done,
                      const std::shared_ptr<Options>& options, MakeChange makeChange) {
    CLI::App* command = addCommand(kind.parent, name, words);
    addWords(command, kind.argument, options->names, kind.argumentWords);
    addJson(command, options->json);
    runs(command, kind.action, options, [=, choose = kind.choose](const Options& given, const ProcessInfo& process) {
        Batch batch(given.names);
        return withStore(process, ModelContext::Intent::update, [&](StoreWork& work) {
            const auto change = makeChange(work, given);
            return changeEach(work, batch, Chosen<Rows>{given.names, choose, given.json}, done, change);
        });
    });
    return command;
}

/// Makes one record by `make(work, options)`.
template <class Rows, class Options, class Make>
ExitStatus makeOne(const Options& options, const ProcessInfo& process, const Make& make) {
    return withStore(process, ModelContext::Intent::update, [&](StoreWork& work) {
        auto& made = make(work, options);
        work.context.save();
        printChanged<Rows>(work, {&made}, options.json, "Added");
        return ExitStatus::success;
    });
}

/// A command that does so with a name.
template <class Rows, class Options, class Make>
CLI::App* addMaking(CLI::App* parent, Action& action, const char* argument, const char* argumentWords,
                    const char* words, const std::shared_ptr<Options>& options, Make make) {
    CLI::App* command = addCommand(parent, "add", words);
    addWords(command, argument, options->names, argumentWords);
    addJson(command, options->json);
    runs(command, action, options,
         [=](const Options& given, const ProcessInfo& process) { return makeOne<Rows>(given, process, make); });
    return command;
}

/// A command that shows the list `find(work)`, as records or as the rows that `print(objects, work)` prints.
template <class Rows, class Options, class Find, class Print>
CLI::App* addListing(CLI::App* parent, Action& action, const char* words, const std::shared_ptr<Options>& options,
                     Find find, Print print) {
    CLI::App* command = addCommand(parent, "list", words);
    addJson(command, options->json);
    runs(command, action, options, [=](const Options& given, const ProcessInfo& process) {
        return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
            const std::vector<typename Rows::Object*> objects = find(work, given);
            if (given.json)
                printJson([&](JsonWriter& writer) { writeRows(writer, Rows(work.context, objects, work.now)); });
            else
                print(objects, work);
            return ExitStatus::success;
        });
    });
    return command;
}

/// A command that shows one record.
template <class Rows, class Print>
CLI::App* addShowing(const RecordKind<Rows>& kind, const char* words, Print print) {
    auto options = std::make_shared<RecordOptions>();
    options->names.resize(1);
    CLI::App* command = addCommand(kind.parent, "show", words);
    addWord(command, kind.argument, options->names.front(), "Its id, the beginning of it, or its name");
    addJson(command, options->json);
    runs(command, kind.action, options,
         [=, choose = kind.choose](const RecordOptions& given, const ProcessInfo& process) {
             return withStore(process, ModelContext::Intent::read, [&](StoreWork& work) {
                 auto& object = choose(work.context, given.names.front(), work.text());
                 if (given.json)
                     printJson([&](JsonWriter& writer) { write(writer, recordOf<Rows>(object, work.now)); });
                 else
                     print(object, work);
                 return ExitStatus::success;
             });
         });
    return command;
}

/// A command that deletes, asked in the words of `question(objects)`.
template <class Rows, class Question, class Remove = decltype(&removeAlone)>
CLI::App* addDeleting(const RecordKind<Rows>& kind, const char* words, Question question,
                      Remove remove = &removeAlone) {
    auto options = std::make_shared<RecordOptions>();
    CLI::App* command = addCommand(kind.parent, "delete", words);
    addWords(command, kind.argument, options->names, kind.argumentWords);
    addYes(command, options->isConfirmed);
    addJson(command, options->json);
    runs(command, kind.action, options,
         [=, choose = kind.choose](const RecordOptions& given, const ProcessInfo& process) {
             return deleteEach(process, Chosen<Rows>{given.names, choose, given.json}, given.isConfirmed, question,
                               remove);
         });
    return command;
}

/// "archive" and "unarchive".
template <class Rows>
void addArchiving(const RecordKind<Rows>& kind, const char* archiveWords, const char* unarchiveWords) {
    for (const bool isArchived : {true, false})
        addChanging(kind, isArchived ? "archive" : "unarchive", isArchived ? archiveWords : unarchiveWords,
                    isArchived ? "Archived" : "Unarchived", std::make_shared<RecordOptions>(),
                    [=](StoreWork& work, const RecordOptions&) {
                        return [&work, isArchived](auto& object) -> auto& {
                            object.setArchived(isArchived);
                            object.setUpdatedAt(work.now);
                            return object;
                        };
                    });
}

} // namespace quillorn
