#include "Platform/RunLoop.h"

#include "Platform/SystemLog.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <fmt/core.h>
#include <mutex>
#include <set>
#include <unordered_map>
#include <utility>

namespace quillorn {

namespace {

using Moment = std::chrono::steady_clock::time_point;

// Beyond any use, and far from where adding to a moment would overflow.
constexpr std::chrono::milliseconds longestDelay = std::chrono::hours{24 * 365 * 100};

/// Ticks of long periods come at whole ones of these alone, so that an idle program wakes up once for all of them.
using CommonTicks = std::chrono::duration<std::int64_t, std::ratio<30>>;

/// When a tick comes that is due at `moment`.
Moment tickAt(Moment moment, std::chrono::milliseconds period) {
    return period < CommonTicks{1} ? moment : Moment{std::chrono::ceil<CommonTicks>(moment)};
}

} // namespace

struct RunLoop::State {
    struct Timer {
        Moment due;
        std::chrono::milliseconds period; // zero: once
        std::shared_ptr<const Work> work; // shared, since a timer may be cancelled by its own work
    };

    State(SystemLog& systemLog, std::function<void()> wakeUp) : log(systemLog), wake(std::move(wakeUp)) {}

    TimerId add(std::chrono::milliseconds delay, std::chrono::milliseconds period, Work work);
    /// The work that is due with its timer's number, or a null pointer when none is. The caller holds the mutex.
    std::pair<std::uint64_t, std::shared_ptr<const Work>> takeDue();
    void finishTick(std::uint64_t id);
    void run(const Work& work);
    /// Runs one piece of work that is due; false when there is none.
    bool runNext(std::unique_lock<std::mutex>& lock);
    /// Something was added. The caller holds the mutex, so that the loop can't end meanwhile.
    void tell();

    SystemLog& log;
    const std::function<void()> wake;
    std::mutex mutex;
    std::condition_variable changed;
    bool stopped = false;
    std::deque<Work> posted;
    std::uint64_t lastTimer = 0;
    std::unordered_map<std::uint64_t, Timer> timers;
    std::set<std::pair<Moment, std::uint64_t>> schedule; // the timers that wait, soonest first
};

MainQueue::TimerId RunLoop::State::add(std::chrono::milliseconds delay, std::chrono::milliseconds period, Work work) {
    using std::chrono::milliseconds;
    const Moment due =
        tickAt(std::chrono::steady_clock::now() + std::clamp(delay, milliseconds{0}, longestDelay), period);
    auto shared = std::make_shared<const Work>(std::move(work));
    const std::lock_guard lock(mutex);
    const std::uint64_t id = ++lastTimer;
    timers.emplace(id, Timer{due, period, std::move(shared)});
    schedule.emplace(due, id);
    tell();
    return TimerId{id};
}

std::pair<std::uint64_t, std::shared_ptr<const MainQueue::Work>> RunLoop::State::takeDue() {
    if (schedule.empty() || schedule.begin()->first > std::chrono::steady_clock::now())
        return {};
    const std::uint64_t id = schedule.begin()->second;
    schedule.erase(schedule.begin());
    const auto timer = timers.find(id);
    std::pair<std::uint64_t, std::shared_ptr<const Work>> due{id, timer->second.work};
    if (timer->second.period == std::chrono::milliseconds{0})
        timers.erase(timer);
    return due;
}

/// Sets a repeating timer's next tick; only now, so that work that takes longer than its period can't keep out the
/// rest.
void RunLoop::State::finishTick(std::uint64_t id) {
    const std::lock_guard lock(mutex);
    const auto found = timers.find(id);
    if (found == timers.end())
        return;
    Timer& timer = found->second;
    const Moment now = std::chrono::steady_clock::now();
    timer.due = tickAt(timer.due + timer.period, timer.period);
    if (timer.due <= now)
        timer.due = tickAt(now + timer.period, timer.period);
    schedule.emplace(timer.due, id);
}

void RunLoop::State::run(const Work& work) {
    try {
        work();
    } catch (const std::exception& error) {
        log.log(fmt::format("Work on the main queue failed: {}", error.what()));
    } catch (...) {
        log.log("Work on the main queue failed");
    }
}

bool RunLoop::State::runNext(std::unique_lock<std::mutex>& lock) {
    if (auto [id, work] = takeDue(); work) {
        lock.unlock();
        run(*work);
        finishTick(id);
        work.reset();
    } else if (!posted.empty()) {
        Work next = std::move(posted.front());
        posted.pop_front();
        lock.unlock();
        run(next);
        next = nullptr;
    } else {
        return false;
    }
    lock.lock();
    return true;
}

void RunLoop::State::tell() {
    changed.notify_one();
    if (wake)
        wake();
}

RunLoop::RunLoop(SystemLog& log, std::function<void()> wake) : m_state(std::make_unique<State>(log, std::move(wake))) {}

RunLoop::~RunLoop() {
    // What the work holds may post or cancel while it is destroyed, so that happens while the state still stands.
    std::deque<Work> posted;
    std::unordered_map<std::uint64_t, State::Timer> timers;
    const std::lock_guard lock(m_state->mutex);
    posted.swap(m_state->posted);
    timers.swap(m_state->timers);
    m_state->schedule.clear();
}

void RunLoop::run() {
    State& state = *m_state;
    std::unique_lock lock(state.mutex);
    while (!std::exchange(state.stopped, false)) {
        if (state.runNext(lock))
            continue;
        if (state.schedule.empty())
            state.changed.wait(lock);
        else
            state.changed.wait_until(lock, Moment{state.schedule.begin()->first});
    }
}

std::optional<std::chrono::milliseconds> RunLoop::runFor(std::chrono::milliseconds slice) {
    using std::chrono::milliseconds;
    State& state = *m_state;
    const Moment end = std::chrono::steady_clock::now() + slice;
    std::unique_lock lock(state.mutex);
    while (state.runNext(lock))
        if (std::chrono::steady_clock::now() >= end)
            return milliseconds{0};
    if (state.schedule.empty())
        return std::nullopt;
    const auto wait = state.schedule.begin()->first - std::chrono::steady_clock::now();
    return std::max(milliseconds{0}, std::chrono::ceil<milliseconds>(wait));
}

void RunLoop::stop() {
    const std::lock_guard lock(m_state->mutex);
    m_state->stopped = true;
    m_state->changed.notify_one();
}

void RunLoop::post(Work work) {
    const std::lock_guard lock(m_state->mutex);
    m_state->posted.push_back(std::move(work));
    m_state->tell();
}

MainQueue::TimerId RunLoop::after(std::chrono::milliseconds delay, Work work) {
    return m_state->add(delay, std::chrono::milliseconds{0}, std::move(work));
}

MainQueue::TimerId RunLoop::every(std::chrono::milliseconds period, Work work) {
    period = std::clamp(period, std::chrono::milliseconds{1}, longestDelay);
    return m_state->add(period, period, std::move(work));
}

void RunLoop::cancel(TimerId timer) {
    std::shared_ptr<const Work> unused; // destroyed outside the lock: what it holds may call us
    const std::lock_guard lock(m_state->mutex);
    const auto found = m_state->timers.find(static_cast<std::uint64_t>(timer));
    if (found == m_state->timers.end())
        return;
    unused = std::move(found->second.work);
    m_state->schedule.erase({found->second.due, found->first});
    m_state->timers.erase(found);
}

} // namespace quillorn
