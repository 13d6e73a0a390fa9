#pragma once

#include "Platform/Date.h"
#include "Platform/Observers.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace quillorn {

/// Whether the desktop shows what is asked for. The numbers are those that other platforms use.
enum class NotificationAuthorization { notDetermined = 0, denied = 1, authorized = 2 };

/// Something to show at a moment.
struct NotificationRequest {
    /// What a click can do; "default" is the click on the notification itself.
    struct Action {
        std::string key;
        std::string label;

        friend bool operator==(const Action&, const Action&) = default;
    };

    /// A request takes the place of one that is pending under the same name.
    std::string identifier;
    std::string title;
    /// Plain text.
    std::string body;
    std::map<std::string, std::string> userInfo{};
    std::vector<Action> actions{};
    Date moment{};

    friend bool operator==(const NotificationRequest&, const NotificationRequest&) = default;
};

/// The notifications of this machine. What is pending belongs to this process, and goes with it. For the main thread.
class LocalNotifications {
  public:
    /// The token is what the desktop wants to see of a window that comes to the front; empty where it gives none.
    using ActionHandler = std::function<void(const NotificationRequest& request, const std::string& action,
                                             const std::string& activationToken)>;

    virtual ~LocalNotifications() = default;

    virtual NotificationAuthorization authorization() const = 0;
    [[nodiscard]] virtual Observation observeAuthorization(std::function<void()> handler) = 0;
    /// Asks, where the answer may have changed; observers hear of it.
    virtual void requestAuthorization() = 0;

    /// A request whose moment has passed, as over a sleep, is shown at once; what was shown for a moment is not shown
    /// for it again, also when the clock is set back. Throws std::runtime_error for one that can't be kept.
    virtual void add(NotificationRequest request) = 0;
    /// The names of those that are still to be shown.
    virtual std::vector<std::string> pending() = 0;
    virtual void removePending(const std::vector<std::string>& identifiers) = 0;
    /// Tells what the user has chosen on a notification that was shown.
    [[nodiscard]] virtual Observation observeActions(ActionHandler handler) = 0;
};

} // namespace quillorn
