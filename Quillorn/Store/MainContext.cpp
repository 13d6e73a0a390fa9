#include "Store/MainContext.h"

#include "Platform/SystemLog.h"
#include "Store/ContextRefresh.h"
#include "Store/ContextRelease.h"
#include "Store/StoreError.h"

#include <algorithm>
#include <fmt/core.h>
#include <system_error>
#include <utility>

namespace quillorn {

namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// Pauses before another try, growing from the first to the last.
constexpr milliseconds firstRetry = 100ms, lastRetry = 5s;
/// After a touch of the files: a commit can be seen when the disk has it.
constexpr milliseconds firstLook = 5ms, lastLook = 625ms;

} // namespace

void MainContext::Post::notice(bool isFile) {
    if (isFile)
        isFileTouched = true;
    if (isPosted.exchange(true))
        return;
    queue.post([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (self == nullptr || self->context == nullptr)
            return;
        self->isPosted = false;
        self->context->look();
    });
}

MainContext::MainContext(ModelContainer& container, MainQueue& queue, SystemLog& log)
    : m_context(container),
      m_queue(queue),
      m_log(log),
      m_post(std::make_shared<Post>(*this, queue)) {
    m_context.m_patience = patience;
    m_context.m_echoes.emplace();
    m_saves = container.notifications().observe(storeDidSave, [post = m_post](const auto&) { post->notice(false); });
    try {
        m_fileVersion = container.fileVersion();
        m_position = readPosition();
        m_isBehind = false;
    } catch (const StoreError& error) {
        report(error, m_lookFailure);
        m_post->notice(false);
    }
    m_context.endReading();
    m_context.m_used = [this] { noteUse(); };
    m_restTimer = queue.every(restingTime, [this] { rest(); });
}

MainContext::~MainContext() {
    m_post->context = nullptr;
    if (m_waiter.joinable())
        m_waiter.join();
    m_post->turn.reset(); // it belongs to the container, which may go before what is left on the queue
    for (Timer* timer : {&m_saveTimer, &m_retryTimer, &m_lookTimer})
        cancel(*timer);
    m_queue.cancel(m_restTimer);
}

void MainContext::look() {
    if (m_post->isFileTouched.exchange(false)) {
        m_lookTimer.delay = firstLook;
        if (!m_lookTimer.id)
            arm(m_lookTimer, &MainContext::lookAgain);
    }
    m_isWorking = true;
    try {
        const auto version = m_context.container().fileVersion();
        if (m_isBehind || !version || version != m_fileVersion) {
            m_isBehind = true;
            follow();
            m_fileVersion = version;
        }
        m_retryTimer.delay = 0ms;
        m_lookFailure.clear();
    } catch (const std::exception& error) {
        report(error, m_lookFailure);
        retryLook();
    }
    m_isWorking = false;
    settle();
}

void MainContext::lookAgain() {
    look();
    m_lookTimer.delay *= 5;
    if (m_lookTimer.delay <= lastLook && !m_lookTimer.id)
        arm(m_lookTimer, &MainContext::lookAgain);
}

void MainContext::retryLook() {
    m_isBehind = true;
    if (m_retryTimer.id)
        return;
    m_retryTimer.delay = std::clamp(2 * m_retryTimer.delay, firstRetry, lastRetry);
    arm(m_retryTimer, &MainContext::look);
}

void MainContext::follow() {
    m_context.endReading();
    Position next;
    const auto rows = readLog(next);
    ChangeSet changes;
    changes.isEverything = !rows;
    if (rows) {
        ContextRefresh(m_context).run(*rows);
        for (const LoggedRow& row : *rows)
            changes.rows.push_back(row.row);
    } else {
        m_context.refresh();
    }
    // Until all have read what they need, nothing counts as followed.
    m_readers.tell(changes);
    m_position = next;
    m_isBehind = false;
    m_context.m_echoes->erase(m_context.m_echoes->begin(), m_context.m_echoes->upper_bound(next.entry));
    tell(changes);
}

MainContext::Position MainContext::readPosition() {
    Database& database = m_context.database();
    return {ChangeLog(database, m_context.container().schema()).last(), database.integer("PRAGMA schema_version")};
}

std::optional<std::vector<LoggedRow>> MainContext::readLog(Position& next) {
    next = readPosition();
    if (!m_position || m_position->schemaVersion != next.schemaVersion)
        return std::nullopt;
    auto entries = ChangeLog(m_context.database(), m_context.container().schema()).since(m_position->entry);
    if (!entries)
        return std::nullopt;
    if (!entries->empty())
        next.entry = entries->back().number;
    for (ChangeLog::Entry& entry : *entries) {
        entry.isKnown = m_context.m_echoes->contains(entry.number);
        entry.isOfOthers = !m_context.container().m_ownEntries.contains(entry.number);
    }
    return gathered(*entries);
}

void MainContext::tell(const ChangeSet& changes) {
    const auto tryToTell = [&](const auto& work) {
        try {
            work();
        } catch (const std::exception& error) {
            m_log.log(fmt::format("An observer of the store failed: {}", error.what()));
        } catch (...) {
            m_log.log("An observer of the store failed");
        }
    };
    tryToTell([&] { m_showers.tell(); });
    if (!changes.isEmpty())
        tryToTell([&] { m_observers.tell(changes); });
}

void MainContext::noteUse() {
    if (m_isWorking || std::exchange(m_isUsePosted, true))
        return;
    m_queue.post([weak = std::weak_ptr(m_post)] {
        if (const auto post = weak.lock(); post != nullptr && post->context != nullptr)
            post->context->settle();
    });
}

void MainContext::settle() {
    m_isUsePosted = false;
    // A snapshot that is held for long would keep the log from starting over.
    m_context.endReading();
    if (m_context.hasChanges() && !m_saveTimer.id && !m_waiter.joinable())
        saveLater();
}

void MainContext::saveSoon() {
    look(); // first what others wrote: then an object that is gone is not saved
    save();
}

bool MainContext::save() {
    return !m_waiter.joinable() ? save(std::nullopt) : !m_context.hasChanges();
}

bool MainContext::save(std::optional<WriteLock::Guard> turn) {
    const bool hasTurn = turn.has_value();
    try {
        if (hasTurn)
            m_context.save(std::move(*turn));
        else
            m_context.save();
    } catch (const StoreBusyError&) {
        // With the lock it is a program that doesn't know it.
        hasTurn ? saveLater() : waitForTurn();
        return false;
    } catch (const StoreError& error) {
        report(error, m_saveFailure);
        saveLater();
        return false;
    }
    cancel(m_saveTimer);
    m_saveFailure.clear();
    return true;
}

void MainContext::waitForTurn() {
    cancel(m_saveTimer);
    const auto wait = [&container = m_context.container(), post = m_post] {
        try {
            post->turn.emplace(container.lockForWriting());
        } catch (const std::exception& error) {
            post->refusal = error.what();
        }
        post->queue.post([post] {
            if (post->context != nullptr)
                post->context->takeTurn();
        });
    };
    try {
        m_waiter = std::thread(wait);
    } catch (const std::system_error&) {
        saveLater(); // no thread is to be had
    }
}

void MainContext::takeTurn() {
    m_waiter.join();
    std::optional<WriteLock::Guard> turn = std::move(m_post->turn);
    m_post->turn.reset();
    if (turn) {
        look(); // as saveSoon() does
        save(std::move(turn));
        return;
    }
    report(StoreError(m_post->refusal), m_saveFailure);
    saveLater();
}

void MainContext::saveLater() {
    cancel(m_saveTimer);
    m_saveTimer.delay = savingDelay;
    arm(m_saveTimer, &MainContext::saveSoon);
}

void MainContext::rest() {
    look();
    ContextRelease(m_context).run();
    m_context.container().releaseUnusedMemory();
}

void MainContext::report(const std::exception& error, std::string& last) {
    // It comes again; a full disk is not worth a line twice a second.
    if (std::exchange(last, error.what()) != error.what())
        m_log.log(fmt::format("The store could not be read or saved: {}", error.what()));
}

void MainContext::arm(Timer& timer, void (MainContext::*work)()) {
    timer.id = m_queue.after(timer.delay, [this, &timer, work] {
        timer.id.reset();
        (this->*work)();
    });
}

void MainContext::cancel(Timer& timer) {
    if (timer.id)
        m_queue.cancel(*std::exchange(timer.id, std::nullopt));
}

} // namespace quillorn
