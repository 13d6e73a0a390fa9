#pragma once

#include "Platform/Clock.h"
#include "Platform/PendingNotifications.h"
#include "Platform/WakeSignals.h"

#include <string>
#include <vector>

namespace quillorn {

/// Jumps of time, told by a test.
class FakeWakeSignals final : public WakeSignals {
  public:
    Observation observe(std::function<void()> handler) override { return m_observers.add(std::move(handler)); }
    void tell() const { m_observers.tell(); }

  private:
    Observers<> m_observers;
};

/// A desktop that writes down what it shows.
class FakeNotifications final : public LocalNotifications {
  public:
    FakeNotifications(const Clock& clock, MainQueue& queue, WakeSignals& wakeSignals)
        : m_pending(clock, queue, wakeSignals, [this](const auto& request) { shown.push_back(request); }) {}

    NotificationAuthorization authorization() const override { return m_authorization; }
    Observation observeAuthorization(std::function<void()> handler) override {
        return m_authorizationObservers.add(std::move(handler));
    }
    void requestAuthorization() override { authorize(NotificationAuthorization::authorized); }
    void add(NotificationRequest request) override { m_pending.add(std::move(request)); }
    std::vector<std::string> pending() override { return m_pending.identifiers(); }
    void removePending(const std::vector<std::string>& identifiers) override {
        ++removals;
        m_pending.remove(identifiers);
    }
    Observation observeActions(ActionHandler handler) override { return m_actionObservers.add(std::move(handler)); }

    void authorize(NotificationAuthorization authorization) {
        m_authorization = authorization;
        m_authorizationObservers.tell();
    }
    void choose(const std::string& action, const std::string& token = {}) const {
        m_actionObservers.tell(shown.back(), action, token);
    }

    std::vector<NotificationRequest> shown;
    std::size_t removals = 0;

  private:
    NotificationAuthorization m_authorization = NotificationAuthorization::authorized;
    Observers<> m_authorizationObservers;
    Observers<const NotificationRequest&, const std::string&, const std::string&> m_actionObservers;
    PendingNotifications m_pending;
};

} // namespace quillorn
