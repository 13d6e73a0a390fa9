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

void printJson(const std::function<void(JsonWriter&)>& write) {
    const auto put = [](std::string_view text) { (void)std::fwrite(text.data(), 1, text.size(), stdout); };
    if (isTerminal(stdout)) {
        put(escapeControls(jsonText(write), LineEnds::kept)); // as one, since a piece may end within a character
    } else {
        JsonWriter writer(put);
        write(writer);
        writer.finish();
    }
    put("\n");
}

void printError(std::string_view words) {
    std::fputs(fmt::format("quillorn: {}\n", textFor(stderr, words, LineEnds::kept)).c_str(), stderr);
}

} // namespace quillorn
