#pragma once

#include "Describe/CommandTree.h"

#include <string_view>

namespace quillorn {

/// A page of section 1, in the macros of man(7). `date` is that of the page, for example "2026-11-30".
std::string manPage(const CommandEntry& program, std::string_view version, std::string_view date);

/// The page of the documentation, in Markdown.
std::string markdownPage(const CommandEntry& program);

/// Scripts by which the shells complete the words of a command line.
std::string bashCompletion(const CommandEntry& program);
std::string zshCompletion(const CommandEntry& program);
std::string fishCompletion(const CommandEntry& program);

} // namespace quillorn
