#pragma once

#include "Platform/LocalNotifications.h"
#include "Platform/MainQueue.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillorn {

class Clock;
class WakeSignals;

/// Requests that wait for their moment by the clock on the wall. However many there are, one timer waits, for the
/// first; a jump of the clock is looked at when it happens.
class PendingNotifications {
  public:
    using Deliver = std::function<void(const NotificationRequest&)>;

    /// No timer waits longer, so that none holds what is far ahead.
    static constexpr std::chrono::hours horizon{48};

    PendingNotifications(const Clock& clock, MainQueue& queue, WakeSignals& wakeSignals, Deliver deliver);
    ~PendingNotifications();
    PendingNotifications(const PendingNotifications&) = delete;
    PendingNotifications& operator=(const PendingNotifications&) = delete;

    void add(NotificationRequest request);
    std::vector<std::string> identifiers();
    void remove(const std::vector<std::string>& identifiers);

  private:
    /// What is due is delivered before anything else, so that nobody takes it for something that can be forgotten.
    void deliverDue();
    void erase(const std::string& identifier);
    void arm();
    void disarm();
    void forgetLongShown(Date now);

    const Clock& m_clock;
    MainQueue& m_queue;
    Deliver m_deliver;
    std::unordered_map<std::string, NotificationRequest> m_requests;
    std::set<std::pair<Date, std::string_view>> m_order; // of their names, soonest first
    /// For what moment a name was last shown.
    std::unordered_map<std::string, Date> m_shown;
    std::optional<MainQueue::TimerId> m_timer;
    Date m_armedFor{};
    Observation m_jumps;
};

} // namespace quillorn
