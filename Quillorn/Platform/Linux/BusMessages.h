#pragma once

#include "Platform/Bus.h"

#include <memory>

struct sd_bus;         // NOLINT(readability-identifier-naming): theirs
struct sd_bus_message; // NOLINT(readability-identifier-naming)
struct sd_bus_slot;    // NOLINT(readability-identifier-naming)

namespace quillorn {

struct BusMessageDeleter {
    void operator()(sd_bus_message* message) const;
};
using BusMessageHandle = std::unique_ptr<sd_bus_message, BusMessageDeleter>;

struct BusSlotDeleter {
    void operator()(sd_bus_slot* slot) const;
};
/// What was asked of a connection; ends with the handle.
using BusSlot = std::unique_ptr<sd_bus_slot, BusSlotDeleter>;

inline constexpr const char* busErrorFailed = "org.freedesktop.DBus.Error.Failed";

/// The error for a negative result of the library.
BusError busErrorOf(int result);
/// Throws the error for a negative result, and gives other ones back.
int checkBus(int result);

/// The values of a message that has come in. Throws BusError for what can't be told: file descriptors, and more values
/// than anybody has use for.
BusMessage readBusMessage(sd_bus_message* message);
/// The reply to a call, be it an error or not.
BusReply readBusReply(sd_bus_message* message);
/// Throws BusError for values that are not of the signature, or text that the bus does not carry.
void writeBusMessage(sd_bus_message* message, const BusMessage& content);

/// A call that is ready to be sent. Throws as writeBusMessage() does.
BusMessageHandle makeBusCall(sd_bus& bus, const BusCall& call);

} // namespace quillorn
