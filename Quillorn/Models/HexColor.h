#pragma once

#include <string_view>

namespace quillorn {

/// A colour of the sRGB space, each channel from 0 to 1.
struct HexColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    /// Reads "#RGB", "#RRGGBB" or "#AARRGGBB"; the "#" and other marks around the digits don't matter. Digits count as
    /// far as they are hexadecimal; a text of another length is black.
    static HexColor parse(std::string_view text);

    friend bool operator==(const HexColor&, const HexColor&) = default;
};

} // namespace quillorn
