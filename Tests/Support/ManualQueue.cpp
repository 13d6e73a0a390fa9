#include "Support/ManualQueue.h"

#include <algorithm>
#include <exception>

namespace quillorn {

using std::chrono::milliseconds;

ManualQueue::~ManualQueue() {
    // Destroyed outside the lock and while the queue still stands: what work holds may call us.
    Timers timers;
    const std::lock_guard lock(m_mutex);
    timers.swap(m_timers);
}

void ManualQueue::advance(milliseconds time) {
    const milliseconds end = m_elapsed + time;
    while (runNext(end)) {
    }
    const std::lock_guard lock(m_mutex);
    moveTo(end);
}

bool ManualQueue::runNext(milliseconds end) {
    std::shared_ptr<const Work> work;
    {
        const std::lock_guard lock(m_mutex);
        const auto next = std::ranges::min_element(m_timers, {}, [](const auto& timer) { return timer.second.due; });
        if (next == m_timers.end() || next->second.due > end)
            return false;
        moveTo(next->second.due);
        work = next->second.work;
        if (next->second.period == milliseconds{0})
            m_timers.erase(next);
        else
            next->second.due += next->second.period;
    }
    run(*work);
    return true;
}

void ManualQueue::moveTo(milliseconds moment) {
    m_clock.advance(moment - m_elapsed);
    m_elapsed = moment;
}

void ManualQueue::run(const Work& work) {
    std::string failure;
    try {
        return work();
    } catch (const std::exception& error) {
        failure = error.what();
    } catch (...) {
        failure = "unknown";
    }
    const std::lock_guard lock(m_mutex);
    m_failures.push_back(failure);
}

std::size_t ManualQueue::timerCount() const {
    const std::lock_guard lock(m_mutex);
    return m_timers.size();
}

std::vector<std::string> ManualQueue::failures() const {
    const std::lock_guard lock(m_mutex);
    return m_failures;
}

void ManualQueue::post(Work work) {
    after(milliseconds{0}, std::move(work));
}

MainQueue::TimerId ManualQueue::add(milliseconds delay, milliseconds period, Work work) {
    const std::lock_guard lock(m_mutex);
    const milliseconds due = m_elapsed + std::max(delay, milliseconds{0});
    m_timers.emplace(++m_lastTimer, Timer{due, period, std::make_shared<const Work>(std::move(work))});
    return TimerId{m_lastTimer};
}

MainQueue::TimerId ManualQueue::after(milliseconds delay, Work work) {
    return add(delay, milliseconds{0}, std::move(work));
}

MainQueue::TimerId ManualQueue::every(milliseconds period, Work work) {
    period = std::max(period, milliseconds{1});
    return add(period, period, std::move(work));
}

void ManualQueue::cancel(TimerId timer) {
    std::shared_ptr<const Work> unused; // destroyed outside the lock: what it holds may call us
    const std::lock_guard lock(m_mutex);
    const auto found = m_timers.find(static_cast<std::uint64_t>(timer));
    if (found == m_timers.end())
        return;
    unused = std::move(found->second.work);
    m_timers.erase(found);
}

} // namespace quillorn
