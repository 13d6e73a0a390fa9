#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

enum class Paint { plain, bold, dim, red, green, yellow, cyan };

/// The text in that colour, where standard output is a terminal and NO_COLOR is not set.
std::string painted(std::string_view text, Paint paint);

/// Whether standard output leads to a person; else to a program, which gets whole ids, ISO dates and no words.
bool isForPeople();

/// One cell: what people see and what programs read may differ.
struct Cell {
    Cell() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): a cell is its text
    Cell(std::string both, Paint colour = Paint::plain) : text(both), shown(std::move(both)), paint(colour) {}
    // NOLINTNEXTLINE(google-explicit-constructor): a cell is its text
    Cell(const char* both) : Cell(std::string(both)) {}
    Cell(std::string forPrograms, std::string forPeople, Paint colour = Paint::plain)
        : text(std::move(forPrograms)),
          shown(std::move(forPeople)),
          paint(colour) {}

    std::string text{};
    std::string shown{};
    Paint paint = Paint::plain;
};

/// Rows on standard output. On a terminal they stand in aligned columns below a line of titles, columns without any
/// content left out; into a pipe each row is a line of all its cells with TAB between, control characters escaped.
class Table {
  public:
    struct Column {
        enum class Align { left, right };
        enum class Cut { never, ifNarrow };

        /// Empty for a column that people need not see.
        std::string title;
        Align align = Align::left;
        /// Whether its texts may be cut where the terminal is narrow.
        Cut cut = Cut::never;
    };

    explicit Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

    /// As many cells as columns.
    void add(std::vector<Cell> row) { m_rows.push_back({{}, std::move(row)}); }
    /// A line above the next rows, for people alone.
    void addHeading(std::string title) { m_rows.push_back({std::move(title), {}}); }
    bool isEmpty() const { return m_rows.empty(); }

    void print() const;

  private:
    struct Row {
        std::string heading;
        std::vector<Cell> cells;
    };

    void printForPrograms() const;
    void printForPeople() const;
    std::vector<std::size_t> widths() const;

    std::vector<Column> m_columns;
    std::vector<Row> m_rows;
};

} // namespace quillorn
