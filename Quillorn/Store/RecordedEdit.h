#pragma once

#include "Store/ModelContext.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

namespace quillorn {

/// What an edit has done to the records of a context: every changed value with the one before, new and removed rows,
/// links. It can take that back and do it again, and holds ids only, so that it outlives the objects.
class RecordedEdit {
  public:
    enum class Way { back, forth };

    /// Why it can't go that way: a value, a link or a row is not as the edit, or taking it back, has left it.
    struct Conflict {
        enum class Kind {
            missing,
            changed,
            /// A row that would be removed has got others that belong to it.
            inUse,
        };
        Kind kind;
        const EntityType* type;
        UUID id;
        /// Of a changed row: the column or the list.
        std::string_view field{};
    };

    /// Runs `edit`, which changes records of `context` and doesn't save. `stampColumn` is the name of the column that
    /// tells when a row was changed last; it is no value of its own. When `edit` throws, its changes are taken back.
    static RecordedEdit of(ModelContext& context, std::string_view stampColumn, const std::function<void()>& edit);

    /// Whether nothing was changed, stamps apart.
    bool isEmpty() const;
    /// False when it has removed a row that can't come back, since others may have gone with it.
    bool isReversible() const;
    /// Whether it has touched rows of that type.
    bool concerns(const EntityType& type) const;

    std::optional<Conflict> conflict(ModelContext& context, Way way) const;
    /// Changes the records; saving is the caller's. Rows are stamped with `stamp`, or with what they had without one.
    /// There must be no conflict.
    void apply(ModelContext& context, Way way, std::optional<Date> stamp) const;

  private:
    class Recorder;
    class Access;

    struct Cell {
        std::size_t column = 0;
        SQLValue before; // of a reference, the id of its target
        SQLValue after;
    };
    struct Row {
        enum class Kind : std::uint8_t { changed, inserted, removed };
        Kind kind = Kind::changed;
        const EntityType* type = nullptr;
        UUID id;
        std::vector<Cell> cells; // all of them for a row that came or went
    };
    struct Link {
        const ToMany* relation = nullptr;
        const EntityType* ownerType = nullptr;
        UUID owner, other;
        bool isLinked = false; // by the edit
    };

    static const SQLValue& value(const Cell& cell, Way side) { return side == Way::back ? cell.before : cell.after; }
    /// Whether the row is there before it goes that way, and whether it is afterwards.
    static bool isThere(const Row& row, Way side) {
        return row.kind != (side == Way::back ? Row::Kind::inserted : Row::Kind::removed);
    }
    bool removes(const Entity& object, Way way) const;
    std::optional<Conflict> conflict(ModelContext& context, const Row& row, Way way) const;

    std::string_view m_stampColumn;
    std::vector<Row> m_rows;
    std::vector<Link> m_links;
};

} // namespace quillorn
