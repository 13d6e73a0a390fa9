#pragma once

#include "Platform/Bus.h"
#include "Platform/LocalNotifications.h"
#include "Platform/PendingNotifications.h"
#include "Platform/Task.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace quillorn {

/// Calls for the notification service of a desktop.
BusCall notificationServiceCall(std::string member, BusMessage arguments = {});

/// Why the desktop can't show notifications, in words for the user; empty where it can. Starts nobody.
Task<std::string> whyNotShown(Bus& sessionBus);

/// Shown by the desktop's service, org.freedesktop.Notifications, which may come and go. Authorised while somebody
/// answers to that name, or the bus can start somebody who does. All that is given must outlive it.
class DesktopNotifications final : public LocalNotifications {
  public:
    /// `mayShow` is asked at each request's moment; where it says no somebody else shows it.
    DesktopNotifications(
        Bus& sessionBus, const Clock& clock, MainQueue& queue, WakeSignals& wakeSignals, SystemLog& log,
        std::function<bool()> mayShow = [] { return true; });

    NotificationAuthorization authorization() const override { return m_authorization; }
    Observation observeAuthorization(std::function<void()> handler) override {
        return m_authorizationObservers.add(std::move(handler));
    }
    void requestAuthorization() override;
    void add(NotificationRequest request) override { m_pending.add(std::move(request)); }
    std::vector<std::string> pending() override { return m_pending.identifiers(); }
    void removePending(const std::vector<std::string>& identifiers) override { m_pending.remove(identifiers); }
    Observation observeActions(ActionHandler handler) override { return m_actionObservers.add(std::move(handler)); }

  private:
    void servicePresenceChanged(bool isPresent);
    /// Whether the service answers; or, without waking it, whether the bus could start it.
    Task<> lookWhetherItAnswers();
    Task<> lookWhetherItCanStart();
    void setAuthorization(NotificationAuthorization authorization);

    void deliver(const NotificationRequest& request);
    Task<> show(NotificationRequest request);
    void wasGivenToken(const BusSignal& signal);
    void wasInvoked(const BusSignal& signal);
    void wasClosed(const BusSignal& signal);

    Bus& m_bus;
    SystemLog& m_log;
    const std::function<bool()> m_mayShow;
    NotificationAuthorization m_authorization = NotificationAuthorization::notDetermined;
    Observers<> m_authorizationObservers;
    struct Shown {
        NotificationRequest request;
        std::string activationToken; // for the action that comes next
    };
    Observers<const NotificationRequest&, const std::string&, const std::string&> m_actionObservers;
    /// What stands on the screen, by the service's number.
    std::unordered_map<std::int64_t, Shown> m_onScreen;
    TaskScope m_looks;
    TaskScope m_deliveries;
    PendingNotifications m_pending;
    Observation m_presence;
    Observation m_tokens;
    Observation m_invocations;
    Observation m_closings;
};

} // namespace quillorn
