#include "CLI/Table.h"

#include "CLI/Output.h"
#include "Platform/DisplayWidth.h"
#include "Platform/Terminal.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fmt/core.h>

namespace quillorn {

namespace {

constexpr std::size_t gap = 2;
constexpr std::size_t leastWidth = 12; // of a column that is cut

bool isSet(const char* variable) {
    const char* value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): nobody changes it
    return value != nullptr && *value != '\0';
}

bool isColourful() {
    static const bool result = isForPeople() && !isSet("NO_COLOR");
    return result;
}

std::string_view codeOf(Paint paint) {
    switch (paint) {
    case Paint::plain:
        return "";
    case Paint::bold:
        return "1";
    case Paint::dim:
        return "2";
    case Paint::red:
        return "31";
    case Paint::green:
        return "32";
    case Paint::yellow:
        return "33";
    case Paint::cyan:
        return "36";
    }
    return "";
}

void write(std::string_view text) {
    (void)std::fwrite(text.data(), 1, text.size(), stdout);
}

/// Escaped, which most texts need not be.
void append(std::string& line, std::string_view text) {
    const auto isHarmless = [](char character) { return character >= 0x20 && character < 0x7F; };
    line += std::ranges::all_of(text, isHarmless) ? text : std::string_view(escapeControls(text));
}

} // namespace

bool isForPeople() {
    static const bool result = isTerminal(stdout);
    return result;
}

std::string painted(std::string_view text, Paint paint) {
    const std::string_view code = codeOf(paint);
    return code.empty() || text.empty() || !isColourful() ? std::string(text)
                                                          : fmt::format("\x1B[{}m{}\x1B[0m", code, text);
}

void Table::print() const {
    isForPeople() ? printForPeople() : printForPrograms();
}

void Table::printForPrograms() const {
    constexpr std::size_t piece = 1 << 16;
    std::string lines;
    for (const Row& row : m_rows) {
        if (row.cells.empty())
            continue;
        for (std::size_t column = 0; column < m_columns.size(); ++column) {
            if (column > 0)
                lines += '\t';
            append(lines, row.cells[column].text);
        }
        lines += '\n';
        if (lines.size() > piece) {
            write(lines);
            lines.clear();
        }
    }
    write(lines);
}

/// 0 for columns that are left out.
std::vector<std::size_t> Table::widths() const {
    std::vector<std::size_t> widths(m_columns.size(), 0);
    for (const Row& row : m_rows)
        for (std::size_t column = 0; column < row.cells.size(); ++column)
            if (!m_columns[column].title.empty())
                widths[column] = std::max(widths[column], displayWidth(escapeControls(row.cells[column].shown)));
    std::size_t total = 0;
    for (std::size_t column = 0; column < widths.size(); ++column)
        if (widths[column] > 0) {
            widths[column] = std::max(widths[column], displayWidth(m_columns[column].title));
            total += widths[column] + gap;
        }
    std::size_t excess = total - std::min(total, terminalWidth(stdout) + gap);
    for (std::size_t column = 0; column < widths.size() && excess > 0; ++column)
        if (m_columns[column].cut == Column::Cut::ifNarrow && widths[column] > leastWidth) {
            const std::size_t less = std::min(excess, widths[column] - leastWidth);
            widths[column] -= less;
            excess -= less;
        }
    return widths;
}

void Table::printForPeople() const {
    const std::vector<std::size_t> columnWidths = widths();
    const auto line = [&](const auto& cellAt) {
        std::string text;
        std::size_t owed = 0; // blanks that only matter where more follows
        for (std::size_t column = 0; column < m_columns.size(); ++column) {
            if (columnWidths[column] == 0)
                continue;
            const auto [shownText, paint] = cellAt(column);
            const std::string fitted = fittedToWidth(escapeControls(shownText), columnWidths[column]);
            const std::size_t rest = columnWidths[column] - std::min(displayWidth(fitted), columnWidths[column]);
            const bool isRight = m_columns[column].align == Column::Align::right;
            if (!fitted.empty()) {
                text += std::string(owed + (isRight ? rest : 0), ' ') + painted(fitted, paint);
                owed = 0;
            }
            owed += gap + (isRight && !fitted.empty() ? 0 : rest);
        }
        write(text + "\n");
    };
    using Piece = std::pair<const std::string&, Paint>;
    line([&](std::size_t column) { return Piece(m_columns[column].title, Paint::dim); });
    for (const Row& row : m_rows)
        if (row.cells.empty())
            write("\n" + painted(escapeControls(row.heading), Paint::bold) + "\n");
        else
            line([&](std::size_t column) { return Piece(row.cells[column].shown, row.cells[column].paint); });
}

} // namespace quillorn
