#include "Generator/SampleText.h"

#include <array>
#include <cctype>
#include <string_view>

namespace quillorn {

namespace {

constexpr std::array<std::string_view, 60> words{
    "review",    "invoice",  "draft",   "homepage", "contract",   "layout", "export",  "meeting",   "notes",   "budget",
    "proposal",  "schema",   "login",   "payment",  "newsletter", "icons",  "search",  "the",       "for",     "with",
    "and",       "client",   "server",  "feedback", "wireframe",  "logo",   "prepare", "update",    "fix",     "test",
    "write",     "send",     "call",    "quarter",  "report",     "slides", "photo",   "migration", "backup",  "domain",
    "API",       "headline", "pricing", "table",    "form",       "mobile", "version", "release",   "hosting", "survey",
    "translate", "café",     "Zürich",  "naïve",    "résumé",     "10 %",   "“final”", "step",      "from",    "to"};

} // namespace

void SampleRandom::fill(std::span<std::uint8_t> bytes) {
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(m_engine());
}

std::string sampleWords(SampleRandom& random, int low, int high) {
    std::string text;
    for (int left = random.between(low, high); left > 0; --left) {
        if (!text.empty())
            text += ' ';
        text += words[static_cast<std::size_t>(random.below(static_cast<int>(words.size())))];
    }
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

std::string sampleProse(SampleRandom& random, int characters) {
    std::string text;
    while (text.size() < static_cast<std::size_t>(characters)) {
        if (!text.empty())
            text += random.chance(20) ? "\n\n- " : " ";
        text += random.chance(10) ? "\"" + sampleWords(random, 4, 9) + "\"." : sampleWords(random, 5, 14) + ".";
    }
    return text;
}

} // namespace quillorn
