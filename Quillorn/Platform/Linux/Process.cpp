#include "Platform/Process.h"

#include <malloc.h>
#include <sys/resource.h>

namespace quillorn {

std::uint64_t raiseDescriptorLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    rlimit raised = limit;
    raised.rlim_cur = raised.rlim_max;
    return setrlimit(RLIMIT_NOFILE, &raised) == 0 ? raised.rlim_cur : limit.rlim_cur;
}

// By default there are up to eight arenas a core, and none but the first gives back what is free at its end. Threads
// rarely meet in it, since each keeps small blocks of its own.
void configureMemory() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there are no other threads yet
    mallopt(M_ARENA_MAX, 1);
}

void lowerThreadPriority() {
    // In Linux the number of a thread does as that of a process; without one it is the calling thread.
    setpriority(PRIO_PROCESS, 0, 5);
}

void releaseFreeMemory() {
    malloc_trim(0);
}

} // namespace quillorn
