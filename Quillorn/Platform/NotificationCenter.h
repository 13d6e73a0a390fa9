#pragma once

#include "Platform/Observers.h"

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace quillorn {

class MainQueue;

/// One event of the program: a name, the object that it is about, and further values by key.
struct Notification {
    std::string name;
    /// What the event is about, as a pointer; valid only during the post, for observers on the poster's thread.
    std::any object;
    std::map<std::string, std::any> userInfo;
};

/// Tells observers in this process about events. Safe to use from any thread.
class NotificationCenter {
  public:
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter();
    ~NotificationCenter();

    /// Calls `handler` for each notification of that name: on the poster's thread before post() returns or, with a
    /// `queue`, later on that queue (without `object`, which belongs to the poster's thread).
    /// The queue must outlive the center's posts.
    ///
    /// Once the observation has ended the handler is neither called nor running, except when its own call has ended
    /// it. So a thread must not hold what a handler waits for while it ends that handler's observation.
    [[nodiscard]] Observation observe(std::string_view name, Handler handler, MainQueue* queue = nullptr);
    /// Handlers may post, observe and drop tokens. What one throws reaches the poster after all have been called.
    void post(const Notification& notification);

  private:
    struct Registration;
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace quillorn
