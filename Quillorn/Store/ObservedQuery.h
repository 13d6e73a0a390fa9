#pragma once

#include "Store/MainContext.h"

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillorn {

/// Which rows a query or a count has, in SQL over the columns of the type's table. A condition that depends on the
/// present moment gets it as a value; whoever made it assigns another one in time.
struct ObservedCondition {
    /// How rows of the query follow from changed rows of another type, or of its own, on which the condition, the order
    /// or what is shown of a row depends. Who enters or leaves one of a row's lists changes the row by itself.
    struct Dependency {
        const EntityType* type;
        /// A condition over the query's table in which "IN changed" stands for the keys of the changed rows, such as
        /// "project IN changed". Empty: then everything is read again.
        std::string rows{};
    };

    /// Without WHERE; empty for all rows.
    std::string where{};
    std::vector<SQLValue> values{};
    std::vector<Dependency> dependencies{};
};

/// A step from the former rows to the present ones. Each step begins with what the step before has left.
struct RowStep {
    enum class Kind { removed, inserted, moved, changed };

    Kind kind = Kind::changed;
    std::size_t place = 0; // after the step; of a removed row before it
    RowKey key = 0;
    UUID id{};
    std::size_t from = 0; // of a moved row
};

struct RowSteps {
    std::vector<RowStep> steps{};
    /// There are too many steps, or they are unknown: all rows are new.
    bool isReplaced = false;
};

/// What queries and counts have in common.
class ConditionFollower {
  public:
    ConditionFollower(MainContext& main, const EntityType& type, ObservedCondition condition);

    MainContext& main() const { return m_main; }
    const EntityType& type() const { return m_type; }
    void assign(ObservedCondition condition) { m_condition = std::move(condition); }

    /// The rows that have to be looked at after these changes; absent for all rows. Throws StoreError.
    std::optional<std::vector<RowKey>> affected(const ChangeSet& changes) const;
    /// Rows of the condition: of all, or of those with these keys.
    Query query() const { return {.where = m_condition.where, .values = m_condition.values}; }
    Query query(const std::vector<RowKey>& keys) const;

  private:
    void follow(const ObservedCondition::Dependency& dependency, const std::vector<RowKey>& changed,
                std::vector<RowKey>& keys) const;

    MainContext& m_main;
    const EntityType& m_type;
    ObservedCondition m_condition;
};

/// The part of ObservedQuery that knows no type.
class ObservedRows {
  public:
    using Before = std::function<bool(const Entity&, const Entity&)>;
    using Observer = std::function<void(const RowSteps&)>;

    ObservedRows(MainContext& main, const EntityType& type, ObservedCondition condition, Before before);
    ~ObservedRows();
    ObservedRows(const ObservedRows&) = delete;
    ObservedRows& operator=(const ObservedRows&) = delete;

    std::size_t size() const { return m_rows.size(); }
    Entity& at(std::size_t place) const { return *m_rows[place]; }
    [[nodiscard]] Observation observe(Observer observer) { return m_observers.add(std::move(observer)); }
    void assign(ObservedCondition condition, Before before);

  private:
    using Objects = std::vector<Entity*>;

    /// What a look at the store has found, to be shown when all others have looked too.
    struct Found {
        bool isEverything = false;
        Objects affected{}; // that are shown, and may leave, move or have changed
        Objects matching{}; // in order
    };

    bool isBefore(const Entity* a, const Entity* b) const;
    void load();
    void read(const ChangeSet& changes);
    Objects fetch(const Query& query) const;
    Objects shown(const std::vector<RowKey>& keys) const;
    void addUnsavedRows(Found& found) const;
    void show();
    /// Holds these in place of those.
    static void replace(const Objects& former, const Objects& next);
    RowSteps stepsTo(const Objects& rows, const Found& found) const;

    ConditionFollower m_follower;
    Before m_before;
    Objects m_rows;               // each of them held
    std::optional<Found> m_found; // by the last look
    bool m_isStale = true;
    Observers<const RowSteps&> m_observers;
    Observation m_reading;
    Observation m_showing;
};

/// The records of a condition in an order, kept up to date on the main context: it reads what has changed, not all. By
/// what is saved, as every fetch; `before` compares what the objects hold. Without it, and among equals, the order is
/// that of insertion. Its objects stay for as long as they are rows. When the store can't be read it tries again, and
/// shows what it had. It ends before the main context.
template <class Type>
class ObservedQuery {
  public:
    using Before = std::function<bool(const Type&, const Type&)>;

    explicit ObservedQuery(MainContext& main, ObservedCondition condition = {}, Before before = {})
        : m_rows(main, Type::entityType(), std::move(condition), erased(std::move(before))) {}

    std::size_t size() const { return m_rows.size(); }
    Type& operator[](std::size_t place) const { return static_cast<Type&>(m_rows.at(place)); }
    /// Told when the rows are as described.
    [[nodiscard]] Observation observe(ObservedRows::Observer observer) { return m_rows.observe(std::move(observer)); }
    /// Another condition or order; told as replaced.
    void assign(ObservedCondition condition, Before before = {}) {
        m_rows.assign(std::move(condition), erased(std::move(before)));
    }

  private:
    static ObservedRows::Before erased(Before before) {
        if (!before)
            return {};
        return [before = std::move(before)](const Entity& a, const Entity& b) {
            return before(static_cast<const Type&>(a), static_cast<const Type&>(b));
        };
    }

    ObservedRows m_rows;
};

/// How many rows a condition has, kept up to date on the main context without an object for any of them.
class ObservedCount {
  public:
    ObservedCount(MainContext& main, const EntityType& type, ObservedCondition condition = {});
    ~ObservedCount() = default;
    ObservedCount(const ObservedCount&) = delete;
    ObservedCount& operator=(const ObservedCount&) = delete;

    std::size_t value() const { return m_keys.size(); }
    /// Told when it has become another one.
    [[nodiscard]] Observation observe(std::function<void(std::size_t)> observer) {
        return m_observers.add(std::move(observer));
    }
    void assign(ObservedCondition condition);

  private:
    struct Found {
        bool isEverything = false;
        std::vector<RowKey> affected{};
        std::vector<RowKey> matching{};
    };

    void load();
    void read(const ChangeSet& changes);
    std::vector<RowKey> fetch(const Query& query) const;
    void show();

    ConditionFollower m_follower;
    std::unordered_set<RowKey> m_keys;
    std::optional<Found> m_found;
    bool m_isStale = true;
    Observers<std::size_t> m_observers;
    Observation m_reading;
    Observation m_showing;
};

} // namespace quillorn
