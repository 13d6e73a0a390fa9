#pragma once

#include "API/APIError.h"
#include "HTTP/HttpRequest.h"
#include "Records/WireRecord.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// The route's variable of that name (":id" or "id"). Throws APIError when it is missing or no UUID.
UUID pathUUID(const HttpRequest& request, const std::string& name);

/// The first query parameter of exactly that name, as the client sent it: escapes undecoded.
std::optional<std::string> queryValue(const HttpRequest& request, std::string_view name);
/// True for "true", "1" and "yes" in any case, false for every other value.
std::optional<bool> queryBool(const HttpRequest& request, std::string_view name);
/// Absent also for what is no decimal integer.
std::optional<std::int64_t> queryInt(const HttpRequest& request, std::string_view name);
/// Absent also for what is no UUID.
std::optional<UUID> queryUUID(const HttpRequest& request, std::string_view name);

/// Fills `record` from the body; throws APIError::invalidJSON when that is not such a record.
void decodeBody(const HttpRequest& request, const RecordType& type, void* record);
/// Throws the bad request that lists `faults` unless there are none.
void throwIfAny(std::vector<std::string> faults);

/// The decoded body, after its own rules have passed where it has some; those are its `faults()`.
template <WireRecord Record>
Record decodeBody(const HttpRequest& request) {
    Record record;
    decodeBody(request, Record::recordType(), &record);
    if constexpr (requires { record.faults(); })
        throwIfAny(record.faults());
    return record;
}

} // namespace quillorn
