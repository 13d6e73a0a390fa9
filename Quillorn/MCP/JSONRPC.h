#pragma once

#include "Records/WireRecord.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace quillorn {

/// Which request an answer is for, as the client named it.
using JSONRPCId = std::variant<std::string, std::int64_t>;

struct JSONRPCRequest {
    std::string jsonrpc;
    /// Absent in notifications.
    std::optional<JSONRPCId> id{};
    std::string method;
    std::optional<Json::Object> params{};

    static const RecordType& recordType();
};

struct JSONRPCErrorObject {
    std::int64_t code = 0;
    std::string message;
    std::optional<Json> data{};

    static const RecordType& recordType();
};

/// A value of any type that can be written as JSON; null at first.
class AnyEncodable {
  public:
    AnyEncodable() : AnyEncodable(Json()) {}
    template <class Value>
    explicit AnyEncodable(Value value)
        : m_write([value = std::move(value)](JsonWriter& writer) { WireForm<Value>::write(writer, value); }) {}

    /// Without a copy: `value` has to live as long.
    template <class Value>
    static AnyEncodable reference(const Value& value) {
        AnyEncodable result;
        result.m_write = [&value](JsonWriter& writer) { WireForm<Value>::write(writer, value); };
        return result;
    }

    void write(JsonWriter& writer) const { m_write(writer); }

  private:
    std::function<void(JsonWriter&)> m_write;
};

struct JSONRPCResponse {
    std::string jsonrpc = "2.0";
    std::optional<JSONRPCId> id{};
    std::optional<AnyEncodable> result{};
    std::optional<JSONRPCErrorObject> error{};

    static const RecordType& recordType();
};

/// Why a request is refused by the protocol; thrown while it is handled.
class JSONRPCError : public std::runtime_error {
  public:
    enum Code : std::int64_t {
        parseError = -32700,
        invalidRequest = -32600,
        methodNotFound = -32601,
        invalidParams = -32602,
        internalError = -32603,
        resourceNotFound = -32002,
    };

    JSONRPCError(Code code, const std::string& message) : std::runtime_error(message), m_code(code) {}

    JSONRPCErrorObject object() const { return {.code = m_code, .message = what()}; }

  private:
    Code m_code;
};

} // namespace quillorn
