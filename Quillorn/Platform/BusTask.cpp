#include "Platform/BusTask.h"

#include <algorithm>
#include <utility>

namespace quillorn {

Task<BusReply> askBus(Bus& bus, const BusCall& call) {
    const Completion<BusReply> completion;
    const Observation pending =
        bus.call(call, [end = completion](const BusReply& reply) mutable { end.succeed(reply); });
    co_return co_await completion;
}

bool isListed(const BusReply& reply, std::string_view wanted) {
    if (reply.error() != nullptr || reply.message().values.empty())
        return false;
    const BusValue::List* list = reply.message().values.front().asList();
    return list != nullptr && std::ranges::any_of(*list, [&](const BusValue& each) {
               return each.asString() != nullptr && *each.asString() == wanted;
           });
}

Task<bool> canBeStarted(Bus& bus, std::string name) {
    const BusCall question = busDaemonCall("ListActivatableNames");
    const BusReply names = co_await askBus(bus, question);
    co_return isListed(names, name);
}

BusCall busDaemonCall(std::string member, BusMessage arguments) {
    return {"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", std::move(member),
            std::move(arguments)};
}

} // namespace quillorn
