#include "Platform/SystemLog.h"

#include "Platform/Terminal.h"

#include <algorithm>
#include <cerrno>
#include <string>
#include <unistd.h>

namespace quillorn {

void StandardErrorLog::log(std::string_view line) {
    std::string text = m_journal ? "<6>" : ""; // syslog's "informational"
    const auto start = static_cast<std::ptrdiff_t>(text.size());
    text += line;
    // Text from outside must not be able to forge a line of its own, nor to steer a terminal.
    std::replace_if(text.begin() + start, text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    text = textFor(stderr, text);
    text += '\n';
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t count = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (count > 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return; // there is no other place to complain
    }
}

} // namespace quillorn
