#include "Services/SyncMonitor.h"

#include "Platform/Background.h"
#include "Platform/Clock.h"

#include <array>

namespace quillorn {

namespace {

struct Appearance {
    std::string_view name, word, symbol;
};

const Appearance& appearanceOf(SyncMonitor::SyncStatus::Kind kind) {
    static constexpr std::array appearances{
        Appearance{"idle", "Ready", "icloud"},
        Appearance{"syncing", "Syncing...", "arrow.triangle.2.circlepath.icloud"},
        Appearance{"synced", "Synced", "checkmark.icloud"},
        Appearance{"offline", "Offline", "icloud.slash"},
        Appearance{"error", "", "exclamationmark.icloud"},
    };
    return appearances.at(static_cast<std::size_t>(kind));
}

} // namespace

std::string_view SyncMonitor::SyncStatus::name() const {
    return appearanceOf(kind).name;
}

std::string SyncMonitor::SyncStatus::word() const {
    return kind == Kind::error ? text : std::string(appearanceOf(kind).word);
}

std::string_view SyncMonitor::SyncStatus::symbol() const {
    return appearanceOf(kind).symbol;
}

SyncMonitor::SyncMonitor(NetworkPath& network, const Clock& clock, MainQueue& queue)
    : m_clock(clock),
      m_queue(queue),
      m_path(network.observe([this](bool isSatisfied) { pathWasUpdated(isSatisfied); })) {
    pathWasUpdated(network.isSatisfied());
}

void SyncMonitor::handleRemoteChange() {
    setStatus(SyncStatus::Kind::syncing);
    m_changes.start(finishChange());
}

Task<> SyncMonitor::finishChange() {
    co_await Pause(m_queue, changeDuration);
    m_lastSyncDate = m_clock.now();
    setStatus(SyncStatus::Kind::synced);
}

void SyncMonitor::pathWasUpdated(bool isSatisfied) {
    m_isNetworkAvailable = isSatisfied;
    if (!isSatisfied)
        setStatus(SyncStatus::Kind::offline);
    else
        setStatus(m_status.kind == SyncStatus::Kind::offline ? SyncStatus::Kind::idle : m_status.kind);
}

void SyncMonitor::setStatus(SyncStatus::Kind kind) {
    m_status = {kind, kind == m_status.kind ? m_status.text : std::string()};
    m_observers.tell();
}

} // namespace quillorn
