// Makes a store of invented work, for measurements.

#include "Generator/SampleStore.h"

#include <charconv>
#include <exception>
#include <fmt/core.h>
#include <optional>
#include <string_view>

namespace {

constexpr const char* usage = "usage: quillorn-generate FILE_OR_FOLDER [--tasks N] [--seed N]\n"
                              "Writes a new store of work up to today; in a folder, as Quillorn/Quillorn.store.\n"
                              "N is 10000 unless given.\n";

std::optional<int> positive(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size() && value > 0 ? std::optional(value) : std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    std::filesystem::path file;
    quillorn::SampleSize size;
    int seed = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--tasks" || argument == "--seed") {
            const auto value = i + 1 < argc ? positive(argv[++i]) : std::nullopt;
            if (!value)
                return fmt::print(stderr, "{} needs a positive number\n{}", argument, usage), 2;
            (argument == "--tasks" ? size.tasks : seed) = *value;
        } else if (file.empty() && !argument.starts_with("-")) {
            file = argument;
        } else {
            return fmt::print(stderr, "unexpected argument {}\n{}", argument, usage), 2;
        }
    }
    if (file.empty())
        return fmt::print(stderr, "{}", usage), 2;
    try {
        if (std::filesystem::is_directory(file))
            file = file / "Quillorn" / "Quillorn.store";
        if (file.has_parent_path())
            std::filesystem::create_directories(file.parent_path());
        if (std::filesystem::exists(file))
            return fmt::print(stderr, "{} is there already\n", file.string()), 1;
        const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
        quillorn::makeSampleStore(file, size, today, static_cast<std::uint64_t>(seed));
    } catch (const std::exception& error) {
        fmt::print(stderr, "{}\n", error.what());
        return 1;
    }
    return 0;
}
