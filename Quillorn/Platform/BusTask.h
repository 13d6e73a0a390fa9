#pragma once

#include "Platform/Bus.h"
#include "Platform/Task.h"

#include <string>

namespace quillorn {

/// The reply to a call, which has to last as long as the task.
Task<BusReply> askBus(Bus& bus, const BusCall& call);

/// Calls of the bus itself.
BusCall busDaemonCall(std::string member, BusMessage arguments = {});

} // namespace quillorn
