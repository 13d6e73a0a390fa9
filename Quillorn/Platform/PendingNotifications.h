#pragma once

#include "Platform/LocalNotifications.h"
#include "Platform/MainQueue.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
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
    /// By the name alone.
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const { return std::hash<std::string_view>()(name); }
        std::size_t operator()(const NotificationRequest& request) const { return (*this)(request.identifier); }
    };
    struct Equal {
        using is_transparent = void;
        static std::string_view nameOf(std::string_view name) { return name; }
        static std::string_view nameOf(const NotificationRequest& request) { return request.identifier; }
        bool operator()(const auto& a, const auto& b) const { return nameOf(a) == nameOf(b); }
    };
    using Requests = std::unordered_set<NotificationRequest, Hash, Equal>;

    /// What is due is delivered before anything else, so that nobody takes it for something that can be forgotten.
    void deliverDue();
    void erase(std::string_view identifier);
    void arm();
    void disarm();
    void forgetLongShown(Date now);

    const Clock& m_clock;
    MainQueue& m_queue;
    Deliver m_deliver;
    Requests m_requests;
    std::set<std::pair<Date, std::string_view>> m_order; // of their names, soonest first
    /// For what moment a name was last shown.
    std::unordered_map<std::string, Date> m_shown;
    std::optional<MainQueue::TimerId> m_timer;
    Date m_armedFor{};
    Observation m_jumps;
};

} // namespace quillorn
