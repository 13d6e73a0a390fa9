#include "API/ListCache.h"

#include "API/ListImage.h"
#include "Platform/Process.h"

#include <algorithm>

namespace quillorn {

namespace {

/// Of images together, in bytes. The one used last is kept beyond that, up to ListImage::maximumSize.
constexpr std::size_t room = 32 << 20;
constexpr std::size_t maximumEntries = 16;

/// Of a path with its query, in bytes. A sender decides how long they are, and nobody repeats long ones.
constexpr std::size_t maximumTarget = 2048;

std::size_t targetSize(const HttpRequest& request) {
    std::size_t size = request.path.size();
    for (const auto& [name, value] : request.queryParams)
        size += name.size() + value.size() + 2;
    return size;
}

/// How long the text of a list is kept at least for those who ask again.
constexpr std::chrono::seconds unusedTime{30};

} // namespace

ListCache::Visit ListCache::visit(const HttpRequest& request, Date now) {
    // Before the caller begins its snapshot: a commit in between makes its image useless, never wrong.
    const auto version = m_container.fileVersion();
    if (!version || targetSize(request) > maximumTarget)
        return {};
    const std::lock_guard lock(m_mutex);
    Entry& entry = entryOf(request);
    entry.wasUsed = true;
    if (entry.version != *version) {
        entry.version = *version;
        entry.image = nullptr;
        entry.canHaveImage = true;
        return {.version = *version};
    }
    Visit visit{.version = *version, .isRepeated = entry.canHaveImage};
    if (entry.image && entry.image->from <= now && now <= entry.image->until)
        visit.image = entry.image;
    return visit;
}

void ListCache::keep(const HttpRequest& request, const Visit& visit, std::shared_ptr<const ListImage> image) {
    const std::lock_guard lock(m_mutex);
    Entry& first = entryOf(request);
    if (first.version != visit.version)
        return;
    first.canHaveImage = image != nullptr;
    first.image = std::move(image);
    std::size_t size = 0;
    for (Entry& entry : m_entries) {
        size += entry.image ? entry.image->text.size() : 0;
        if (size > room && &entry != &first)
            entry.image = nullptr;
    }
}

bool ListCache::isCurrent(const Visit& visit) const {
    return m_container.fileVersion() == visit.version;
}

ListCache::~ListCache() {
    if (m_timer)
        m_queue.cancel(*m_timer);
}

void ListCache::armTimer() {
    if (!m_timer)
        m_timer = m_queue.after(unusedTime, [this] { dropUnused(); });
}

void ListCache::dropUnused() {
    const std::lock_guard lock(m_mutex);
    m_timer.reset();
    if (std::erase_if(m_entries, [](Entry& entry) { return !std::exchange(entry.wasUsed, false); }) > 0)
        releaseFreeMemory();
    if (!m_entries.empty())
        armTimer();
}

ListCache::Entry& ListCache::entryOf(const HttpRequest& request) {
    const auto found = std::ranges::find_if(m_entries, [&](const Entry& entry) {
        return entry.path == request.path && entry.query == request.queryParams;
    });
    if (found != m_entries.end()) {
        std::rotate(m_entries.begin(), found, found + 1);
    } else {
        if (m_entries.size() == maximumEntries)
            m_entries.pop_back();
        m_entries.insert(m_entries.begin(), Entry{.path = request.path, .query = request.queryParams});
        armTimer();
    }
    return m_entries.front();
}

} // namespace quillorn
