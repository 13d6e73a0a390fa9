#pragma once

#include <string>
#include <string_view>

namespace quillorn {

/// A report as a mail program takes it: paragraphs, bullets of two levels and bold words of its Markdown become HTML,
/// all else is text.
std::string reportHTML(std::string_view report);

} // namespace quillorn
