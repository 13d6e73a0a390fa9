#include "AI/AIService.h"
#include "CLI/SentenceReading.h"
#include "CLI/StoreWork.h"
#include "CLI/TaskCells.h"
#include "CLI/TaskCommands.h"
#include "CLI/Words.h"
#include "Models/Project.h"
#include "Models/Tag.h"
#include "Models/TaskSentence.h"
#include "Records/Edits.h"
#include "Records/RecordChoice.h"
#include "Records/SentenceRequest.h"
#include "Records/TaskRecord.h"

#include <fmt/ranges.h>

namespace quillorn {

namespace {

/// What the sentence says, before the options have their say.
ParsedTaskResult understood(const AddOptions& options, Session& session) {
    const std::string sentence = joined(options.words);
    if (options.isPlain) {
        ParsedTaskResult result;
        result.title = sentence;
        return result;
    }
    const TaskNames names = TaskNames::of(session.app().mainContext(), session.text());
    if (!options.asksModel)
        return readTaskSentence(sentence, names, session.clock().now(), session.calendar(), session.text());
    if (!AIService::isConfigured(session.settings()))
        throw std::runtime_error("--ai needs an AI server: set aiEndpoint and aiModel");
    return readByModel(session, sentence, names);
}

CreateTaskRequest requestOf(const AddOptions& options, const ParsedTaskResult& sentence, StoreWork& work) {
    CreateTaskRequest request = quillorn::requestOf(sentence, work.context, work.session.settings());
    if (options.description)
        request.description = options.description;
    if (options.priority)
        request.priority = static_cast<std::int64_t>(requirePriority(*options.priority));
    if (options.project)
        request.projectId = chooseProject(work.context, *options.project, work.text()).id();
    for (const std::string& typed : options.tags)
        request.tagIds->push_back(chooseTag(work.context, typed, work.text()).id());
    requireFaultless(request);
    return request;
}

void say(const ProjectTask& task, StoreWork& work) {
    std::string line = "Added: " + task.title();
    if (task.dueDate())
        line += "  due " + dueText(task, work.now, work.calendar());
    line += "  " + std::string(label(task.priority()));
    if (const Project* project = task.project())
        line += "  @" + project->name();
    for (const Tag* tag : task.tags())
        line += "  #" + tag->name();
    fmt::print("{}  {}\n", shown(line), shortId(task.id()));
}

} // namespace

ExitStatus addTask(const AddOptions& options, const ProcessInfo& process) {
    Session session(process);
    if (session.hasFailed())
        return ExitStatus::failure;
    const ParsedTaskResult sentence = understood(options, session); // may take long, so before others have to wait
    ModelContext context(session.app().container(), ModelContext::Intent::update);
    StoreWork work{session, context, session.clock().now()};
    ProjectTask* parent = options.parent ? &chooseTask(context, *options.parent, session.text()) : nullptr;
    CreateTaskRequest request = requestOf(options, sentence, work);
    bool hasTime = sentence.dueHasTime;
    if (options.due) {
        const When due = requireWhen(*options.due, work.now, work.calendar());
        request.dueDate = due.nextDate(work.now, work.calendar());
        hasTime = due.hasTime();
    }
    ProjectTask& task = createTaskUnder(context, parent, request, work.now);
    task.setDueHasTime(hasTime);
    context.save();
    if (options.json)
        printChanged<TaskRecordRows>(work, {&task}, true, "");
    else
        say(task, work);
    return ExitStatus::success;
}

} // namespace quillorn
