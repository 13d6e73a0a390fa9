#include "AI/ReportHTML.h"
#include "Fuzz/Harness.h"

#include <algorithm>
#include <array>

using namespace quillorn;

std::vector<std::string> quillorn::seeds() {
    return {"**Acme**\n4h 5m\n- Built X\n  ◦ Decided Y\n\n* Z", "a<b & c > d\n· e\n‣ **f** **g\r\n• h"};
}

/// All tags are ours, and each that opens closes, in its turn.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::array<std::string_view, 5> tags = {"div", "p", "ul", "li", "b"};
    const std::string html = reportHTML(bytesOf(data, size));
    std::vector<std::string_view> open;
    for (std::size_t at = html.find('<'); at != std::string::npos; at = html.find('<', at + 1)) {
        const bool closes = html[at + 1] == '/';
        const std::size_t begin = at + (closes ? 2 : 1);
        const std::string_view name = std::string_view(html).substr(begin, html.find_first_of(" >", begin) - begin);
        require(std::ranges::find(tags, name) != tags.end(), "a tag that is not ours");
        if (!closes) {
            open.push_back(name);
            continue;
        }
        require(!open.empty() && open.back() == name, "closes what is not open");
        open.pop_back();
    }
    require(open.empty(), "a tag stays open");
    return 0;
}
