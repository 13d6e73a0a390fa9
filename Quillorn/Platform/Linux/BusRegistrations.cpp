#include "Platform/Linux/BusRegistrations.h"

#include <algorithm>
#include <fmt/core.h>
#include <systemd/sd-bus.h>

namespace quillorn {

namespace {

constexpr const char* daemonName = "org.freedesktop.DBus";
constexpr const char* daemonPath = "/org/freedesktop/DBus";

const char* orNull(const std::string& text) {
    return text.empty() ? nullptr : text.c_str();
}

/// In place of the library's own, which gives up the whole connection for one rule that the daemon refuses.
int ignoreOutcome(sd_bus_message*, void*, sd_bus_error*) {
    return 1;
}

} // namespace

void BusRegistration::post(std::function<void()> work) {
    m_queue.post([self = weak_from_this(), work = std::move(work)] {
        if (const auto alive = self.lock())
            work();
    });
}

void BusPendingCall::start(sd_bus& bus, const BusCall& call) {
    const BusMessageHandle message = makeBusCall(bus, call);
    sd_bus_slot* slot = nullptr;
    const auto timeout = std::chrono::duration_cast<std::chrono::microseconds>(call.timeout).count();
    checkBus(sd_bus_call_async(&bus, &slot, message.get(), callback<BusPendingCall, &BusPendingCall::take>, this,
                               static_cast<std::uint64_t>(std::max<std::int64_t>(timeout, 1))));
    m_slot.reset(slot);
}

void BusPendingCall::take(sd_bus_message* reply) {
    finish(readBusReply(reply));
}

void BusPendingCall::fail(const BusError& error) {
    finish(error);
}

void BusPendingCall::detach() {
    m_slot.reset();
    fail(BusError("org.freedesktop.DBus.Error.Disconnected", "There is no connection to the bus"));
}

void BusPendingCall::finish(BusReply reply) {
    if (!std::exchange(m_isFinished, true))
        post([this, reply = std::move(reply)] { m_handler(reply); });
}

void BusSignalMatch::attach(sd_bus& bus) {
    sd_bus_slot* slot = nullptr;
    checkBus(sd_bus_match_signal_async(&bus, &slot, orNull(m_rule.sender), orNull(m_rule.path),
                                       orNull(m_rule.interface), orNull(m_rule.member),
                                       callback<BusSignalMatch, &BusSignalMatch::take>, ignoreOutcome, this));
    m_slot.reset(slot);
}

void BusSignalMatch::take(sd_bus_message* message) {
    BusSignal signal{sd_bus_message_get_path(message), sd_bus_message_get_member(message), readBusMessage(message)};
    post([this, signal = std::move(signal)] { m_handler(signal); });
}

void BusPresence::tell(bool present) {
    if (m_isPresent == present)
        return;
    m_isPresent = present;
    post([this, present] { m_handler(present); });
}

void BusPresence::detach() {
    m_slots.clear();
    tell(false);
}

void BusServiceWatch::attach(sd_bus& bus) {
    if (!sd_bus_service_name_is_valid(name().c_str()))
        throw BusError("org.freedesktop.DBus.Error.InvalidArgs", name() + " is no name of a service");
    const std::string rule = fmt::format("type='signal',sender='{0}',path='{1}',interface='{0}',"
                                         "member='NameOwnerChanged',arg0='{2}'",
                                         daemonName, daemonPath, name());
    sd_bus_slot* match = nullptr;
    checkBus(sd_bus_add_match_async(&bus, &match, rule.c_str(),
                                    callback<BusServiceWatch, &BusServiceWatch::takeOwnerChange>, ignoreOutcome, this));
    add(BusSlot(match));
    sd_bus_slot* question = nullptr;
    checkBus(sd_bus_call_method_async(&bus, &question, daemonName, daemonPath, daemonName, "NameHasOwner",
                                      callback<BusServiceWatch, &BusServiceWatch::takeOwner>, this, "s",
                                      name().c_str()));
    add(BusSlot(question));
}

void BusServiceWatch::takeOwnerChange(sd_bus_message* message) {
    const BusMessage change = readBusMessage(message);
    if (change.signature != "sss")
        return;
    if (!change.values[1].asString()->empty())
        tell(false);
    if (!change.values[2].asString()->empty())
        tell(true);
}

void BusServiceWatch::takeOwner(sd_bus_message* reply) {
    const BusReply answer = readBusReply(reply);
    tell(!answer.error() && answer.message().values == BusValue::List{true});
}

void BusOwnedName::attach(sd_bus& bus) {
    const auto observe = [&](const char* member, sd_bus_message_handler_t handler) {
        sd_bus_slot* slot = nullptr;
        checkBus(sd_bus_match_signal_async(&bus, &slot, daemonName, daemonPath, daemonName, member, handler,
                                           ignoreOutcome, this));
        add(BusSlot(slot));
    };
    observe("NameAcquired", callback<BusOwnedName, &BusOwnedName::takeAcquired>);
    observe("NameLost", callback<BusOwnedName, &BusOwnedName::takeLost>);
    sd_bus_slot* request = nullptr;
    checkBus(sd_bus_request_name_async(&bus, &request, name().c_str(), SD_BUS_NAME_QUEUE,
                                       callback<BusOwnedName, &BusOwnedName::takeReply>, this));
    add(BusSlot(request));
    m_bus = &bus;
}

void BusOwnedName::detach() {
    m_bus = nullptr;
    BusPresence::detach();
}

BusOwnedName::~BusOwnedName() {
    if (m_bus != nullptr)
        sd_bus_release_name_async(m_bus, nullptr, name().c_str(), nullptr, nullptr);
}

void BusOwnedName::takeReply(sd_bus_message* reply) {
    constexpr std::int64_t primaryOwner = 1;
    constexpr std::int64_t alreadyOwner = 4;
    const BusReply answer = readBusReply(reply);
    const BusValue::List values = answer.error() ? BusValue::List{} : answer.message().values;
    tell(values == BusValue::List{primaryOwner} || values == BusValue::List{alreadyOwner});
}

void BusOwnedName::takeAcquired(sd_bus_message* signal) {
    if (isAbout(signal))
        tell(true);
}

void BusOwnedName::takeLost(sd_bus_message* signal) {
    if (isAbout(signal))
        tell(false);
}

bool BusOwnedName::isAbout(sd_bus_message* signal) const {
    return readBusMessage(signal).values == BusValue::List{name()};
}

namespace {

/// A call that waits for its answer.
class Answer {
  public:
    Answer(sd_bus_message* call, std::function<void()> answered)
        : m_call(sd_bus_message_ref(call)),
          m_answered(std::move(answered)) {}
    ~Answer() { give(BusError(busErrorFailed, "There was no answer")); }
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    void give(const BusReply& reply) {
        const BusMessageHandle call = std::move(m_call);
        if (!call || sd_bus_message_get_expect_reply(call.get()) <= 0)
            return;
        try {
            send(call.get(), reply.message());
        } catch (const BusError& error) {
            const sd_bus_error sent{error.name().c_str(), error.what(), 0};
            sd_bus_reply_method_error(call.get(), &sent); // a caller that has gone needs no answer
        }
        m_answered();
    }

  private:
    static void send(sd_bus_message* call, const BusMessage& content) {
        sd_bus_message* made = nullptr;
        checkBus(sd_bus_message_new_method_return(call, &made));
        const BusMessageHandle message(made);
        writeBusMessage(message.get(), content);
        (void)sd_bus_send(nullptr, message.get(), nullptr);
    }

    BusMessageHandle m_call;
    std::function<void()> m_answered;
};

} // namespace

struct BusExport::Table {
    std::vector<sd_bus_vtable> entries;
};

BusExport::BusExport(MainQueue& queue, std::string path, BusInterface interface, std::function<void()> answered)
    : BusRegistration(queue),
      m_path(std::move(path)),
      m_name(std::move(interface.name)),
      m_answered(std::move(answered)) {
    for (BusMethod& method : interface.methods) {
        Method described{std::move(method), {}, {}, {}};
        for (const BusMethod::Argument& argument : described.method.in) {
            described.in += argument.signature;
            (described.names += argument.name) += '\0';
        }
        for (const BusMethod::Argument& argument : described.method.out) {
            described.out += argument.signature;
            (described.names += argument.name) += '\0';
        }
        m_methods.push_back(std::move(described));
    }
    auto table = std::make_unique<Table>();
    table->entries.push_back(SD_BUS_VTABLE_START(0));
    for (const Method& each : m_methods) {
        sd_bus_vtable entry{};
        entry.type = _SD_BUS_VTABLE_METHOD;
        entry.flags = SD_BUS_VTABLE_UNPRIVILEGED;
        entry.x.method = {
            each.method.name.c_str(), each.in.c_str(), each.out.c_str(), callback<BusExport, &BusExport::take>, 0,
            each.names.c_str()};
        table->entries.push_back(entry);
    }
    table->entries.push_back(SD_BUS_VTABLE_END);
    m_table = std::move(table);
}

BusExport::~BusExport() = default;

void BusExport::attach(sd_bus& bus) {
    sd_bus_slot* slot = nullptr;
    checkBus(sd_bus_add_object_vtable(&bus, &slot, m_path.c_str(), m_name.c_str(), m_table->entries.data(), this));
    m_slot.reset(slot);
}

void BusExport::take(sd_bus_message* call) {
    const auto answer = std::make_shared<Answer>(call, m_answered);
    BusMethod::Responder responder = [answer](const BusReply& reply) { answer->give(reply); };
    const std::string_view member = sd_bus_message_get_member(call);
    const auto found = std::find_if(m_methods.begin(), m_methods.end(),
                                    [&](const Method& each) { return each.method.name == member; });
    try {
        post([this, &method = *found, message = readBusMessage(call), responder = std::move(responder)] {
            handle(method, message, responder);
        });
    } catch (const BusError& error) {
        answer->give(error);
    }
}

void BusExport::handle(const Method& method, const BusMessage& message, const BusMethod::Responder& answer) const {
    try {
        method.method.handler(message, answer);
    } catch (const BusError& error) {
        answer(error);
    } catch (const std::exception& error) {
        answer(BusError(busErrorFailed, error.what()));
        throw; // for the log
    }
}

} // namespace quillorn
