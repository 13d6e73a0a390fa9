#pragma once

#include "CLI/Table.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillorn {

/// What there is to say of one record: a line for each name that has a value. Into a pipe with a TAB between.
class Details {
  public:
    /// Values without text are left out.
    void add(std::string name, Cell value);
    void print() const;

  private:
    std::vector<std::pair<std::string, Cell>> m_lines;
};

// For people alone.
void printHeading(std::string_view heading);
/// A text of several lines below a heading; nothing where it is empty.
void printText(std::string_view heading, std::string_view text);

} // namespace quillorn
