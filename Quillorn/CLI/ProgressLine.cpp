#include "CLI/ProgressLine.h"

#include "Platform/Terminal.h"

#include <cstdio>
#include <fmt/core.h>

namespace quillorn {

ProgressLine::ProgressLine() : m_isTerminal(isTerminal(stderr)) {}

ProgressLine::~ProgressLine() {
    show("");
}

void ProgressLine::show(std::string_view text) {
    if (!m_isTerminal || (text.empty() && !m_isShown))
        return;
    m_isShown = !text.empty();
    fmt::print(stderr, "\r\033[K{}", text);
    (void)std::fflush(stderr);
}

} // namespace quillorn
