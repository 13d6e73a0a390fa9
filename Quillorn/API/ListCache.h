#pragma once

#include "HTTP/HttpRequest.h"
#include "Platform/Date.h"
#include "Platform/MainQueue.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillorn {

class ModelContainer;
struct ListImage;

/// Lists are asked for far more often than anything changes. So the text of one that is asked for again while the store
/// stands as it did is kept, and sent from then on, up to the next commit by whatever process. Safe to share between
/// threads.
class ListCache {
  public:
    ListCache(ModelContainer& container, MainQueue& queue) : m_container(container), m_queue(queue) {}
    ~ListCache();
    ListCache(const ListCache&) = delete;
    ListCache& operator=(const ListCache&) = delete;

    /// What is known of a list when it is asked for, at `version` of the store.
    struct Visit {
        std::int64_t version = 0;
        /// What answers it; null where there is none.
        std::shared_ptr<const ListImage> image{};
        /// Whether an image is worth making.
        bool isRepeated = false;
    };
    Visit visit(const HttpRequest& request, Date now);
    /// `image` was made of a snapshot that began after the visit; null when it could not be.
    void keep(const HttpRequest& request, const Visit& visit, std::shared_ptr<const ListImage> image);
    /// Whether the store still stands as it did at the visit.
    bool isCurrent(const Visit& visit) const;

  private:
    struct Entry {
        std::string path;
        std::vector<std::pair<std::string, std::string>> query;
        std::int64_t version = 0;
        std::shared_ptr<const ListImage> image{};
        bool canHaveImage = true;
        bool wasUsed = true;
    };

    /// Puts the list's entry first, a new one if need be.
    Entry& entryOf(const HttpRequest& request);

    /// Forgets what has not been asked for since the last call, and gives its memory back.
    void dropUnused();
    /// While there is something to forget.
    void armTimer();

    ModelContainer& m_container;
    MainQueue& m_queue;
    std::mutex m_mutex;
    std::optional<MainQueue::TimerId> m_timer;
    std::vector<Entry> m_entries; // the last one used first
};

} // namespace quillorn
