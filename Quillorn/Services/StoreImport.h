#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

class ModelContainer;

/// An export is refused, in words for the user.
class ImportError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

enum class ImportKind {
    real,
    /// Everything is tried, and nothing kept.
    dryRun,
};

/// How many records of each table were taken in, by the tables' names.
using ImportCounts = std::vector<std::pair<std::string_view, std::int64_t>>;

/// Adds all records of an export to the store, or none of them. Refused are another format or a newer version, what is
/// no record of the format, an id that is there already, a reference that leads nowhere, and tasks that are their own
/// ancestors. Throws ImportError, and StoreError.
ImportCounts importIntoStore(ModelContainer& container, std::string_view text, ImportKind kind);

} // namespace quillorn
