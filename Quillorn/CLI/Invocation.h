#pragma once

#include "CLI/Commands.h"

namespace quillorn {

/// Does what a command line asks for; says on standard error what is wrong with one that can't be understood.
ExitStatus invoke(const ProcessInfo& process);

} // namespace quillorn
