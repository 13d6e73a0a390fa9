#pragma once

#include "Crash/Writers.h"

#include <vector>

namespace quillorn {

/// Takes a backup by `quillorn backup` while the writers are at work, restores it by `quillorn restore` over a store of
/// its own, and has a server show what is in it. Everything that was acknowledged before the backup began must be
/// there.
void takeBackup(Round& round, const std::vector<const Ledger*>& ledgers);

} // namespace quillorn
