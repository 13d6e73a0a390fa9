#pragma once

#include "Platform/UUID.h"

#include <string>
#include <string_view>
#include <vector>

namespace quillorn {

/// The groups that show their header only, as the setting `collapsedGroupIDs` holds them: ids joined by commas.
class CollapsedGroups {
  public:
    /// Parts that are no ids are dropped.
    explicit CollapsedGroups(std::string_view text);

    bool contains(const UUID& group) const;
    void toggle(const UUID& group);
    std::string text() const;

  private:
    std::vector<UUID> m_ids;
};

} // namespace quillorn
