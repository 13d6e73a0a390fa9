#include "CLI/Confirm.h"

#include "Platform/Terminal.h"

#include <cstdio>
#include <fmt/core.h>
#include <iostream>
#include <stdexcept>

namespace quillorn {

bool agrees(const Confirmation& question, bool isConfirmed) {
    if (isConfirmed)
        return true;
    if (!isTerminal(stdin))
        throw std::runtime_error("deleting can't be undone; without a terminal to ask on it needs --yes");
    fmt::print(stderr, "{}\n\n{}\n\nDelete? [y/N] ", textFor(stderr, question.title),
               textFor(stderr, question.message));
    std::string answer;
    std::getline(std::cin, answer);
    if (answer == "y" || answer == "Y" || answer == "yes")
        return true;
    fmt::print(stderr, "Cancelled\n");
    return false;
}

} // namespace quillorn
