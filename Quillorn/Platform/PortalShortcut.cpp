#include "Platform/PortalShortcut.h"

#include "Platform/BusTask.h"

#include <fmt/core.h>
#include <string_view>

namespace quillorn {

namespace {

constexpr const char* serviceName = "org.freedesktop.portal.Desktop";
constexpr const char* servicePath = "/org/freedesktop/portal/desktop";
constexpr const char* interfaceName = "org.freedesktop.portal.GlobalShortcuts";

BusCall portalCall(const char* interface, const char* member, BusMessage arguments = {}) {
    return {serviceName, servicePath, interface, member, std::move(arguments)};
}

/// What stands in the dictionary by that name; null for none.
const BusValue* find(const BusValue::Dictionary& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found != dictionary.end() ? &found->second : nullptr;
}

std::string textOf(const BusValue* value) {
    const std::string* text = value != nullptr ? value->asString() : nullptr;
    return text != nullptr ? *text : std::string();
}

} // namespace

PortalShortcut::PortalShortcut(Bus& sessionBus, Definition definition)
    : m_bus(sessionBus),
      m_definition(std::move(definition)),
      m_presence(m_bus.observeService(serviceName, [this](bool isPresent) { portalCameOrWent(isPresent); })),
      m_activations(m_bus.observeSignal({serviceName, servicePath, interfaceName, "Activated"},
                                        [this](const BusSignal& signal) { wasActivated(signal); })),
      m_changes(m_bus.observeSignal({serviceName, servicePath, interfaceName, "ShortcutsChanged"},
                                    [this](const BusSignal& signal) { wereChanged(signal); })) {}

void PortalShortcut::setWanted(bool isWanted) {
    if (std::exchange(m_isWanted, isWanted) == isWanted)
        return;
    m_isAsked = false; // whoever changes this wants to be asked
    m_work.cancel();
    if (!isWanted)
        closeSession();
    else if (m_isAvailable)
        m_work.start(bind());
}

void PortalShortcut::portalCameOrWent(bool isPresent) {
    m_work.cancel();
    m_session.clear();
    m_trigger.clear();
    m_isAvailable = false;
    m_observers.tell();
    if (isPresent)
        m_work.start(look());
}

Task<> PortalShortcut::look() {
    const BusCall question = portalCall("org.freedesktop.DBus.Properties", "Get", {"ss", {interfaceName, "version"}});
    const BusReply version = co_await askBus(m_bus, question);
    m_isAvailable = version.error() == nullptr;
    m_observers.tell();
    if (m_isAvailable && m_isWanted)
        co_await bind();
}

Task<> PortalShortcut::bind() {
    const BusCall create = portalCall(interfaceName, "CreateSession");
    const Response session = co_await request(create);
    m_session = textOf(find(session.results, "session_handle"));
    if (m_session.empty())
        co_return;
    // Where the desktop remembers the key by itself, nobody need be asked.
    const BusCall list = portalCall(interfaceName, "ListShortcuts", {"o", {m_session}});
    const Response known = co_await request(list);
    if (takeTrigger(find(known.results, "shortcuts")) || std::exchange(m_isAsked, true))
        co_return;
    const BusCall give = portalCall(interfaceName, "BindShortcuts", wish());
    const Response bound = co_await request(give);
    m_isAsked = bound.code == Response::other;
    takeTrigger(find(bound.results, "shortcuts"));
    if (bound.code == Response::cancelled) {
        m_isWanted = false;
        closeSession();
        if (onRefused)
            onRefused();
    }
}

BusMessage PortalShortcut::wish() const {
    BusValue::Dictionary described{{"description", m_definition.description},
                                   {"preferred_trigger", m_definition.preferredTrigger}};
    BusValue::List shortcut{m_definition.id, std::move(described)};
    return {"oa(sa{sv})s", {m_session, BusValue::List{BusValue(std::move(shortcut))}, ""}};
}

/// The answer comes as a signal of an object whose path ends with a token of ours, which the options behind the other
/// arguments tell.
Task<PortalShortcut::Response> PortalShortcut::request(BusCall call) {
    const std::string token = fmt::format("quillorn{}", ++m_requests);
    BusValue::Dictionary options{{"handle_token", token}};
    if (m_session.empty())
        options.emplace("session_handle_token", token);
    call.arguments.signature += "a{sv}";
    call.arguments.values.emplace_back(std::move(options));

    const Completion<Response> completion;
    const BusSignalRule rule{serviceName, "", "org.freedesktop.portal.Request", "Response"};
    const Observation response =
        m_bus.observeSignal(rule, [end = completion, ending = "/" + token](const BusSignal& signal) mutable {
            if (std::string_view(signal.path).ends_with(ending))
                end.succeed(Response::of(signal.message));
        });
    const BusReply reply = co_await askBus(m_bus, call);
    if (reply.error() != nullptr)
        co_return Response();
    co_return co_await completion;
}

PortalShortcut::Response PortalShortcut::Response::of(const BusMessage& message) {
    if (message.signature != "ua{sv}")
        return {};
    return {*message.values[0].asInteger(), *message.values[1].asDictionary()};
}

bool PortalShortcut::takeTrigger(const BusValue* shortcuts) {
    const BusValue::List* all = shortcuts != nullptr ? shortcuts->asList() : nullptr;
    if (all == nullptr)
        return false;
    bool isThere = false;
    m_trigger.clear();
    for (const BusValue& each : *all) {
        const BusValue::List* shortcut = each.asList();
        if (shortcut != nullptr && shortcut->size() == 2 && textOf(shortcut->data()) == m_definition.id &&
            (*shortcut)[1].asDictionary() != nullptr) {
            isThere = true;
            m_trigger = textOf(find(*(*shortcut)[1].asDictionary(), "trigger_description"));
        }
    }
    m_observers.tell();
    return isThere;
}

void PortalShortcut::wasActivated(const BusSignal& signal) {
    if (isOurs(signal, 4) && textOf(&signal.message.values[1]) == m_definition.id && onActivated)
        onActivated();
}

void PortalShortcut::wereChanged(const BusSignal& signal) {
    if (isOurs(signal, 2))
        takeTrigger(&signal.message.values[1]);
}

bool PortalShortcut::isOurs(const BusSignal& signal, std::size_t values) const {
    return !m_session.empty() && signal.message.values.size() == values &&
           textOf(signal.message.values.data()) == m_session;
}

void PortalShortcut::closeSession() {
    if (!m_session.empty())
        m_bus.send({serviceName, std::exchange(m_session, {}), "org.freedesktop.portal.Session", "Close"});
    m_trigger.clear();
    m_observers.tell();
}

} // namespace quillorn
