#include "CLI/Output.h"

#include "Platform/Terminal.h"

#include <cstdio>
#include <fmt/core.h>

namespace quillorn {

std::string shown(std::string_view text) {
    return textFor(stdout, text);
}

void printJson(const Json& value) {
    fmt::print("{}\n", textFor(stdout, value.text(Json::Style::pretty), LineEnds::kept));
}

void printError(std::string_view words) {
    std::fputs(fmt::format("quillorn: {}\n", textFor(stderr, words, LineEnds::kept)).c_str(), stderr);
}

} // namespace quillorn
