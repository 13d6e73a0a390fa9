#include "Describe/Writers.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fmt/core.h>
#include <fstream>
#include <stdexcept>
#include <utility>

namespace {

void writeFile(const std::filesystem::path& file, const std::string& content) {
    std::ofstream stream(file, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream)
        throw std::runtime_error(fmt::format("{} can't be written", file.string()));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 4) {
        fmt::print(stderr, "Writes the descriptions of the commands: quillorn-describe FOLDER VERSION DATE\n");
        return 2;
    }
    try {
        const std::filesystem::path folder = arguments[1];
        const quillorn::CommandEntry program = quillorn::commandTree();
        const std::pair<const char*, std::string> files[] = {
            {"quillorn.1", quillorn::manPage(program, arguments[2], arguments[3])},
            {"command-line.md", quillorn::markdownPage(program)},
            {"quillorn.bash", quillorn::bashCompletion(program)},
            {"_quillorn", quillorn::zshCompletion(program)},
            {"quillorn.fish", quillorn::fishCompletion(program)},
        };
        for (const auto& [name, content] : files)
            writeFile(folder / name, content);
        return 0;
    } catch (const std::exception& error) {
        fmt::print(stderr, "quillorn-describe: {}\n", error.what());
        return 1;
    }
}
