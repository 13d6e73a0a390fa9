#pragma once

#include "HTTP/HttpRequest.h"
#include "Platform/Date.h"

#include <cstdint>
#include <memory>
#include <mutex>
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
    explicit ListCache(ModelContainer& container) : m_container(container) {}

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
    /// Forgets what has not been asked for since the last call, and gives its memory back.
    void dropUnused();

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

    ModelContainer& m_container;
    std::mutex m_mutex;
    std::vector<Entry> m_entries; // the last one used first
};

} // namespace quillorn
