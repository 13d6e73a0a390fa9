#pragma once

#include "Crash/Writers.h"

#include <vector>

namespace quillorn {

/// Takes a snapshot of the store while the writers are at work, and has a server of its own show what is in it.
/// Everything that was acknowledged before it began must be there.
void takeSnapshot(Round& round, const std::vector<const Ledger*>& ledgers);

} // namespace quillorn
