#include "Services/SyncBusService.h"

#include "Platform/BusTask.h"
#include "Services/SyncMonitor.h"

#include <utility>

namespace quillorn {

namespace {

constexpr const char* methodName = "GetState";
constexpr const char* stateSignature = "ssbs";

BusMessage messageOf(const SyncState& state) {
    return {stateSignature,
            {state.status, state.statusText, state.networkAvailable,
             state.lastSyncDate ? formatISO8601(*state.lastSyncDate) : ""}};
}

std::optional<SyncState> stateOf(const BusMessage& message) {
    if (message.signature != stateSignature)
        return std::nullopt;
    const BusValue::List& values = message.values;
    return SyncState{.status = *values[0].asString(),
                     .statusText = *values[1].asString(),
                     .networkAvailable = *values[2].asBool(),
                     .lastSyncDate = parseISO8601(*values[3].asString())};
}

} // namespace

SyncState SyncState::of(const SyncMonitor& monitor) {
    return {.status = std::string(monitor.status().name()),
            .statusText = monitor.status().word(),
            .networkAvailable = monitor.isNetworkAvailable(),
            .lastSyncDate = monitor.lastSyncDate()};
}

SyncBusService::SyncBusService(Bus& bus, std::string objectPath, const SyncMonitor& monitor)
    : m_object(bus.exportObject(
          std::move(objectPath),
          {interfaceName,
           {{methodName,
             {},
             {{"s", "status"}, {"s", "statusText"}, {"b", "networkAvailable"}, {"s", "lastSyncDate"}},
             [&monitor](const BusMessage&, const auto& answer) { answer(messageOf(SyncState::of(monitor))); }}}})) {}

Task<std::optional<SyncState>> askForSyncState(Bus& bus, std::string service, std::string objectPath) {
    // A call would have the bus start the program.
    const BusCall presence = busDaemonCall("NameHasOwner", {"s", {service}});
    const BusReply isPresent = co_await askBus(bus, presence);
    if (isPresent.error() != nullptr || isPresent.message().values != BusValue::List{true})
        co_return std::nullopt;
    const BusCall question{std::move(service), std::move(objectPath), SyncBusService::interfaceName, methodName};
    const BusReply reply = co_await askBus(bus, question);
    co_return reply.error() == nullptr ? stateOf(reply.message()) : std::nullopt;
}

} // namespace quillorn
