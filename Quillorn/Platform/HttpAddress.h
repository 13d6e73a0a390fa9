#pragma once

#include <optional>
#include <string>

namespace quillorn {

// Addresses as the HTTP library reads them, so that no other server is meant than the one that is called.

/// The host of an address of a web server; absent for what is none.
std::optional<std::string> hostOfAddress(const std::string& address);
/// The address that `location` means for the answer of `address`, where it is on the same server.
std::optional<std::string> redirectedAddress(const std::string& address, const std::string& location);

} // namespace quillorn
