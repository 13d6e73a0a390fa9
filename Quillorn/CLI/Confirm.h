#pragma once

#include "Models/TaskActions.h"

namespace quillorn {

/// Whether the user agrees to what can't be undone: by `isConfirmed`, or asked on the terminal, where "Cancelled" is
/// said for no. Without a terminal to ask on it throws std::runtime_error, which says that --yes is needed.
bool agrees(const Confirmation& question, bool isConfirmed);

} // namespace quillorn
