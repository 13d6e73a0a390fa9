#pragma once

#include "Store/ChangeSet.h"
#include "Store/EntityType.h"
#include "Store/KeyMap.h"
#include "Store/ModelContainer.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace quillorn {

/// Which rows a fetch returns, in SQL over the columns of the type's table.
struct Query {
    /// Without WHERE; empty for all rows.
    std::string where{};
    std::vector<SQLValue> values{};
    /// Without ORDER BY; empty for the order of insertion.
    std::string order{};
};

/// A unit of work: fetches records as objects, keeps each row as one object, and writes what was changed in one
/// transaction. It owns its objects, and is used on the thread that made it. All that it reads is one snapshot of the
/// store, up to a save.
///
/// Fetches don't see records that have not been saved; find and relations do.
class ModelContext {
  public:
    enum class Intent {
        /// Reads take no lock; a save writes changed columns over whatever is there by then.
        read,
        /// Holds the write lock from the start to the first save, so that what is written follows from what was read.
        update,
    };

    explicit ModelContext(ModelContainer& container, Intent intent = Intent::read);
    ~ModelContext();
    ModelContext(const ModelContext&) = delete;
    ModelContext& operator=(const ModelContext&) = delete;

    ModelContainer& container() const { return m_container; }

    template <class Type>
    std::vector<Type*> fetch(const Query& query = {}) {
        std::vector<Type*> objects;
        fetchInto(Type::entityType(), query, [&](Entity& object) { objects.push_back(static_cast<Type*>(&object)); });
        return objects;
    }

    /// The record of that id; null when there is none. One that this context has, saved or not, is not looked up. Where
    /// several rows carry the id it is one that this context has, else the oldest.
    template <class Type>
    Type* find(const UUID& id) {
        return static_cast<Type*>(findById(Type::entityType(), id));
    }
    /// The same by row key.
    template <class Type>
    Type* find(RowKey key) {
        return static_cast<Type*>(findByKey(Type::entityType(), key));
    }

    /// Makes a new record with a fresh id. The arguments go to its `initialize`.
    template <class Type, class... Arguments>
    Type& insert(Arguments&&... arguments) {
        auto& object = static_cast<Type&>(insertBlank(Type::entityType()));
        object.initialize(std::forward<Arguments>(arguments)...);
        return object;
    }

    /// Deletes at the next save; the store's rules take along what belongs to it and clear what refers to it.
    void remove(Entity& object);

    /// Writes everything in one transaction. When it throws StoreError, the store and the objects are as before:
    /// StoreBusyError when others were writing for longer than `patience`.
    void save(std::chrono::milliseconds patience);
    /// With the usual patience; that of the main context is short.
    void save() { save(m_patience); }
    /// Runs `work` once, behind the next commit of this context, on its thread; it may read what was saved, and must
    /// not throw. It is forgotten when the context goes without a commit.
    void whenSaved(std::function<void()> work) { m_whenSaved.push_back(std::move(work)); }
    bool hasChanges() const {
        return !m_inserted.empty() || !m_changed.empty() || !m_removed.empty() || !m_links.empty();
    }

    /// For a context that lives on while others write: begins a new snapshot and reads all its objects again, in place.
    /// Objects whose rows are gone are deleted then; what was changed here and is not saved stays as it is; lists load
    /// again on their next touch. A constant number of statements.
    void refresh();

    /// Ends the reading: the connection goes back, and objects keep what they have loaded. For answers that are
    /// written out slowly.
    void endReading();

    /// Database::derived of this context's snapshot, as last saved.
    template <class Value>
    Value& derived() {
        return database().template derived<Value>();
    }

    /// A query of one's own in this context's snapshot.
    StatementLoan statement(std::string_view sql);

  private:
    friend class Entity;
    friend class RelationLoader;
    friend class ContextSave;
    friend class ContextRefresh;
    friend class ContextRelease;
    friend class RecordedEdit;
    friend class MainContext;
    friend class ObservedRows;
    friend class ObservedCount;

    /// The objects of one type.
    struct Registry {
        const EntityType* type = nullptr;
        std::vector<std::unique_ptr<Entity>> objects;
        KeyMap<Entity*> byKey;
        /// Of the first `indexed` objects. May also lead to one that has another id by now.
        std::unordered_map<UUID, Entity*> byId;
        std::size_t indexed = 0;
    };
    /// An unsaved change of a link: the table's first and second object, and whether they are to be linked.
    struct LinkChange {
        const ToMany* relation; // as seen from the owner
        Entity* owner;
        Entity* other;
        bool linked;
    };

    template <class Visit>
    void fetchInto(const EntityType& type, const Query& query, const Visit& visit) {
        std::string sql = type.select;
        if (!query.where.empty())
            sql += " WHERE " + query.where;
        sql += " ORDER BY " + (query.order.empty() ? "key" : query.order);
        const StatementLoan rows = statement(sql);
        rows->bindAll(query.values);
        Registry& registry = registryOf(type);
        while (rows->step())
            if (Entity& object = objectFromRow(registry, *rows); !object.isDeleted())
                visit(object);
    }

    /// With the write lock at hand.
    void save(WriteLock::Guard turn);
    Entity* findById(const EntityType& type, const UUID& id);
    Entity* findByKey(const EntityType& type, RowKey key);
    void checkThread() const;
    /// To be called when a reading begins, and before anything is changed.
    void noteUse() const {
        if (m_used)
            m_used();
    }
    Registry& registryOf(const EntityType& type);
    Database& database();
    /// The object of the row that the statement stands on, made if need be.
    Entity& objectFromRow(Registry& registry, const Statement& row);
    Entity& insertBlank(const EntityType& type);
    void noteChanged(Entity& object);
    void noteLink(const ToMany& relation, Entity& owner, Entity& other, bool linked);
    void loadReferences(const EntityType& type, std::size_t column);
    void loadList(const EntityType& type, std::size_t relation);
    /// The store's rules reach rows alone; what is not saved yet goes with its owner here.
    void removeUnsavedBelongings(const Entity& owner);
    /// After deletions: takes the deleted out of the lists and references of the objects that are left.
    void forgetDeleted();

    ModelContainer& m_container;
    std::thread::id m_thread;
    std::optional<WriteLock::Guard> m_writeGuard;
    std::optional<ConnectionPool::Loan> m_database;
    std::vector<Registry> m_registries; // in the schema's order
    std::vector<Entity*> m_inserted;
    std::vector<Entity*> m_changed;
    std::vector<Entity*> m_removed;
    std::vector<LinkChange> m_links;
    std::vector<std::function<void()>> m_whenSaved;
    std::chrono::milliseconds m_patience = WriteLock::usualPatience;
    std::function<void()> m_used;
    /// For a context that follows the log of changes: the numbers of its own entries, which it need not follow.
    std::optional<std::set<std::int64_t>> m_echoes;
};

} // namespace quillorn
