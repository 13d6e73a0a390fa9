#pragma once

#include "Platform/Paths.h"

#include <stdexcept>

namespace quillorn {

/// Folders below one of the test's own. Nothing is created; `hasHome` takes the user's folders away.
class FakePaths final : public Paths {
  public:
    explicit FakePaths(std::filesystem::path folder) : root(std::move(folder)) {}

    std::filesystem::path applicationSupport() const override { return existingHome() / "share"; }
    std::filesystem::path configuration() const override { return existingHome() / "config"; }
    std::optional<std::filesystem::path> home() const override { return hasHome ? std::optional(root) : std::nullopt; }
    std::optional<std::filesystem::path> accountHome() const override { return root / "account"; }
    std::optional<std::filesystem::path> groupContainer(std::string_view identifier) const override {
        return hasGroupContainer ? std::optional(root / "groups" / identifier) : std::nullopt;
    }
    std::filesystem::path resources() const override { return root / "resources"; }

    std::filesystem::path root;
    bool hasHome = true;
    bool hasGroupContainer = false;

  private:
    const std::filesystem::path& existingHome() const {
        return hasHome ? root : throw std::runtime_error("Can't find the home folder");
    }
};

} // namespace quillorn
