#include "Platform/StandardStreams.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace quillorn {

void prepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // What is opened takes the lowest free number. To write to these is an error, since they are open for reading.
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(number, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", O_RDONLY));
}

bool flushStandardStreams() {
    bool isComplete = true;
    for (std::FILE* stream : {stdout, stderr})
        isComplete = std::fflush(stream) == 0 && std::ferror(stream) == 0 && isComplete;
    return isComplete;
}

} // namespace quillorn
