#include "MCP/JSONRPC.h"

namespace quillorn {

template <>
struct WireForm<JSONRPCId> {
    static constexpr WireShape shape{}; // no single one
    static void write(JsonWriter& writer, const JSONRPCId& id) {
        if (const auto* text = std::get_if<std::string>(&id))
            writer.string(*text);
        else
            writer.integer(std::get<std::int64_t>(id));
    }
    static bool read(const Json& json, JSONRPCId& id) {
        return WireForm<std::string>::read(json, id.emplace<std::string>()) ||
               WireForm<std::int64_t>::read(json, id.emplace<std::int64_t>());
    }
};

template <>
struct WireForm<AnyEncodable> {
    static constexpr WireShape shape{}; // any
    static void write(JsonWriter& writer, const AnyEncodable& value) { value.write(writer); }
    static bool read(const Json&, AnyEncodable&) { return false; } // only ever written
};

const RecordType& JSONRPCRequest::recordType() {
    static constexpr auto fields = wireFields<JSONRPCRequest>(
        wireField<&JSONRPCRequest::jsonrpc>("jsonrpc"), wireField<&JSONRPCRequest::id>("id"),
        wireField<&JSONRPCRequest::method>("method"), wireField<&JSONRPCRequest::params>("params"));
    static constexpr RecordType type{"JSONRPCRequest", fields};
    return type;
}

const RecordType& JSONRPCErrorObject::recordType() {
    static constexpr auto fields = wireFields<JSONRPCErrorObject>(wireField<&JSONRPCErrorObject::code>("code"),
                                                                  wireField<&JSONRPCErrorObject::message>("message"),
                                                                  wireField<&JSONRPCErrorObject::data>("data"));
    static constexpr RecordType type{"JSONRPCErrorObject", fields};
    return type;
}

const RecordType& JSONRPCResponse::recordType() {
    static constexpr auto fields = wireFields<JSONRPCResponse>(
        wireField<&JSONRPCResponse::jsonrpc>("jsonrpc"), wireField<&JSONRPCResponse::id>("id"),
        wireField<&JSONRPCResponse::result>("result"), wireField<&JSONRPCResponse::error>("error"));
    static constexpr RecordType type{"JSONRPCResponse", fields};
    return type;
}

} // namespace quillorn
