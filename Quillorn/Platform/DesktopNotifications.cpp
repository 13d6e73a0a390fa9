#include "Platform/DesktopNotifications.h"

#include "Platform/BusTask.h"
#include "Platform/SystemLog.h"
#include "Platform/UTF8.h"

#include <algorithm>
#include <fmt/core.h>
#include <string_view>

namespace quillorn {

namespace {

constexpr const char* serviceName = "org.freedesktop.Notifications";
constexpr const char* servicePath = "/org/freedesktop/Notifications";

/// More than any screen shows of a notification.
constexpr std::size_t longestText = 2000;

/// One line of plain text, of a length that a screen can do something with.
std::string line(std::string_view text) {
    std::string line = repairedUTF8(text);
    line.resize(validUTF8Length(line.substr(0, longestText)));
    std::ranges::replace_if(line, [](char each) { return (each >= 0 && each < 0x20) || each == 0x7F; }, ' ');
    return line;
}

std::string withoutMarkup(const std::string& text) {
    std::string escaped;
    for (const char each : text) {
        switch (each) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        default:
            escaped += each;
        }
    }
    return escaped;
}

BusMessage notifyArguments(const NotificationRequest& request, bool hasActions, bool hasMarkup) {
    BusValue::List actions;
    if (hasActions)
        for (const auto& [key, label] : request.actions) {
            actions.emplace_back(key);
            actions.emplace_back(label);
        }
    const std::string body = line(request.body);
    return {"susssasa{sv}i",
            {"Quillorn", 0, "appointment-soon", line(request.title), hasMarkup ? withoutMarkup(body) : body,
             std::move(actions), BusValue::Dictionary{}, -1}};
}

/// The number of the notification that a signal is about.
std::optional<std::int64_t> numberOf(const BusSignal& signal) {
    const auto& values = signal.message.values;
    return values.size() == 2 && values[0].asInteger() != nullptr ? std::optional(*values[0].asInteger())
                                                                  : std::nullopt;
}

BusSignalRule signalOf(std::string member) {
    return {serviceName, servicePath, serviceName, std::move(member)};
}

} // namespace

BusCall notificationServiceCall(std::string member, BusMessage arguments) {
    return {serviceName, servicePath, serviceName, std::move(member), std::move(arguments)};
}

DesktopNotifications::DesktopNotifications(Bus& sessionBus, const Clock& clock, MainQueue& queue,
                                           WakeSignals& wakeSignals, SystemLog& log, std::function<bool()> mayShow)
    : m_bus(sessionBus),
      m_log(log),
      m_mayShow(std::move(mayShow)),
      m_pending(clock, queue, wakeSignals, [this](const NotificationRequest& request) { deliver(request); }),
      m_presence(m_bus.observeService(serviceName, [this](bool isPresent) { servicePresenceChanged(isPresent); })),
      m_tokens(m_bus.observeSignal(signalOf("ActivationToken"), [this](const auto& signal) { wasGivenToken(signal); })),
      m_invocations(m_bus.observeSignal(signalOf("ActionInvoked"), [this](const auto& signal) { wasInvoked(signal); })),
      m_closings(
          m_bus.observeSignal(signalOf("NotificationClosed"), [this](const auto& signal) { wasClosed(signal); })) {}

Task<std::string> whyNotShown(Bus& sessionBus) {
    const BusCall presence = busDaemonCall("NameHasOwner", {"s", {serviceName}});
    const BusReply isPresent = co_await askBus(sessionBus, presence);
    if (isPresent.error() != nullptr)
        co_return "there is no session bus";
    if (isPresent.message().values == BusValue::List{true}) {
        const BusCall question = notificationServiceCall("GetCapabilities");
        const BusReply capabilities = co_await askBus(sessionBus, question);
        const BusError* error = capabilities.error();
        co_return error == nullptr ? std::string() : fmt::format("the desktop does not answer: {}", error->what());
    }
    const std::string name = serviceName;
    const bool isStarted = co_await canBeStarted(sessionBus, name);
    co_return isStarted ? "" : "no desktop shows them";
}

void DesktopNotifications::requestAuthorization() {
    m_looks.cancel();
    m_looks.start(lookWhetherItAnswers());
}

void DesktopNotifications::servicePresenceChanged(bool isPresent) {
    m_onScreen.clear();
    m_looks.cancel();
    m_looks.start(isPresent ? lookWhetherItAnswers() : lookWhetherItCanStart());
}

Task<> DesktopNotifications::lookWhetherItAnswers() {
    const BusCall call = notificationServiceCall("GetCapabilities");
    const BusReply reply = co_await askBus(m_bus, call);
    setAuthorization(reply.error() != nullptr ? NotificationAuthorization::denied
                                              : NotificationAuthorization::authorized);
}

Task<> DesktopNotifications::lookWhetherItCanStart() {
    const std::string name = serviceName;
    const bool isStarted = co_await canBeStarted(m_bus, name);
    setAuthorization(isStarted ? NotificationAuthorization::authorized : NotificationAuthorization::denied);
}

void DesktopNotifications::setAuthorization(NotificationAuthorization authorization) {
    if (std::exchange(m_authorization, authorization) != authorization)
        m_authorizationObservers.tell();
}

void DesktopNotifications::deliver(const NotificationRequest& request) {
    if (m_mayShow())
        m_deliveries.start(show(request));
}

Task<> DesktopNotifications::show(NotificationRequest request) {
    // Asked each time: another service may have taken over since, or begins with this question.
    const BusCall question = notificationServiceCall("GetCapabilities");
    const BusReply capabilities = co_await askBus(m_bus, question);
    const BusCall call = notificationServiceCall(
        "Notify", notifyArguments(request, isListed(capabilities, "actions"), isListed(capabilities, "body-markup")));
    const BusReply reply = co_await askBus(m_bus, call);
    if (const BusError* error = reply.error()) {
        m_log.log(fmt::format("A notification could not be shown: {}", error->what()));
        co_return;
    }
    const auto& values = reply.message().values;
    if (values.size() == 1 && values[0].asInteger() != nullptr)
        m_onScreen.insert_or_assign(*values[0].asInteger(), Shown{std::move(request), {}});
}

void DesktopNotifications::wasGivenToken(const BusSignal& signal) {
    const auto number = numberOf(signal);
    const auto found = number ? m_onScreen.find(*number) : m_onScreen.end();
    if (const std::string* token = number ? signal.message.values[1].asString() : nullptr;
        token != nullptr && found != m_onScreen.end())
        found->second.activationToken = *token;
}

void DesktopNotifications::wasInvoked(const BusSignal& signal) {
    const auto number = numberOf(signal);
    const auto found = number ? m_onScreen.find(*number) : m_onScreen.end();
    const std::string* chosen = number ? signal.message.values[1].asString() : nullptr;
    if (found == m_onScreen.end() || chosen == nullptr)
        return;
    // Copies, since observers may lead to the end of the notification.
    const NotificationRequest request = found->second.request;
    const std::string token = std::exchange(found->second.activationToken, {});
    const std::string action = *chosen;
    if (std::ranges::find(request.actions, action, &NotificationRequest::Action::key) != request.actions.end())
        m_actionObservers.tell(request, action, token);
}

void DesktopNotifications::wasClosed(const BusSignal& signal) {
    if (const auto number = numberOf(signal))
        m_onScreen.erase(*number);
}

} // namespace quillorn
