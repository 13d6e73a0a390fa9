#include "CLI/Details.h"

#include "CLI/Output.h"
#include "Platform/Terminal.h"

#include <algorithm>
#include <fmt/core.h>

namespace quillorn {

void Details::add(std::string name, Cell value) {
    if (!value.text.empty())
        m_lines.emplace_back(std::move(name), std::move(value));
}

void Details::print() const {
    std::size_t width = 0;
    for (const auto& [name, value] : m_lines)
        width = std::max(width, name.size());
    for (const auto& [name, value] : m_lines)
        if (isForPeople())
            fmt::print("{}{}  {}\n", painted(name, Paint::dim), std::string(width - name.size(), ' '),
                       painted(escapeControls(value.shown), value.paint));
        else
            fmt::print("{}\t{}\n", name, escapeControls(value.text));
}

void printHeading(std::string_view heading) {
    fmt::print("\n{}\n", painted(heading, Paint::bold));
}

void printText(std::string_view heading, std::string_view text) {
    if (text.empty())
        return;
    printHeading(heading);
    fmt::print("{}\n", textFor(stdout, text, LineEnds::kept));
}

} // namespace quillorn
