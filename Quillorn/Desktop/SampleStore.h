#pragma once

#include "Platform/Crypto.h"
#include "Platform/TemporaryDirectory.h"

#include <memory>

namespace quillorn {

class AppSession;
class Paths;

/// A throw-away place for the application, with the work of a freelancer who never was: it has a store, settings and
/// backups of its own, and is gone with this object.
class SampleStore {
  public:
    SampleStore() : m_folder(m_random) {}

    std::unique_ptr<Paths> paths() const;
    /// Puts the work into the store that was opened there, moved to these days. Throws std::runtime_error.
    static void fill(AppSession& world);

  private:
    SystemRandom m_random;
    TemporaryDirectory m_folder;
};

} // namespace quillorn
