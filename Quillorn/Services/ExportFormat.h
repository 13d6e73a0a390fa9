#pragma once

#include "Platform/Date.h"
#include "Platform/Json.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

struct Column;
struct EntityType;

inline constexpr std::string_view exportFormatName = "quillorn-export";
inline constexpr std::int64_t exportFormatVersion = 1;

/// A member of an exported record, as it follows from a column of the store.
struct ExportField {
    /// `id` is an identifier by value, `reference` the id of a record of another table.
    enum class Kind { text, flag, number, date, id, reference };

    std::string name;
    Kind kind{};
    bool isRequired = false;
    /// Of a number: the values are 0 up to this, where it is not negative.
    std::int64_t most = -1;
    const Column* column = nullptr;
};

/// A table of the export, in the order in which records refer to earlier ones.
struct ExportTable {
    std::string_view name;
    const EntityType* type;
    std::vector<ExportField> fields;
};
/// Tasks also have "tagIds".
const std::vector<ExportTable>& exportTables();
inline constexpr std::string_view exportedTags = "tagIds";

/// "2026-01-02T03:04:05.123456Z".
std::string exportedDate(Date date);
/// Reads that form, also with fewer digits or without a fraction, and with an offset. Absent for anything else.
std::optional<Date> parseExportedDate(std::string_view text);

/// What a JSON Schema says of the format.
Json exportSchema();

} // namespace quillorn
