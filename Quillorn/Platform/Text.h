#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace quillorn {

/// Text as people of one locale compare and search it. All strings are UTF-8; malformed bytes count as U+FFFD.
/// Safe to share between threads.
class Text {
  public:
    /// `locale` as ICU names it ("en_US", "tr_TR"). An empty name, "C", "POSIX" and "C.UTF-8" count as "en_US".
    explicit Text(std::string_view locale);
    ~Text();
    Text(Text&&) noexcept;
    Text& operator=(Text&&) noexcept;

    const std::string& locale() const;

    /// A needle prepared for many haystacks. Case is ignored by the rules of the locale, accents are not
    /// ("resume" is not in "RÉSUMÉ"). An empty needle is in no text.
    class Needle {
      public:
        ~Needle();
        Needle(Needle&&) noexcept;
        Needle& operator=(Needle&&) noexcept;
        bool isIn(std::string_view text) const;

      private:
        friend class Text;
        struct State;
        explicit Needle(std::unique_ptr<State> state);
        std::unique_ptr<State> m_state;
    };
    Needle needle(std::string_view text) const;
    /// Whether `text` contains `part`, as Needle says.
    bool contains(std::string_view text, std::string_view part) const;
    /// For who searches the same texts time and again: `text` contains what is not empty when its search key, which is
    /// UTF-8 too, contains that of the part.
    std::string searchKey(std::string_view text) const;

    /// `text` without case and accents, for comparing what people say: "ÚRGENT" and "urgent" are the same.
    std::string folded(std::string_view text) const;
    /// Whether `text` contains `part` when both are folded. An empty part is in no text.
    bool containsFolded(std::string_view text, std::string_view part) const;

    /// The order in which a file list would show them: by the locale's collation, digits as numbers. Negative, zero or
    /// positive; zero only for equal strings (ties are broken by the bytes).
    int compare(std::string_view a, std::string_view b) const;
    /// By the locale alone, without regard to case, to what digits amount to, and without the tie-break.
    int compareIgnoringCase(std::string_view a, std::string_view b) const;

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

/// User-perceived characters: an emoji with its joiners is one.
std::size_t characterCount(std::string_view text);
/// The first `count` user-perceived characters.
std::string_view characterPrefix(std::string_view text, std::size_t count);
/// Without the white space (Unicode White_Space, no line ends) at both ends.
std::string_view trimBlanks(std::string_view text);
/// Without white space and line ends at both ends.
std::string_view trimWhitespaceAndNewlines(std::string_view text);
/// In lower case by the rules that no locale changes, with one blank for each stretch of white space and line ends and
/// none at the ends: what texts are told apart by when how they were typed does not matter.
std::string normalizedText(std::string_view text);
bool isValidUTF8(std::string_view text);

} // namespace quillorn
