#pragma once

#include "Platform/FileDescriptor.h"

namespace quillorn {

/// A socket that has something to read whenever routes or interfaces change; without an open one nobody will tell.
FileDescriptor openRouteSocket();

/// Takes what has come there; the routes themselves tell the rest.
void drainRouteSocket(const FileDescriptor& socket);

/// Whether the kernel has a default route, of either family, on an interface that is up and running. True where it
/// can't be asked.
bool hasDefaultRoute();

} // namespace quillorn
