#include "CLI/Commands.h"
#include "CLI/Output.h"
#include "Models/Formatters.h"
#include "Platform/Bus.h"
#include "Platform/Clock.h"
#include "Platform/NetworkPath.h"
#include "Platform/RunTask.h"
#include "Platform/SystemLog.h"
#include "Reminders/RemindersBusService.h"
#include "Services/SyncBusService.h"
#include "Services/SyncMonitor.h"

#include <fmt/core.h>

namespace quillorn {

namespace {

constexpr std::chrono::seconds patience{2};

/// Of the program that stays, else what one that has just begun would show.
SyncState presentState(RunLoop& queue) {
    const auto bus = connectBus(BusKind::session, queue, nullptr);
    auto told = runTaskFor(queue, patience,
                           askForSyncState(*bus, RemindersBusService::serviceName, RemindersBusService::objectPath));
    if (told && *told)
        return std::move(**told);
    const auto network = systemNetworkPath(queue);
    const SystemClock clock;
    return SyncState::of(SyncMonitor(*network, clock, queue));
}

} // namespace

ExitStatus showSync(bool json) {
    StandardErrorLog log;
    RunLoop queue(log);
    const SyncState state = presentState(queue);
    if (json) {
        Json::Object object{
            {"status", state.status}, {"statusText", state.statusText}, {"networkAvailable", state.networkAvailable}};
        if (state.lastSyncDate)
            object.emplace("lastSyncDate", formatISO8601(*state.lastSyncDate));
        printJson(object);
        return ExitStatus::success;
    }
    fmt::print("Status       {}\nNetwork      {}\n", shown(state.statusText),
               state.networkAvailable ? "Connected" : "Offline");
    if (state.lastSyncDate)
        fmt::print("Last synced  {} ago\n", relativeTime(*state.lastSyncDate, SystemClock().now()));
    return ExitStatus::success;
}

} // namespace quillorn
