// A library for LD_PRELOAD that makes calls on files fail, for the program under test:
//   FAULT_ROOT  only files below this folder count
//   FAULT_AT    the number of the call that fails, from 1
//   FAULT_KIND  "EIO": that call alone; "ENOSPC": from then on all that need room; "KILL": the process ends there
//   FAULT_MARK  a file that is made when it has come to that

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

struct Plan {
    const char* root = getenv("FAULT_ROOT");
    const char* kind = getenv("FAULT_KIND");
    const char* mark = getenv("FAULT_MARK");
    long at = getenv("FAULT_AT") != nullptr ? atol(getenv("FAULT_AT")) : 0;
    std::atomic<long> calls = 0;
    std::array<std::atomic<bool>, 1024> watched{};
};

Plan& plan() {
    static Plan instance;
    return instance;
}

bool isBelowRoot(const char* path) {
    return plan().root != nullptr && strncmp(path, plan().root, strlen(plan().root)) == 0;
}

bool isWatched(int descriptor) {
    return descriptor >= 0 && descriptor < 1024 && plan().watched[static_cast<std::size_t>(descriptor)];
}

int watch(int descriptor, bool isOurs) {
    if (descriptor >= 0 && descriptor < 1024)
        plan().watched[static_cast<std::size_t>(descriptor)] = isOurs;
    return descriptor;
}

enum class Needs { room, nothing };

/// Whether the call, one that counts, is to fail; errno is set then.
bool fails(Needs needs) {
    Plan& all = plan();
    if (all.kind == nullptr)
        return false;
    const bool isFull = strcmp(all.kind, "ENOSPC") == 0;
    if (isFull && needs == Needs::nothing)
        return false;
    const long number = ++all.calls;
    if (number < all.at || (number > all.at && !isFull))
        return false;
    if (number == all.at)
        close(static_cast<int>(syscall(SYS_openat, AT_FDCWD, all.mark, O_CREAT | O_WRONLY, 0600)));
    if (strcmp(all.kind, "KILL") == 0)
        kill(getpid(), SIGKILL);
    errno = isFull ? ENOSPC : EIO;
    return true;
}

template <class Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

template <class Result, class... Arguments>
Result onDescriptor(const char* name, Needs needs, int descriptor, Arguments... arguments) {
    if (isWatched(descriptor) && fails(needs))
        return -1;
    return real<Result (*)(int, Arguments...)>(name)(descriptor, arguments...);
}

/// `path` is the one of the arguments that is changed.
template <class... Arguments>
int onPath(const char* name, Needs needs, const char* path, Arguments... arguments) {
    if (isBelowRoot(path) && fails(needs))
        return -1;
    return real<int (*)(Arguments...)>(name)(arguments...);
}

int openChecked(const char* name, const char* path, int flags, mode_t mode) {
    const bool isOurs = isBelowRoot(path);
    if (isOurs && fails((flags & O_CREAT) != 0 ? Needs::room : Needs::nothing))
        return -1;
    return watch(real<int (*)(const char*, int, ...)>(name)(path, flags, mode), isOurs);
}

mode_t modeOf(int flags, va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openChecked("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openChecked("open64", path, flags, mode);
}

int mkstemp(char* pattern) {
    const bool isOurs = isBelowRoot(pattern);
    if (isOurs && fails(Needs::room))
        return -1;
    return watch(real<int (*)(char*)>("mkstemp")(pattern), isOurs);
}

int close(int descriptor) {
    watch(descriptor, false);
    return real<int (*)(int)>("close")(descriptor);
}

ssize_t read(int descriptor, void* bytes, size_t count) {
    return onDescriptor<ssize_t>("read", Needs::nothing, descriptor, bytes, count);
}

ssize_t pread64(int descriptor, void* bytes, size_t count, off64_t at) {
    return onDescriptor<ssize_t>("pread64", Needs::nothing, descriptor, bytes, count, at);
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
    return onDescriptor<ssize_t>("write", Needs::room, descriptor, bytes, count);
}

ssize_t pwrite64(int descriptor, const void* bytes, size_t count, off64_t at) {
    return onDescriptor<ssize_t>("pwrite64", Needs::room, descriptor, bytes, count, at);
}

int ftruncate64(int descriptor, off64_t length) {
    return onDescriptor<int>("ftruncate64", Needs::room, descriptor, length);
}

int fsync(int descriptor) {
    return onDescriptor<int>("fsync", Needs::room, descriptor);
}

int fdatasync(int descriptor) {
    return onDescriptor<int>("fdatasync", Needs::room, descriptor);
}

int rename(const char* from, const char* to) {
    return onPath("rename", Needs::room, to, from, to);
}

int link(const char* from, const char* to) {
    return onPath("link", Needs::room, to, from, to);
}

int mkdir(const char* path, mode_t mode) {
    return onPath("mkdir", Needs::room, path, path, mode);
}

int unlink(const char* path) {
    return onPath("unlink", Needs::nothing, path, path);
}
}
