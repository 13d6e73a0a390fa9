#include "Platform/NotificationCenter.h"

#include "Platform/MainQueue.h"

#include <algorithm>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace quillorn {

/// One observer. It is kept alive by its observation and by posts under way, so a handler may end itself.
struct NotificationCenter::Registration {
    std::string name;
    MainQueue* queue = nullptr;
    std::weak_ptr<State> center;

    void call(const Notification& notification);
    void end();
    void leave(std::thread::id thread);

    std::mutex mutex;
    std::condition_variable left;
    Handler handler;
    bool ended = false;
    /// The threads inside the handler; one stands in it as often as it has entered.
    std::vector<std::thread::id> inside;
};

struct NotificationCenter::State {
    using Registrations = std::vector<std::shared_ptr<Registration>>;

    std::mutex mutex;
    std::map<std::string, Registrations, std::less<>> observers;
};

void NotificationCenter::Registration::call(const Notification& notification) {
    const std::thread::id thread = std::this_thread::get_id();
    {
        const std::lock_guard lock(mutex);
        if (ended)
            return;
        inside.push_back(thread);
    }
    const auto leave = [thread](Registration* registration) { registration->leave(thread); };
    const std::unique_ptr<Registration, decltype(leave)> atEnd(this, leave);
    handler(notification);
}

void NotificationCenter::Registration::leave(std::thread::id thread) {
    Handler unused; // what the handler holds goes outside the lock: its destructors may call us
    {
        const std::lock_guard lock(mutex);
        inside.erase(std::find(inside.begin(), inside.end(), thread));
        if (ended && inside.empty())
            unused.swap(handler);
        left.notify_all();
    }
}

void NotificationCenter::Registration::end() {
    if (const auto state = center.lock()) {
        const std::lock_guard lock(state->mutex);
        const auto found = state->observers.find(name);
        if (found != state->observers.end()) {
            std::erase_if(found->second, [this](const auto& other) { return other.get() == this; });
            if (found->second.empty())
                state->observers.erase(found);
        }
    }
    Handler unused;
    std::unique_lock lock(mutex);
    ended = true;
    if (std::find(inside.begin(), inside.end(), std::this_thread::get_id()) != inside.end())
        return; // the handler ends its own observation; waiting for itself would never end
    left.wait(lock, [this] { return inside.empty(); });
    unused.swap(handler);
    lock.unlock();
}

NotificationCenter::NotificationCenter() : m_state(std::make_shared<State>()) {}
NotificationCenter::~NotificationCenter() = default;

Observation NotificationCenter::observe(std::string_view name, Handler handler, MainQueue* queue) {
    auto registration = std::make_shared<Registration>();
    registration->name = name;
    registration->queue = queue;
    registration->center = m_state;
    registration->handler = std::move(handler);
    {
        const std::lock_guard lock(m_state->mutex);
        m_state->observers[registration->name].push_back(registration);
    }
    return Observation(
        std::shared_ptr<void>(nullptr, [registration = std::move(registration)](void*) { registration->end(); }));
}

void NotificationCenter::post(const Notification& notification) {
    State::Registrations observers;
    {
        const std::lock_guard lock(m_state->mutex);
        const auto found = m_state->observers.find(notification.name);
        if (found != m_state->observers.end())
            observers = found->second;
    }
    std::shared_ptr<const Notification> copy;
    std::exception_ptr failure;
    for (const auto& observer : observers) {
        try {
            if (observer->queue == nullptr) {
                observer->call(notification);
                continue;
            }
            if (!copy)
                copy = std::make_shared<Notification>(Notification{notification.name, {}, notification.userInfo});
            observer->queue->post([observer, copy] { observer->call(*copy); });
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace quillorn
