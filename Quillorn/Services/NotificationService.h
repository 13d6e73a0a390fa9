#pragma once

#include "Platform/LocalNotifications.h"
#include "Platform/Observers.h"
#include "Platform/Task.h"
#include "Services/DueNotifications.h"
#include "Store/ChangeSet.h"

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

namespace quillorn {

class Background;
class Clock;
class MainContext;
class MainQueue;
class ProjectTask;
class SettingsStore;
class SystemLog;

/// What the service needs of the outside world. Referred to, not owned.
struct NotificationEnvironment {
    LocalNotifications& notifications;
    const Clock& clock;
    const Calendar& calendar;
    SettingsStore& settings;
    MainQueue& mainQueue;
    SystemLog& log;
};

/// Keeps a local notification for each task with a due date, in step with the store whoever writes to it. Belongs to
/// the main thread; what it reads of the whole store it reads elsewhere.
class NotificationService {
  public:
    /// How long the store is to be quiet before its changes are looked at, and how often that is waited for.
    static constexpr std::chrono::milliseconds quietTime{500};
    static constexpr int mostPauses = 10;

    /// Context and background must outlive it.
    NotificationService(NotificationEnvironment environment, MainContext& context, Background& background);

    /// What a click on the notification does; without it there is nothing to click on. The token is for the window.
    std::function<void(const UUID& task, const std::string& activationToken)> onOpen;
    /// Starts the timer on the task, and saves.
    std::function<void(ProjectTask& task)> onStart;

    NotificationAuthorization authorizationStatus() const { return m_environment.notifications.authorization(); }
    [[nodiscard]] Observation observeAuthorization(std::function<void()> handler) {
        return m_environment.notifications.observeAuthorization(std::move(handler));
    }
    void requestAuthorization() { m_environment.notifications.requestAuthorization(); }

    /// From here on notifications follow the store, the settings and the desktop.
    void follow();

    /// Makes the notification anew of what the task is like.
    void schedule(const ProjectTask& task, std::int64_t hour, std::int64_t minute);
    /// The same by the settings, for a task that is on the disk; only where notifications follow the store.
    void reschedule(const UUID& task);
    void cancel(const UUID& task);
    /// Makes all of them anew; one that is under way begins again.
    void refreshAll();

  private:
    struct Wishes {
        bool isEnabled = true;
        NotificationTime time;

        friend bool operator==(const Wishes&, const Wishes&) = default;
    };

    Wishes wishes() const;
    bool mayNotify() const { return authorizationStatus() == NotificationAuthorization::authorized; }
    void settingsDidChange();
    void storeDidChange(const ChangeSet& changes);
    /// Lets a burst of changes pass before, unless it is urgent.
    Task<> refresh(bool isUrgent);
    Task<> rebuild();
    void replacePending(std::vector<NotificationRequest> requests);
    void add(NotificationRequest request);
    void perform(const NotificationRequest& request, const std::string& action, const std::string& activationToken);

    NotificationEnvironment m_environment;
    MainContext& m_context;
    Background& m_background;
    std::optional<Wishes> m_wishes; // as followed
    bool m_isTouched = false;
    TaskScope m_refreshes;
    Observation m_actions;
    Observation m_storeChanges;
    Observation m_settingsChanges;
    Observation m_authorization;
};

} // namespace quillorn
