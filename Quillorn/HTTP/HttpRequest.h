#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

struct HttpRequest {
    /// The target before its query, with the client's percent escapes undecoded.
    std::string path;
    /// In the order of the query, repeated names kept, escapes undecoded.
    std::vector<std::pair<std::string, std::string>> queryParams;
    /// As sent, case kept.
    std::string method;
    /// Names in lower case; of a repeated header the last value.
    std::map<std::string, std::string> headers;
    /// Bytes.
    std::string body;
    /// The peer's numeric address; absent for peers that are not IPv4.
    std::optional<std::string> address;
    /// What the route's variables stand for, decoded; keys have the leading colon (":id").
    std::map<std::string, std::string> params;
};

} // namespace quillorn
