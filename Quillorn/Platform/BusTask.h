#pragma once

#include "Platform/Bus.h"
#include "Platform/Task.h"

#include <string>
#include <string_view>

namespace quillorn {

/// The reply to a call, which has to last as long as the task.
Task<BusReply> askBus(Bus& bus, const BusCall& call);

/// Whether the reply is a list of texts that has `wanted`.
bool isListed(const BusReply& reply, std::string_view wanted);

/// Whether the bus starts somebody of that name when he is called.
Task<bool> canBeStarted(Bus& bus, std::string name);

/// Calls of the bus itself.
BusCall busDaemonCall(std::string member, BusMessage arguments = {});

} // namespace quillorn
