#include "Store/ConnectionPool.h"

#include <algorithm>
#include <iterator>

namespace quillorn {

namespace {

/// Opening a connection and preparing its statements anew takes longer than most requests, so the connections of the
/// usual number of clients rest in between.
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
            m_unused = std::min(m_unused, m_resting.size());
            return {*this, std::move(database)};
        }
    }
    return {*this, open()};
}

std::unique_ptr<Database> ConnectionPool::open() {
    if (m_mayOpen)
        m_mayOpen();
    auto database = std::make_unique<Database>(m_location, m_executions);
    database->configure();
    return database;
}

std::size_t ConnectionPool::closeUnused() {
    std::vector<std::unique_ptr<Database>> unused;
    const std::lock_guard lock(m_mutex);
    if (m_resting.size() > 1) {
        const auto end = m_resting.begin() + static_cast<std::ptrdiff_t>(std::min(m_unused, m_resting.size() - 1));
        unused.assign(std::move_iterator(m_resting.begin()), std::move_iterator(end));
        m_resting.erase(m_resting.begin(), end);
    }
    m_unused = m_resting.size();
    return unused.size();
}

void ConnectionPool::giveBack(std::unique_ptr<Database> database) {
    database->rollBack();
    const std::lock_guard lock(m_mutex);
    if (m_resting.size() < restingLimit)
        m_resting.push_back(std::move(database));
    // One too many closes here. That is quick: closing never checkpoints.
}

} // namespace quillorn
