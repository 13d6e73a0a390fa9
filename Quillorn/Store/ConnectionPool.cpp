#include "Store/ConnectionPool.h"

namespace quillorn {

namespace {

/// Opening a connection and preparing its statements anew takes longer than most requests, so the connections of the
/// usual number of clients rest in between; each holds up to 1 MB of pages.
constexpr std::size_t restingLimit = 8;

} // namespace

ConnectionPool::Loan::~Loan() {
    if (m_database)
        m_pool->giveBack(std::move(m_database));
}

ConnectionPool::Loan ConnectionPool::borrow() {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_resting.empty()) {
            auto database = std::move(m_resting.back());
            m_resting.pop_back();
            return {*this, std::move(database)};
        }
    }
    return {*this, open()};
}

std::unique_ptr<Database> ConnectionPool::open() {
    auto database = std::make_unique<Database>(m_location, m_executions);
    database->configure();
    return database;
}

void ConnectionPool::giveBack(std::unique_ptr<Database> database) {
    database->rollBack();
    const std::lock_guard lock(m_mutex);
    if (m_resting.size() < restingLimit)
        m_resting.push_back(std::move(database));
    // One too many closes here. That is quick: closing never checkpoints.
}

} // namespace quillorn
