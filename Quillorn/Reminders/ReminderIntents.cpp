#include "Reminders/ReminderIntents.h"

#include "Models/Project.h"
#include "Models/ProjectTask.h"
#include "Models/Tag.h"
#include "Models/TaskDefaults.h"
#include "Platform/Background.h"
#include "Platform/Calendar.h"
#include "Platform/Clock.h"
#include "Platform/Text.h"
#include "Reminders/SiriProjectRouter.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <fmt/core.h>
#include <iterator>

namespace quillorn {

using namespace SiriReminderRules;
using Environment = ReminderIntentsEnvironment;

namespace {

std::string missingTagsSentence(const std::vector<std::string>& names) {
    if (names.empty())
        return {};
    std::vector<std::string> quoted;
    std::transform(names.begin(), names.end(), std::back_inserter(quoted),
                   [](const std::string& name) { return fmt::format("“{}”", name); });
    return fmt::format(" There's no Quillorn tag named {}.", spokenList(quoted));
}

bool isFlagged(TaskPriority priority) {
    return priority >= TaskPriority::high;
}

/// The intents' part in the store.
class Work {
  public:
    Work(const ReminderIntentsEnvironment& environment, ModelContext& context)
        : m_environment(environment),
          m_context(context),
          m_now(environment.clock.now()) {}

    SpokenResult insert(const CreateReminderParameters& parameters, const std::optional<UUID>& list) const {
        const auto due = resolved(parameters.dueDate);
        ProjectTask::Arguments arguments{
            .title = parameters.title,
            .taskDescription = composeNote(parameters.note.value_or(""), parameters.urls),
            .dueDate = due ? std::optional(due->date) : std::nullopt,
            .priority =
                parameters.isFlagged.value_or(false) ? TaskPriority::high : usualPriority(m_environment.settings),
            .project = list ? projectOf(*list) : nullptr,
        };
        const TagMatch tags = matchedTags(parameters.tags);
        auto& task = m_context.insert<ProjectTask>(std::move(arguments), m_now);
        task.setDueHasTime(due && due->hasTime);
        task.setTags(tags.matched);
        m_context.save();
        return {sentence(parameters, task) + missingTagsSentence(tags.missing), task.id()};
    }

    struct Updated {
        SpokenResult result;
        bool isCompleted = false;
    };
    Updated update(const UpdateReminderParameters& parameters) const {
        auto* task = m_context.find<ProjectTask>(parameters.target);
        if (!task)
            throw QuillornIntentError(QuillornIntentError::Kind::taskNotFound);
        TagMatch tags;
        if (parameters.tags) {
            tags = matchedTags(*parameters.tags);
            task->setTags(tags.matched);
        }
        apply(parameters, *task);
        m_context.save();
        return {{sentence(parameters, *task) + missingTagsSentence(tags.missing), task->id()}, task->isCompleted()};
    }

  private:
    void apply(const UpdateReminderParameters& parameters, ProjectTask& task) const {
        if (parameters.title)
            if (std::string title(trimWhitespaceAndNewlines(*parameters.title)); !title.empty())
                task.setTitle(std::move(title));
        if (parameters.note || parameters.urls)
            task.setTaskDescription(
                composeNote(parameters.note.value_or(""), parameters.urls.value_or(std::vector<std::string>())));
        if (parameters.dueDate) {
            const auto due = resolved(parameters.dueDate);
            task.setDueDate(due ? std::optional(due->date) : std::nullopt);
            task.setDueHasTime(due && due->hasTime);
        }
        if (parameters.isFlagged && *parameters.isFlagged != isFlagged(task.priority()))
            task.setPriority(*parameters.isFlagged ? TaskPriority::high : usualPriority(m_environment.settings));
        if (parameters.isCompleted && *parameters.isCompleted != task.isCompleted())
            task.setCompleted(*parameters.isCompleted, m_now);
        if (parameters.list)
            task.setProject(projectOf(*parameters.list));
        task.setUpdatedAt(m_now);
    }

    /// The Inbox, and what is gone, are no project.
    Project* projectOf(const UUID& list) const {
        return list == QuillornReminderList::inboxID() ? nullptr : m_context.find<Project>(list);
    }

    TagMatch matchedTags(const std::vector<std::string>& names) const {
        const std::vector<Tag*> all = m_context.fetch<Tag>();
        return matchTags(names, all, m_environment.text);
    }

    std::optional<ResolvedDate> resolved(const std::optional<DateComponents>& components) const {
        return components ? resolve(*components, m_environment.calendar, m_now) : std::nullopt;
    }

    std::string sentence(const CreateReminderParameters& parameters, const ProjectTask& task) const {
        const Calendar& calendar = m_environment.calendar;
        std::string words =
            fmt::format("Added “{}” to {}", task.title(),
                        task.project() ? fmt::format("{} in Quillorn", projectPath(*task.project())) : "Quillorn");
        if (task.dueDate())
            words += ", due " + (task.dueHasTime() ? calendar.abbreviatedDateAndTime(*task.dueDate())
                                                   : calendar.abbreviatedDate(*task.dueDate()));
        words += '.';
        if (task.dueHasTime())
            words += " Turn on notifications in Quillorn to get an alert.";
        std::vector<std::string> unsupported;
        if (parameters.recurrence)
            unsupported.emplace_back("repeat schedules");
        if (parameters.locationTrigger)
            unsupported.emplace_back("location alerts");
        if (parameters.images > 0)
            unsupported.emplace_back("images");
        if (!unsupported.empty())
            words += fmt::format(" Quillorn doesn't keep {}, so I left that off.", spokenList(unsupported));
        return words;
    }

    static std::string sentence(const UpdateReminderParameters& parameters, const ProjectTask& task) {
        std::string words;
        if (parameters.isCompleted)
            words = fmt::format("Marked “{}” as {} in Quillorn.", task.title(),
                                *parameters.isCompleted ? "done" : "not done");
        else if (parameters.list)
            words = fmt::format("Moved “{}” to {} in Quillorn.", task.title(),
                                task.project() ? projectPath(*task.project()) : "Inbox");
        else
            words = fmt::format("Updated “{}” in Quillorn.", task.title());
        if (parameters.recurrence || parameters.locationTrigger)
            words += " Quillorn doesn't keep repeat schedules or location alerts, so I left that off.";
        return words;
    }

    const ReminderIntentsEnvironment& m_environment;
    ModelContext& m_context;
    const Date m_now;
};

void sortOpenFirst(std::vector<QuillornReminder>& reminders) {
    std::stable_partition(reminders.begin(), reminders.end(), [](const auto& each) { return !each.isCompleted; });
}

} // namespace

/// Runs `work`, a function of environment and context, elsewhere.
template <typename Function>
auto ReminderIntents::inStore(Function work) const {
    if (!m_environment->container)
        throw QuillornIntentError(QuillornIntentError::Kind::storeUnavailable);
    return m_environment->background.run([environment = m_environment, work = std::move(work)](const std::stop_token&) {
        ModelContext context(*environment->container);
        return work(*environment, context);
    });
}

Task<SpokenResult> ReminderIntents::create(CreateReminderParameters parameters) {
    if (!m_environment->container)
        throw QuillornIntentError(QuillornIntentError::Kind::storeUnavailable);
    parameters.title = trimWhitespaceAndNewlines(parameters.title);
    if (parameters.title.empty())
        throw QuillornIntentError(QuillornIntentError::Kind::titleMissing);
    std::optional<UUID> list = parameters.list;
    if (!list) {
        auto candidatesOf = [](const Environment&, ModelContext& context) {
            return candidates(activeProjects(context));
        };
        std::vector<Candidate> known = co_await inStore(std::move(candidatesOf));
        std::string note = parameters.note.value_or("");
        list = co_await m_environment->router.route(parameters.title, std::move(note), std::move(known));
    }
    auto work = [parameters = std::move(parameters), list](const Environment& environment, ModelContext& context) {
        return Work(environment, context).insert(parameters, list);
    };
    SpokenResult result = co_await inStore(std::move(work));
    m_environment->refreshNotification(result.taskId);
    co_return result;
}

Task<SpokenResult> ReminderIntents::update(UpdateReminderParameters parameters) {
    const std::string notification = "quillorn.task-due." + parameters.target.string();
    auto work = [parameters = std::move(parameters)](const Environment& environment, ModelContext& context) {
        return Work(environment, context).update(parameters);
    };
    Work::Updated updated = co_await inStore(std::move(work));
    if (updated.isCompleted)
        m_environment->removeNotification(notification);
    co_return std::move(updated.result);
}

Task<ReminderIntents::Lists> ReminderIntents::suggestedLists() {
    return inStore([](const Environment&, ModelContext& context) {
        Lists lists{QuillornReminderList::inbox()};
        for (const Project* project : activeProjects(context))
            lists.push_back(QuillornReminderList::of(project));
        return lists;
    });
}

Task<ReminderIntents::Lists> ReminderIntents::lists(std::string text) {
    Lists all = co_await suggestedLists();
    std::erase_if(all, [&](const QuillornReminderList& each) {
        return !m_environment->text.containsFolded(each.clientName.value_or("") + " " + each.name, text) &&
               !m_environment->text.containsFolded(each.name, text);
    });
    co_return all;
}

Task<ReminderIntents::Lists> ReminderIntents::lists(std::vector<UUID> ids) {
    return inStore([ids = std::move(ids)](const Environment&, ModelContext& context) {
        Lists found;
        for (const UUID& id : ids)
            if (id == QuillornReminderList::inboxID())
                found.push_back(QuillornReminderList::inbox());
            else if (const Project* project = context.find<Project>(id))
                found.push_back(QuillornReminderList::of(project));
        return found;
    });
}

Task<ReminderIntents::Reminders> ReminderIntents::reminders(std::string text) {
    return inStore([text = std::move(text)](const Environment& environment, ModelContext& context) {
        Reminders found;
        for (const ProjectTask* task : context.fetch<ProjectTask>())
            if (!task->isHidden() && (text.empty() || environment.text.containsFolded(task->title(), text)))
                found.push_back(QuillornReminder::of(*task, environment.calendar));
        sortOpenFirst(found);
        return found;
    });
}

Task<ReminderIntents::Reminders> ReminderIntents::reminders(std::vector<UUID> ids) {
    return inStore([ids = std::move(ids)](const Environment& environment, ModelContext& context) {
        Reminders found;
        for (const UUID& id : ids)
            if (const ProjectTask* task = context.find<ProjectTask>(id))
                found.push_back(QuillornReminder::of(*task, environment.calendar));
        sortOpenFirst(found);
        return found;
    });
}

} // namespace quillorn
