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
        throw HttpFailure(fmt::format("{} can't be loaded: {}", curlFile, ::dlerror()));
    return reinterpret_cast<Function*>(found);
}

} // namespace

} // namespace quillorn

// NOLINTBEGIN(cppcoreguidelines-macro-usage): nothing but a macro turns a name into a text
#define QUILLORN_FORWARD(Result, name, parameters, arguments)                                                          \
    Result name parameters {                                                                                           \
        static const auto function = quillorn::curlFunction(&name, #name);                                             \
        return function arguments;                                                                                     \
    }
// Behind the dots stands a number or a pointer of the width of a pointer, whatever the option.
#define QUILLORN_FORWARD_ONE_MORE(name, Option)                                                                        \
    CURLcode name(CURL* handle, Option option, ...) {                                                                  \
        static const auto function = quillorn::curlFunction(&name, #name);                                             \
        std::va_list values;                                                                                           \
        va_start(values, option);                                                                                      \
        void* const value = va_arg(values, void*);                                                                     \
        va_end(values);                                                                                                \
        return function(handle, option, value);                                                                        \
    }
// NOLINTEND(cppcoreguidelines-macro-usage)

static_assert(sizeof(long) == sizeof(void*) && sizeof(curl_off_t) == sizeof(void*));

extern "C" {
QUILLORN_FORWARD(CURLcode, curl_global_init, (long flags), (flags))
QUILLORN_FORWARD(void, curl_free, (void* memory), (memory))

QUILLORN_FORWARD(CURL*, curl_easy_init, (), ())
QUILLORN_FORWARD_ONE_MORE(curl_easy_setopt, CURLoption)
QUILLORN_FORWARD_ONE_MORE(curl_easy_getinfo, CURLINFO)
QUILLORN_FORWARD(const char*, curl_easy_strerror, (CURLcode code), (code))
QUILLORN_FORWARD(void, curl_easy_cleanup, (CURL * handle), (handle))

QUILLORN_FORWARD(CURLM*, curl_multi_init, (), ())
QUILLORN_FORWARD(CURLMcode, curl_multi_add_handle, (CURLM * multi, CURL* handle), (multi, handle))
QUILLORN_FORWARD(CURLMcode, curl_multi_remove_handle, (CURLM * multi, CURL* handle), (multi, handle))
QUILLORN_FORWARD(CURLMcode, curl_multi_perform, (CURLM * multi, int* running), (multi, running))
QUILLORN_FORWARD(CURLMcode, curl_multi_poll,
                 (CURLM * multi, curl_waitfd* more, unsigned int count, int milliseconds, int* ready),
                 (multi, more, count, milliseconds, ready))
QUILLORN_FORWARD(CURLMcode, curl_multi_wakeup, (CURLM * multi), (multi))
QUILLORN_FORWARD(CURLMsg*, curl_multi_info_read, (CURLM * multi, int* left), (multi, left))
QUILLORN_FORWARD(CURLMcode, curl_multi_cleanup, (CURLM * multi), (multi))

QUILLORN_FORWARD(curl_slist*, curl_slist_append, (curl_slist * list, const char* line), (list, line))
QUILLORN_FORWARD(void, curl_slist_free_all, (curl_slist * list), (list))

QUILLORN_FORWARD(CURLU*, curl_url, (), ())
QUILLORN_FORWARD(CURLUcode, curl_url_get, (quillorn::ReadURL url, CURLUPart part, char** text, unsigned int flags),
                 (url, part, text, flags))
QUILLORN_FORWARD(CURLUcode, curl_url_set, (CURLU * url, CURLUPart part, const char* text, unsigned int flags),
                 (url, part, text, flags))
QUILLORN_FORWARD(void, curl_url_cleanup, (CURLU * url), (url))
}
