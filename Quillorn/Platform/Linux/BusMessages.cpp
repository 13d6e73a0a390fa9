#include "Platform/Linux/BusMessages.h"

#include <cstring>
#include <fmt/core.h>
#include <limits>
#include <optional>
#include <string_view>
#include <systemd/sd-bus.h>
#include <type_traits>

namespace quillorn {

namespace {

/// Peers of the bus may send 128 MB; what we understand is far from that.
constexpr std::size_t maximumValues = 100'000;
constexpr int maximumDepth = 64;

[[noreturn]] void refuse(const std::string& words) {
    throw BusError("org.freedesktop.DBus.Error.InvalidArgs", words);
}

class Reader {
  public:
    explicit Reader(sd_bus_message* message) : m_message(message) {}

    /// The rest of the container at hand.
    BusValue::List values() {
        BusValue::List list;
        char type = 0;
        const char* contents = nullptr;
        while (checkBus(sd_bus_message_peek_type(m_message, &type, &contents)) > 0)
            list.push_back(value(type, contents));
        return list;
    }

  private:
    BusValue value(char type, const char* contents) {
        if (++m_count > maximumValues || m_depth > maximumDepth)
            throw BusError("org.freedesktop.DBus.Error.LimitsExceeded", "The message holds too much");
        switch (type) {
        case SD_BUS_TYPE_BOOLEAN:
            return read<int>(type) != 0;
        case SD_BUS_TYPE_BYTE:
            return integer<std::uint8_t>(type);
        case SD_BUS_TYPE_INT16:
            return integer<std::int16_t>(type);
        case SD_BUS_TYPE_UINT16:
            return integer<std::uint16_t>(type);
        case SD_BUS_TYPE_INT32:
            return integer<std::int32_t>(type);
        case SD_BUS_TYPE_UINT32:
            return integer<std::uint32_t>(type);
        case SD_BUS_TYPE_INT64:
            return integer<std::int64_t>(type);
        case SD_BUS_TYPE_UINT64:
            return integer<std::uint64_t>(type);
        case SD_BUS_TYPE_DOUBLE:
            return read<double>(type);
        case SD_BUS_TYPE_STRING:
        case SD_BUS_TYPE_OBJECT_PATH:
        case SD_BUS_TYPE_SIGNATURE:
            return read<const char*>(type);
        case SD_BUS_TYPE_ARRAY:
            return array(contents);
        case SD_BUS_TYPE_STRUCT:
        case SD_BUS_TYPE_DICT_ENTRY:
            return inside(type, contents);
        case SD_BUS_TYPE_VARIANT: {
            BusValue::List held = inside(type, contents);
            return held.empty() ? BusValue() : BusValue::variant(contents, std::move(held.front()));
        }
        default:
            throw BusError("org.freedesktop.DBus.Error.NotSupported", fmt::format("No values of type {}", type));
        }
    }

    template <typename Type>
    Type read(char type) {
        Type value{};
        checkBus(sd_bus_message_read_basic(m_message, type, static_cast<void*>(&value)));
        return value;
    }

    template <typename Type>
    BusValue integer(char type) {
        const Type value = read<Type>(type);
        if (!std::in_range<std::int64_t>(value))
            throw BusError("org.freedesktop.DBus.Error.NotSupported", "A number is too large");
        return static_cast<std::int64_t>(value);
    }

    BusValue::List inside(char type, const char* contents) {
        ++m_depth;
        checkBus(sd_bus_message_enter_container(m_message, type, contents));
        BusValue::List list = values();
        checkBus(sd_bus_message_exit_container(m_message));
        --m_depth;
        return list;
    }

    BusValue array(const char* contents) {
        const bool isDictionary = contents[0] == SD_BUS_TYPE_DICT_ENTRY_BEGIN && std::strchr("sog", contents[1]);
        BusValue::List list = inside(SD_BUS_TYPE_ARRAY, contents);
        if (!isDictionary)
            return list;
        BusValue::Dictionary dictionary;
        for (const BusValue& entry : list)
            dictionary.insert_or_assign(*entry.asList()->at(0).asString(), entry.asList()->at(1));
        return dictionary;
    }

    sd_bus_message* m_message;
    std::size_t m_count = 0;
    int m_depth = 0;
};

/// The length of the first complete type of a signature that is one.
std::size_t firstTypeLength(std::string_view signature) {
    std::size_t length = signature.find_first_not_of('a');
    if (length == std::string_view::npos)
        refuse(fmt::format("No signature: {}", signature));
    int open = 0;
    do {
        if (length == signature.size())
            refuse(fmt::format("No signature: {}", signature));
        const char character = signature[length++];
        open += (character == '(' || character == '{') - (character == ')' || character == '}');
    } while (open > 0);
    return length;
}

class Writer {
  public:
    explicit Writer(sd_bus_message* message) : m_message(message) {}

    void values(std::string_view signature, const BusValue::List& list) {
        for (const BusValue& item : list) {
            const std::size_t length = firstTypeLength(signature);
            value(signature.substr(0, length), item);
            signature.remove_prefix(length);
        }
        if (!signature.empty())
            refuse(fmt::format("A value of type {} is missing", signature));
    }

  private:
    void value(std::string_view type, const BusValue& item) {
        switch (type.front()) {
        case SD_BUS_TYPE_BOOLEAN: {
            const int flag = *expect(item.asBool(), type);
            return append(type, &flag);
        }
        case SD_BUS_TYPE_BYTE:
            return integer<std::uint8_t>(type, item);
        case SD_BUS_TYPE_INT16:
            return integer<std::int16_t>(type, item);
        case SD_BUS_TYPE_UINT16:
            return integer<std::uint16_t>(type, item);
        case SD_BUS_TYPE_INT32:
            return integer<std::int32_t>(type, item);
        case SD_BUS_TYPE_UINT32:
            return integer<std::uint32_t>(type, item);
        case SD_BUS_TYPE_INT64:
            return integer<std::int64_t>(type, item);
        case SD_BUS_TYPE_UINT64:
            return integer<std::uint64_t>(type, item);
        case SD_BUS_TYPE_DOUBLE:
            return append(type, expect(item.asDouble(), type));
        case SD_BUS_TYPE_STRING:
        case SD_BUS_TYPE_OBJECT_PATH:
        case SD_BUS_TYPE_SIGNATURE:
            return text(type, *expect(item.asString(), type));
        case SD_BUS_TYPE_ARRAY:
            return array(type.substr(1), item);
        case SD_BUS_TYPE_STRUCT_BEGIN:
            return inside(SD_BUS_TYPE_STRUCT, type.substr(1, type.size() - 2), *expect(item.asList(), type));
        case SD_BUS_TYPE_DICT_ENTRY_BEGIN:
            return inside(SD_BUS_TYPE_DICT_ENTRY, type.substr(1, type.size() - 2), *expect(item.asList(), type));
        case SD_BUS_TYPE_VARIANT:
            return inside(SD_BUS_TYPE_VARIANT, item.variantSignature(), {item});
        default:
            refuse(fmt::format("No values of type {}", type));
        }
    }

    template <typename Value>
    const Value* expect(const Value* value, std::string_view type) {
        if (value == nullptr)
            refuse(fmt::format("A value is not of type {}", type));
        return value;
    }

    void append(std::string_view type, const void* value) {
        checkBus(sd_bus_message_append_basic(m_message, type.front(), value));
    }

    template <typename Type>
    void integer(std::string_view type, const BusValue& item) {
        const std::int64_t wide = *expect(item.asInteger(), type);
        if (!std::in_range<Type>(wide))
            refuse(fmt::format("{} is no number of type {}", wide, type));
        const auto value = static_cast<Type>(wide);
        append(type, &value);
    }

    void text(std::string_view type, const std::string& value) {
        if (value.find('\0') != std::string::npos)
            refuse("A text holds a zero byte");
        append(type, value.c_str());
    }

    void array(std::string_view element, const BusValue& item) {
        BusValue::List pairs;
        if (const auto* dictionary = item.asDictionary(); dictionary != nullptr && element.front() == '{')
            for (const auto& [key, value] : *dictionary)
                pairs.emplace_back(BusValue::List{key, value});
        const BusValue::List& items = item.asDictionary() ? pairs : *expect(item.asList(), element);
        open(SD_BUS_TYPE_ARRAY, element);
        for (const BusValue& each : items)
            value(element, each);
        checkBus(sd_bus_message_close_container(m_message));
    }

    void inside(char type, std::string_view contents, const BusValue::List& list) {
        open(type, contents);
        values(contents, list);
        checkBus(sd_bus_message_close_container(m_message));
    }

    void open(char type, std::string_view contents) {
        checkBus(sd_bus_message_open_container(m_message, type, std::string(contents).c_str()));
    }

    sd_bus_message* m_message;
};

} // namespace

void BusMessageDeleter::operator()(sd_bus_message* message) const {
    sd_bus_message_unref(message);
}

void BusSlotDeleter::operator()(sd_bus_slot* slot) const {
    sd_bus_slot_unref(slot);
}

BusError busErrorOf(int result) {
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_error_set_errno(&error, result);
    BusError made(error.name ? error.name : busErrorFailed, error.message ? error.message : "Unknown error");
    sd_bus_error_free(&error);
    return made;
}

int checkBus(int result) {
    if (result < 0)
        throw BusError(busErrorOf(result));
    return result;
}

BusMessage readBusMessage(sd_bus_message* message) {
    const char* signature = sd_bus_message_get_signature(message, 1);
    return {signature ? signature : "", Reader(message).values()};
}

BusReply readBusReply(sd_bus_message* message) {
    if (sd_bus_message_is_method_error(message, nullptr)) {
        const sd_bus_error* error = sd_bus_message_get_error(message);
        return BusError(error->name ? error->name : busErrorFailed, error->message ? error->message : "");
    }
    try {
        return readBusMessage(message);
    } catch (const BusError& error) {
        return error;
    }
}

void writeBusMessage(sd_bus_message* message, const BusMessage& content) {
    Writer(message).values(content.signature, content.values);
}

BusMessageHandle makeBusCall(sd_bus& bus, const BusCall& call) {
    sd_bus_message* made = nullptr;
    checkBus(sd_bus_message_new_method_call(&bus, &made, call.service.c_str(), call.path.c_str(),
                                            call.interface.empty() ? nullptr : call.interface.c_str(),
                                            call.member.c_str()));
    BusMessageHandle message(made);
    writeBusMessage(message.get(), call.arguments);
    return message;
}

} // namespace quillorn
