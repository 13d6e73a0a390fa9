// The functions of libcurl that HttpClient calls, forwarded to the library, which is loaded at the first call: with the
// thirty libraries behind it that takes longer than most commands run, and few of them call a server.

#include "Platform/HttpClient.h"

#include <cstdarg>
#include <curl/curl.h>
#include <dlfcn.h>
#include <fmt/core.h>

#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace quillorn {

namespace {

#ifdef __APPLE__
constexpr const char* curlFile = "libcurl.4.dylib";
#else
constexpr const char* curlFile = "libcurl.so.4";
#endif

#if LIBCURL_VERSION_NUM >= 0x080000
using ReadURL = const CURLU*;
#else
using ReadURL = CURLU*;
#endif

/// Of the type of `declared`. Throws HttpFailure where there is no such library or function.
template <class Function>
Function* curlFunction(Function* /*declared*/, const char* name) {
    static void* const library = ::dlopen(curlFile, RTLD_NOW | RTLD_LOCAL); // never unloaded
    void* const found = library == nullptr ? nullptr : ::dlsym(library, name);
    if (found == nullptr)
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the C library keeps a text for each thread
        throw HttpFailure(fmt::format("{} can't be loaded: {}", curlFile, ::dlerror()));
    return reinterpret_cast<Function*>(found);
}

} // namespace

} // namespace quillorn

// NOLINTBEGIN(bugprone-macro-parentheses): nothing but a macro turns a name into a text, and names take no parentheses
#define QUILLORN_FORWARD(Result, name, parameters, arguments)                                                          \
    Result name parameters {                                                                                           \
        static const auto function = quillorn::curlFunction(&name, #name);                                             \
        return function arguments;                                                                                     \
    }
// The parameters have the names of the library's headers. Behind the dots stands a number or a pointer of the width of
// a pointer, whatever the option.
#define QUILLORN_FORWARD_ONE_MORE(name, Option, option)                                                                \
    CURLcode name(CURL* curl, Option option, ...) {                                                                    \
        static const auto function = quillorn::curlFunction(&name, #name);                                             \
        std::va_list values;                                                                                           \
        va_start(values, option);                                                                                      \
        void* const value = va_arg(values, void*);                                                                     \
        va_end(values);                                                                                                \
        return function(curl, option, value);                                                                          \
    }
// NOLINTEND(bugprone-macro-parentheses)

static_assert(sizeof(long) == sizeof(void*) && sizeof(curl_off_t) == sizeof(void*));

extern "C" {
QUILLORN_FORWARD(CURLcode, curl_global_init, (long flags), (flags))
QUILLORN_FORWARD(void, curl_free, (void* p), (p))

QUILLORN_FORWARD(CURL*, curl_easy_init, (), ())
// The library declares them with an enum before the dots, and begins there itself.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wvarargs"
QUILLORN_FORWARD_ONE_MORE(curl_easy_setopt, CURLoption, option)
QUILLORN_FORWARD_ONE_MORE(curl_easy_getinfo, CURLINFO, info)
#pragma GCC diagnostic pop
QUILLORN_FORWARD(const char*, curl_easy_strerror, (CURLcode code), (code))
QUILLORN_FORWARD(void, curl_easy_cleanup, (CURL * curl), (curl))

QUILLORN_FORWARD(CURLM*, curl_multi_init, (), ())
QUILLORN_FORWARD(CURLMcode, curl_multi_add_handle, (CURLM * multi, CURL* handle), (multi, handle))
QUILLORN_FORWARD(CURLMcode, curl_multi_remove_handle, (CURLM * multi, CURL* handle), (multi, handle))
QUILLORN_FORWARD(CURLMcode, curl_multi_perform, (CURLM * multi, int* running), (multi, running))
QUILLORN_FORWARD(CURLMcode, curl_multi_poll,
                 (CURLM * multi_handle, curl_waitfd* extra_fds, unsigned int extra_nfds, int timeout_ms, int* ret),
                 (multi_handle, extra_fds, extra_nfds, timeout_ms, ret))
QUILLORN_FORWARD(CURLMcode, curl_multi_wakeup, (CURLM * multi), (multi))
QUILLORN_FORWARD(CURLMsg*, curl_multi_info_read, (CURLM * multi_handle, int* msgs_in_queue),
                 (multi_handle, msgs_in_queue))
QUILLORN_FORWARD(CURLMcode, curl_multi_cleanup, (CURLM * multi), (multi))

QUILLORN_FORWARD(curl_slist*, curl_slist_append, (curl_slist * list, const char* data), (list, data))
QUILLORN_FORWARD(void, curl_slist_free_all, (curl_slist * list), (list))

QUILLORN_FORWARD(CURLU*, curl_url, (), ())
QUILLORN_FORWARD(CURLUcode, curl_url_get, (quillorn::ReadURL handle, CURLUPart what, char** part, unsigned int flags),
                 (handle, what, part, flags))
QUILLORN_FORWARD(CURLUcode, curl_url_set, (CURLU * handle, CURLUPart what, const char* part, unsigned int flags),
                 (handle, what, part, flags))
QUILLORN_FORWARD(void, curl_url_cleanup, (CURLU * handle), (handle))
}
