#include "Platform/PropertyList.h"

#include "Platform/Date.h"
#include "Platform/FileContent.h"

#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <plist/plist.h>
#include <stdexcept>
#include <string>

namespace quillorn {

namespace {

constexpr std::uintmax_t largestFile = std::uintmax_t{16} * 1024 * 1024;
constexpr int deepestNesting = 64;

/// Dates of property lists count from the beginning of 2001.
constexpr std::int64_t secondsTo2001 = 978307200;

struct Release {
    void operator()(void* node) const { plist_free(node); }
    void operator()(char* text) const { std::free(text); }
};
using Text = std::unique_ptr<char, Release>;

std::optional<Json> valueOf(plist_t node, int depth);

std::string base64(std::string_view bytes) {
    static constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        std::uint32_t group = 0;
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
        for (std::size_t byte = 0; byte < 3; ++byte)
            group = group << 8U | (byte < count ? static_cast<unsigned char>(bytes[at + byte]) : 0U);
        for (std::size_t digit = 0; digit < 4; ++digit)
            text += digit <= count ? digits[group >> (18 - 6 * digit) & 63U] : '=';
    }
    return text;
}

std::optional<Json> textOf(plist_t node) {
    char* value = nullptr;
    plist_get_string_val(node, &value);
    const Text text(value);
    return text ? std::optional(Json(std::string(text.get()))) : std::nullopt;
}

std::optional<Json> dataOf(plist_t node) {
    char* value = nullptr;
    std::uint64_t length = 0;
    plist_get_data_val(node, &value, &length);
    const Text bytes(value);
    return Json(base64({bytes.get(), bytes ? static_cast<std::size_t>(length) : 0}));
}

std::optional<Json> dateOf(plist_t node) {
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return Json(formatISO8601(Date{} + std::chrono::seconds{secondsTo2001 + seconds}));
}

Json::Object membersOf(plist_t node, int depth) {
    Json::Object members;
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(node, &position);
    const std::unique_ptr<char, Release> owner(static_cast<char*>(position));
    for (;;) {
        char* key = nullptr;
        plist_t member = nullptr;
        plist_dict_next_item(node, position, &key, &member);
        const Text name(key);
        if (member == nullptr || !name)
            return members;
        if (auto value = valueOf(member, depth))
            members.insert_or_assign(name.get(), std::move(*value));
    }
}

std::optional<Json> valueOf(plist_t node, int depth) {
    if (depth > deepestNesting)
        return std::nullopt;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return Json(value != 0);
    }
    case PLIST_UINT: {
        std::uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return Json(static_cast<std::int64_t>(value));
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return std::isfinite(value) ? std::optional(Json(value)) : std::nullopt;
    }
    case PLIST_STRING:
        return textOf(node);
    case PLIST_DATA:
        return dataOf(node);
    case PLIST_DATE:
        return dateOf(node);
    case PLIST_DICT:
        return Json(membersOf(node, depth + 1));
    case PLIST_ARRAY: {
        Json::Array items;
        for (std::uint32_t index = 0; index < plist_array_get_size(node); ++index)
            if (auto value = valueOf(plist_array_get_item(node, index), depth + 1))
                items.push_back(std::move(*value));
        return Json(std::move(items));
    }
    default:
        return std::nullopt;
    }
}

} // namespace

Json::Object readPropertyList(const std::filesystem::path& file) {
    if (std::filesystem::file_size(file) > largestFile)
        throw std::runtime_error(file.string() + " is too large for a property list");
    const std::string content = readWhole(openFile(file));
    plist_t node = nullptr;
    plist_from_memory(content.data(), static_cast<std::uint32_t>(content.size()), &node);
    const std::unique_ptr<void, Release> list(node);
    if (!list || plist_get_node_type(node) != PLIST_DICT)
        throw std::runtime_error(file.string() + " is no property list of settings");
    return membersOf(node, 0);
}

} // namespace quillorn
