#include "Services/NotificationService.h"

#include "Models/ProjectTask.h"
#include "Models/Settings.h"
#include "Platform/Background.h"
#include "Platform/Clock.h"
#include "Platform/SettingsStore.h"
#include "Platform/SystemLog.h"
#include "Store/MainContext.h"

#include <algorithm>
#include <exception>
#include <fmt/core.h>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace quillorn {

namespace {

constexpr const char* doneAction = "done";
constexpr const char* startAction = "start";
constexpr const char* openAction = "default";

bool touchesTasks(const ChangeSet& changes) {
    return changes.isEverything || std::ranges::any_of(changes.rows, [](const ChangeSet::Row& row) {
               return row.type == &ProjectTask::entityType() && row.change != RowChange::related;
           });
}

} // namespace

NotificationService::NotificationService(NotificationEnvironment environment, MainContext& context,
                                         Background& background)
    : m_environment(environment),
      m_context(context),
      m_background(background),
      m_actions(m_environment.notifications.observeActions(
          [this](const auto& request, const auto& action, const auto& token) { perform(request, action, token); })) {}

NotificationService::Wishes NotificationService::wishes() const {
    const Settings settings(m_environment.settings);
    return {.isEnabled = settings.boolean(setting("notificationsEnabled")),
            .time = {.hour = settings.integer(setting("notificationHour")),
                     .minute = settings.integer(setting("notificationMinute"))}};
}

void NotificationService::follow() {
    m_wishes = wishes();
    m_storeChanges = m_context.observe([this](const ChangeSet& changes) { storeDidChange(changes); });
    m_settingsChanges = m_environment.settings.observe(m_environment.mainQueue, [this] { settingsDidChange(); });
    m_authorization = m_environment.notifications.observeAuthorization([this] { refreshAll(); });
    refreshAll();
}

void NotificationService::settingsDidChange() {
    const Wishes present = wishes();
    if (std::exchange(m_wishes, present) != present)
        refreshAll();
}

void NotificationService::storeDidChange(const ChangeSet& changes) {
    if (!touchesTasks(changes))
        return;
    m_isTouched = true;
    if (m_refreshes.isIdle())
        m_refreshes.start(refresh(false));
}

void NotificationService::schedule(const ProjectTask& task, std::int64_t hour, std::int64_t minute) {
    cancel(task.id());
    if (!wishes().isEnabled || !mayNotify() || !task.dueDate() || task.isCompleted())
        return;
    const DueTask due{
        .id = task.id(), .title = task.title(), .dueDate = *task.dueDate(), .dueHasTime = task.dueHasTime()};
    if (auto request = dueNotification(due, {hour, minute}, m_environment.calendar, m_environment.clock.now()))
        add(std::move(*request));
}

void NotificationService::reschedule(const UUID& task) {
    const ProjectTask* found = m_wishes ? m_context.context().find<ProjectTask>(task) : nullptr;
    if (found == nullptr)
        return;
    const NotificationTime time = wishes().time;
    schedule(*found, time.hour, time.minute);
}

void NotificationService::cancel(const UUID& task) {
    m_environment.notifications.removePending({dueNotificationIdentifier(task)});
}

void NotificationService::refreshAll() {
    m_refreshes.cancel();
    m_refreshes.start(refresh(true));
}

Task<> NotificationService::refresh(bool isUrgent) {
    do {
        for (int pauses = 0; !isUrgent && m_isTouched && pauses < mostPauses; ++pauses) {
            m_isTouched = false;
            co_await Pause(m_environment.mainQueue, quietTime);
        }
        m_isTouched = isUrgent = false;
        co_await rebuild();
    } while (m_isTouched);
}

Task<> NotificationService::rebuild() {
    const Wishes now = wishes();
    std::vector<NotificationRequest> requests;
    if (now.isEnabled && mayNotify()) {
        try {
            // It may outlast this object.
            requests = co_await m_background.run(
                [&container = m_context.context().container(), &calendar = m_environment.calendar,
                 &clock = m_environment.clock,
                 time = now.time](const auto&) { return dueNotifications(container, time, calendar, clock.now()); });
        } catch (const std::exception& error) {
            // What is pending stays as it is.
            m_environment.log.log(fmt::format("Error scheduling notification: {}", error.what()));
            co_return;
        }
    }
    replacePending(std::move(requests));
}

void NotificationService::replacePending(std::vector<NotificationRequest> requests) {
    std::unordered_set<std::string_view> wanted;
    wanted.reserve(requests.size());
    for (const NotificationRequest& request : requests)
        wanted.insert(request.identifier);
    std::vector<std::string> superfluous = m_environment.notifications.pending();
    std::erase_if(superfluous, [&](const std::string& name) {
        return !name.starts_with(dueNotificationPrefix) || wanted.contains(name);
    });
    m_environment.notifications.removePending(superfluous);
    for (NotificationRequest& request : requests)
        add(std::move(request));
}

void NotificationService::add(NotificationRequest request) {
    request.actions = {{doneAction, "Mark Done"}, {startAction, "Start Timer"}};
    if (onOpen)
        request.actions.push_back({openAction, "Open"});
    try {
        m_environment.notifications.add(std::move(request));
    } catch (const std::exception& error) {
        m_environment.log.log(fmt::format("Error scheduling notification: {}", error.what()));
    }
}

void NotificationService::perform(const NotificationRequest& request, const std::string& action,
                                  const std::string& activationToken) {
    const auto found = request.userInfo.find("taskId");
    const auto id = found != request.userInfo.end() ? UUID::parse(found->second) : std::nullopt;
    ProjectTask* task = id ? m_context.context().find<ProjectTask>(*id) : nullptr;
    if (task == nullptr)
        return; // deleted since it was shown
    if (action == doneAction && !task->isCompleted()) {
        task->setCompleted(true, m_environment.clock.now());
        m_context.save();
    } else if (action == startAction && onStart) {
        onStart(*task);
    } else if (action == openAction && onOpen) {
        onOpen(*id, activationToken);
    }
}

} // namespace quillorn
