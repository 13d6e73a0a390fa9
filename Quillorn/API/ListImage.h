#pragma once

#include "API/JsonResponse.h"
#include "Store/ModelContext.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

/// The text of a whole list, good until the next commit. Passing time alone changes little in it: what it does at a
/// known moment ends the image, and what it does all the time, by a running timer, is read again for each answer.
struct ListImage {
    /// One record, from behind the comma before it to its end.
    struct Moving {
        std::size_t begin;
        std::size_t end;
        RowKey key;
    };

    static constexpr std::size_t maximumSize = 128 << 20;
    static constexpr std::size_t maximumMoving = 16;

    std::string text{};
    std::vector<Moving> moving{};
    Date from{};
    Date until = Date::max();
};

/// Rows that tell of each record the instant after which passing time changes it: the present one for a record that
/// changes all the time, absent for never.
template <class Rows>
concept ImageableRows = requires(const Rows& rows, std::size_t index) {
    { rows.changesAfter(index) } -> std::same_as<std::optional<Date>>;
    { rows.key(index) } -> std::same_as<RowKey>;
};

/// Null for a list that is too long, or has too much that moves.
template <ImageableRows Rows>
std::shared_ptr<const ListImage> imageOf(const Rows& rows, Date now) {
    auto image = std::make_shared<ListImage>(ListImage{.from = now});
    JsonWriter writer([&](std::string_view piece) { image->text += piece; });
    typename Rows::Record record;
    writer.beginArray();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows.fill(i, record);
        const std::optional<Date> change = rows.changesAfter(i);
        if (change && *change <= now) {
            writer.finish();
            const std::size_t begin = image->text.size() + (i == 0 ? 0 : 1); // the comma
            write(writer, record);
            writer.finish();
            image->moving.push_back({begin, image->text.size(), rows.key(i)});
        } else {
            image->until = std::min(image->until, change.value_or(Date::max()));
            write(writer, record);
        }
        if (image->text.size() > ListImage::maximumSize || image->moving.size() > ListImage::maximumMoving)
            return nullptr;
    }
    writer.endArray();
    writer.finish();
    image->text.shrink_to_fit();
    return image;
}

/// The records that move, as they are at `now`; absent when one of them is gone. In `context` nothing may be newer than
/// the image.
template <ImageableRows Rows>
std::optional<std::vector<std::string>> movingRecords(ModelContext& context, const ListImage& image, Date now) {
    std::vector<typename Rows::Object*> objects;
    for (const ListImage::Moving& moving : image.moving)
        for (auto* object : context.fetch<typename Rows::Object>({.where = "key = ?", .values = {moving.key}}))
            objects.push_back(object);
    if (objects.size() != image.moving.size())
        return std::nullopt;
    const Rows rows(context, std::move(objects), now);
    std::vector<std::string> records(rows.size());
    typename Rows::Record record;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows.fill(i, record);
        // In a list of its own, for the depth of its lines; the brackets go.
        const std::string list = jsonText([&](JsonWriter& writer) {
            writer.beginArray();
            write(writer, record);
            writer.endArray();
        });
        records[i] = list.substr(1, list.size() - 3);
    }
    return records;
}

/// Sends the image with these in place of its own moving records.
HttpResponse imageResponse(std::shared_ptr<const ListImage> image, std::vector<std::string> moving = {});

} // namespace quillorn
