#pragma once

#include "Platform/Observers.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillorn {

/// One step in which a list changes.
struct ListStep {
    enum class Kind {
        inserted,
        removed,
        /// One row, which stands at `target` afterwards.
        moved,
        /// The rows hold other values; their places are the same.
        changed,
    };

    Kind kind = Kind::changed;
    std::size_t first = 0;
    std::size_t count = 1;
    std::size_t target = 0;

    friend bool operator==(const ListStep&, const ListStep&) = default;
};

/// For each value its place in a longest run of values that increase, as flags.
std::vector<bool> longestIncreasingRun(std::span<const std::size_t> values);

/// The rows of a screen's list, which tells how it changes. A Row has an `id` that std::hash knows, unique in the list,
/// and is compared with ==. Belongs to the main thread.
template <typename Row>
class ObservableList {
  public:
    enum class Moment { before, after };
    /// Called around each step: before, the rows are those that the step finds.
    using Handler = std::function<void(const ListStep&, Moment)>;

    /// Beyond these a list is written over in place instead: more steps cost more than they spare.
    static constexpr std::size_t mostSteps = 64;
    static constexpr std::size_t mostRowsComingOrGoing = 256;

    const std::vector<Row>& rows() const { return m_rows; }
    std::size_t size() const { return m_rows.size(); }
    bool isEmpty() const { return m_rows.empty(); }
    const Row& operator[](std::size_t index) const { return m_rows[index]; }

    [[nodiscard]] Observation observe(Handler handler) { return m_observers.add(std::move(handler)); }

    /// Becomes `next` in the fewest steps that leave the longest run of common rows where it is.
    void assign(std::vector<Row> next);

    void insert(std::size_t index, Row row) {
        step({ListStep::Kind::inserted, index}, [&] { m_rows.insert(at(index), std::move(row)); });
    }
    void remove(std::size_t index, std::size_t count = 1) {
        step({ListStep::Kind::removed, index, count}, [&] { m_rows.erase(at(index), at(index + count)); });
    }
    void move(std::size_t from, std::size_t target) {
        step({ListStep::Kind::moved, from, 1, target}, [&] {
            if (from < target)
                std::rotate(at(from), at(from + 1), at(target + 1));
            else
                std::rotate(at(target), at(from), at(from + 1));
        });
    }
    /// Says nothing when the row is equal.
    void change(std::size_t index, Row row) {
        if (m_rows[index] != row)
            step({ListStep::Kind::changed, index}, [&] { m_rows[index] = std::move(row); });
    }

  private:
    using Id = std::remove_cvref_t<decltype(std::declval<Row>().id)>;

    /// How the rows between the common ends come to their new state.
    struct Plan {
        static constexpr std::size_t isNew = static_cast<std::size_t>(-1);

        /// For each old row its new place, or nothing for one that goes.
        std::vector<std::optional<std::size_t>> places;
        /// For each new row whether it stays where it is.
        std::vector<bool> stays;
        std::vector<bool> isKnown;
        std::size_t steps = 0;
        std::size_t comingOrGoing = 0;
    };

    Plan plan(std::span<const Row> old, std::span<const Row> next) const;
    void removeGone(std::size_t start, const Plan& plan);
    void placeRest(std::size_t start, std::span<Row> next, const Plan& plan);
    void changeInPlace(std::size_t start, std::span<Row> next);
    void overwrite(std::size_t start, std::size_t oldCount, std::span<Row> next);
    void insertRun(std::size_t index, std::span<Row> rows) {
        step({ListStep::Kind::inserted, index, rows.size()}, [&] {
            m_rows.insert(at(index), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
        });
    }

    auto at(std::size_t index) { return m_rows.begin() + static_cast<std::ptrdiff_t>(index); }

    template <typename Change>
    void step(const ListStep& step, const Change& change) {
        m_observers.tell(step, Moment::before);
        change();
        m_observers.tell(step, Moment::after);
    }

    std::vector<Row> m_rows;
    Observers<const ListStep&, Moment> m_observers;
};

template <typename Row>
void ObservableList<Row>::assign(std::vector<Row> next) {
    const std::size_t shorter = std::min(m_rows.size(), next.size());
    std::size_t start = 0;
    while (start < shorter && m_rows[start].id == next[start].id)
        ++start;
    std::size_t tail = 0;
    while (tail < shorter - start && m_rows[m_rows.size() - 1 - tail].id == next[next.size() - 1 - tail].id)
        ++tail;

    const std::size_t oldCount = m_rows.size() - start - tail;
    const std::span<Row> middle(next.data() + start, next.size() - start - tail);
    if (std::max(oldCount, middle.size()) - std::min(oldCount, middle.size()) > mostRowsComingOrGoing) {
        overwrite(start, oldCount, middle); // without a plan: it would say the same
    } else if (oldCount > 0 || !middle.empty()) {
        const Plan steps = plan(std::span<const Row>(m_rows.data() + start, oldCount), middle);
        if (steps.steps > mostSteps || steps.comingOrGoing > mostRowsComingOrGoing) {
            overwrite(start, oldCount, middle);
        } else {
            removeGone(start, steps);
            placeRest(start, middle, steps);
            changeInPlace(start, middle);
        }
    }
    changeInPlace(0, std::span<Row>(next.data(), start));
    changeInPlace(m_rows.size() - tail, std::span<Row>(next.data() + next.size() - tail, tail));
}

template <typename Row>
ObservableList<Row>::Plan ObservableList<Row>::plan(std::span<const Row> old, std::span<const Row> next) const {
    std::unordered_map<Id, std::size_t> newPlaces;
    newPlaces.reserve(next.size());
    for (std::size_t index = 0; index < next.size(); ++index)
        newPlaces.emplace(next[index].id, index);

    Plan plan;
    plan.isKnown.resize(next.size());
    plan.stays.resize(next.size());
    std::vector<std::size_t> kept;
    bool inRun = false;
    for (const Row& row : old) {
        const auto found = newPlaces.find(row.id);
        const bool goes = found == newPlaces.end();
        plan.places.push_back(goes ? std::nullopt : std::optional(found->second));
        plan.steps += goes && !inRun ? 1 : 0;
        plan.comingOrGoing += goes ? 1 : 0;
        inRun = goes;
        if (!goes) {
            plan.isKnown[found->second] = true;
            kept.push_back(found->second);
        }
    }
    const std::vector<bool> run = longestIncreasingRun(kept);
    for (std::size_t index = 0; index < kept.size(); ++index) {
        plan.stays[kept[index]] = run[index];
        plan.steps += run[index] ? 0 : 1;
    }
    for (std::size_t index = 0; index < next.size(); ++index) {
        const bool comes = !plan.isKnown[index];
        plan.steps += comes && (index == 0 || plan.isKnown[index - 1]) ? 1 : 0;
        plan.comingOrGoing += comes ? 1 : 0;
    }
    return plan;
}

/// From the end, so that places in front keep their meaning.
template <typename Row>
void ObservableList<Row>::removeGone(std::size_t start, const Plan& plan) {
    for (std::size_t end = plan.places.size(); end > 0;) {
        if (plan.places[end - 1]) {
            --end;
            continue;
        }
        std::size_t first = end - 1;
        while (first > 0 && !plan.places[first - 1])
            --first;
        remove(start + first, end - first);
        end = first;
    }
}

/// Row by row in the new order: what stays is walked to, over rows that are still to be moved; all else is put behind
/// the row before it.
template <typename Row>
void ObservableList<Row>::placeRest(std::size_t start, std::span<Row> next, const Plan& plan) {
    std::size_t cursor = start;
    for (std::size_t index = 0; index < next.size(); ++index) {
        if (!plan.isKnown[index]) {
            std::size_t end = index + 1;
            while (end < next.size() && !plan.isKnown[end])
                ++end;
            // Copied, since their values are compared once more at the end.
            std::vector<Row> run(next.begin() + static_cast<std::ptrdiff_t>(index),
                                 next.begin() + static_cast<std::ptrdiff_t>(end));
            insertRun(cursor, run);
            cursor += end - index;
            index = end - 1;
            continue;
        }
        const auto has = [&](const Row& row) { return row.id == next[index].id; };
        if (plan.stays[index]) {
            cursor = static_cast<std::size_t>(std::find_if(at(cursor), m_rows.end(), has) - m_rows.begin()) + 1;
            continue;
        }
        const auto from = static_cast<std::size_t>(std::find_if(at(start), m_rows.end(), has) - m_rows.begin());
        if (from < cursor)
            --cursor;
        if (from != cursor)
            move(from, cursor);
        ++cursor;
    }
}

template <typename Row>
void ObservableList<Row>::changeInPlace(std::size_t start, std::span<Row> next) {
    for (std::size_t index = 0; index < next.size(); ++index) {
        std::size_t end = index;
        while (end < next.size() && m_rows[start + end] != next[end])
            ++end;
        if (end == index)
            continue;
        step({ListStep::Kind::changed, start + index, end - index}, [&] {
            std::move(next.begin() + static_cast<std::ptrdiff_t>(index),
                      next.begin() + static_cast<std::ptrdiff_t>(end), at(start + index));
        });
        index = end;
    }
}

template <typename Row>
void ObservableList<Row>::overwrite(std::size_t start, std::size_t oldCount, std::span<Row> next) {
    const std::size_t common = std::min(oldCount, next.size());
    if (oldCount > common)
        remove(start + common, oldCount - common);
    changeInPlace(start, next.first(common));
    if (next.size() > common)
        insertRun(start + common, next.subspan(common));
}

} // namespace quillorn
