#pragma once

#include <cstdint>

namespace quillorn {

/// Lets this process open as many files and sockets as the system allows it. Returns the limit now in force.
std::uint64_t raiseDescriptorLimit();

/// Keeps memory that many short-lived threads have used from staying with the process. To be called once, before
/// any other thread starts.
void configureMemory();

/// Lets the rest of the system go before the calling thread, for as long as it runs.
void lowerThreadPriority();

/// Gives memory that was freed back to the system; for the end of work that needed much of it.
void releaseFreeMemory();

} // namespace quillorn
