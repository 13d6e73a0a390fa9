#include "Platform/BusTask.h"

#include <utility>

namespace quillorn {

Task<BusReply> askBus(Bus& bus, const BusCall& call) {
    const Completion<BusReply> completion;
    const Observation pending =
        bus.call(call, [end = completion](const BusReply& reply) mutable { end.succeed(reply); });
    co_return co_await completion;
}

BusCall busDaemonCall(std::string member, BusMessage arguments) {
    return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", std::move(member),
            std::move(arguments)};
}

} // namespace quillorn
