#include "Platform/PendingNotifications.h"

#include "Platform/Clock.h"
#include "Platform/WakeSignals.h"

#include <algorithm>

namespace quillorn {

namespace {

/// How much is remembered of what was shown, before the old of it is forgotten.
constexpr std::size_t muchShown = 1000;
/// Clocks are not set back further without anybody noticing.
constexpr std::chrono::days shownLongAgo{31};

} // namespace

PendingNotifications::PendingNotifications(const Clock& clock, MainQueue& queue, WakeSignals& wakeSignals,
                                           Deliver deliver)
    : m_clock(clock),
      m_queue(queue),
      m_deliver(std::move(deliver)),
      m_jumps(wakeSignals.observe([this] {
          disarm();
          deliverDue();
      })) {}

PendingNotifications::~PendingNotifications() {
    disarm();
}

void PendingNotifications::add(NotificationRequest request) {
    // A refresh says mostly what is known.
    const auto known = m_requests.find(std::string_view(request.identifier));
    if (known != m_requests.end() && *known == request)
        return;
    erase(request.identifier);
    const auto shown = m_shown.find(request.identifier);
    if (shown != m_shown.end() && shown->second == request.moment)
        return;
    const auto added = m_requests.insert(std::move(request)).first;
    m_order.emplace(added->moment, added->identifier);
    arm();
}

std::vector<std::string> PendingNotifications::identifiers() {
    deliverDue();
    std::vector<std::string> names;
    names.reserve(m_requests.size());
    for (const NotificationRequest& request : m_requests)
        names.push_back(request.identifier);
    return names;
}

void PendingNotifications::remove(const std::vector<std::string>& identifiers) {
    deliverDue();
    for (const std::string& identifier : identifiers)
        erase(identifier);
}

void PendingNotifications::erase(std::string_view identifier) {
    const auto found = m_requests.find(identifier);
    if (found == m_requests.end())
        return;
    m_order.erase({found->moment, found->identifier});
    m_requests.erase(found);
}

void PendingNotifications::deliverDue() {
    const Date now = m_clock.now();
    while (!m_order.empty() && m_order.begin()->first <= now) {
        const auto due = m_requests.extract(m_requests.find(m_order.begin()->second));
        m_order.erase(m_order.begin());
        const NotificationRequest& request = due.value();
        m_shown.insert_or_assign(request.identifier, request.moment);
        forgetLongShown(now);
        m_deliver(request);
    }
    arm();
}

void PendingNotifications::forgetLongShown(Date now) {
    if (m_shown.size() > muchShown)
        std::erase_if(m_shown, [&](const auto& shown) { return shown.second < now - shownLongAgo; });
}

void PendingNotifications::arm() {
    if (m_order.empty())
        return disarm();
    const Date now = m_clock.now();
    const Date moment = std::min(m_order.begin()->first, now + horizon);
    // One that comes too early only looks again.
    if (m_timer && m_armedFor <= moment)
        return;
    disarm();
    m_armedFor = moment;
    const auto delay = std::max(std::chrono::ceil<std::chrono::milliseconds>(moment - now), {});
    m_timer = m_queue.after(delay, [this] {
        m_timer.reset();
        deliverDue();
    });
}

void PendingNotifications::disarm() {
    if (m_timer)
        m_queue.cancel(*m_timer);
    m_timer.reset();
}

} // namespace quillorn
