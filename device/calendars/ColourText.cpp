// SPDX-License-Identifier: MIT
#include "device/calendars/ColourText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "platform/foundation/Unicode.h"

namespace device {

namespace {

struct NamedColour {
    std::string_view name;
    std::uint32_t colour;
};

/// In the order of their names, for a binary search.
constexpr std::array namedColours{
    NamedColour{"aliceblue", 0xF0F8FF},
    NamedColour{"antiquewhite", 0xFAEBD7},
    NamedColour{"aqua", 0x00FFFF},
    NamedColour{"aquamarine", 0x7FFFD4},
    NamedColour{"azure", 0xF0FFFF},
    NamedColour{"beige", 0xF5F5DC},
    NamedColour{"bisque", 0xFFE4C4},
    NamedColour{"black", 0x000000},
    NamedColour{"blanchedalmond", 0xFFEBCD},
    NamedColour{"blue", 0x0000FF},
    NamedColour{"blueviolet", 0x8A2BE2},
    NamedColour{"brown", 0xA52A2A},
    NamedColour{"burlywood", 0xDEB887},
    NamedColour{"cadetblue", 0x5F9EA0},
    NamedColour{"chartreuse", 0x7FFF00},
    NamedColour{"chocolate", 0xD2691E},
    NamedColour{"coral", 0xFF7F50},
    NamedColour{"cornflowerblue", 0x6495ED},
    NamedColour{"cornsilk", 0xFFF8DC},
    NamedColour{"crimson", 0xDC143C},
    NamedColour{"cyan", 0x00FFFF},
    NamedColour{"darkblue", 0x00008B},
    NamedColour{"darkcyan", 0x008B8B},
    NamedColour{"darkgoldenrod", 0xB8860B},
    NamedColour{"darkgray", 0xA9A9A9},
    NamedColour{"darkgreen", 0x006400},
    NamedColour{"darkgrey", 0xA9A9A9},
    NamedColour{"darkkhaki", 0xBDB76B},
    NamedColour{"darkmagenta", 0x8B008B},
    NamedColour{"darkolivegreen", 0x556B2F},
    NamedColour{"darkorange", 0xFF8C00},
    NamedColour{"darkorchid", 0x9932CC},
    NamedColour{"darkred", 0x8B0000},
    NamedColour{"darksalmon", 0xE9967A},
    NamedColour{"darkseagreen", 0x8FBC8F},
    NamedColour{"darkslateblue", 0x483D8B},
    NamedColour{"darkslategray", 0x2F4F4F},
    NamedColour{"darkslategrey", 0x2F4F4F},
    NamedColour{"darkturquoise", 0x00CED1},
    NamedColour{"darkviolet", 0x9400D3},
    NamedColour{"deeppink", 0xFF1493},
    NamedColour{"deepskyblue", 0x00BFFF},
    NamedColour{"dimgray", 0x696969},
    NamedColour{"dimgrey", 0x696969},
    NamedColour{"dodgerblue", 0x1E90FF},
    NamedColour{"firebrick", 0xB22222},
    NamedColour{"floralwhite", 0xFFFAF0},
    NamedColour{"forestgreen", 0x228B22},
    NamedColour{"fuchsia", 0xFF00FF},
    NamedColour{"gainsboro", 0xDCDCDC},
    NamedColour{"ghostwhite", 0xF8F8FF},
    NamedColour{"gold", 0xFFD700},
    NamedColour{"goldenrod", 0xDAA520},
    NamedColour{"gray", 0x808080},
    NamedColour{"green", 0x008000},
    NamedColour{"greenyellow", 0xADFF2F},
    NamedColour{"grey", 0x808080},
    NamedColour{"honeydew", 0xF0FFF0},
    NamedColour{"hotpink", 0xFF69B4},
    NamedColour{"indianred", 0xCD5C5C},
    NamedColour{"indigo", 0x4B0082},
    NamedColour{"ivory", 0xFFFFF0},
    NamedColour{"khaki", 0xF0E68C},
    NamedColour{"lavender", 0xE6E6FA},
    NamedColour{"lavenderblush", 0xFFF0F5},
    NamedColour{"lawngreen", 0x7CFC00},
    NamedColour{"lemonchiffon", 0xFFFACD},
    NamedColour{"lightblue", 0xADD8E6},
    NamedColour{"lightcoral", 0xF08080},
    NamedColour{"lightcyan", 0xE0FFFF},
    NamedColour{"lightgoldenrodyellow", 0xFAFAD2},
    NamedColour{"lightgray", 0xD3D3D3},
    NamedColour{"lightgreen", 0x90EE90},
    NamedColour{"lightgrey", 0xD3D3D3},
    NamedColour{"lightpink", 0xFFB6C1},
    NamedColour{"lightsalmon", 0xFFA07A},
    NamedColour{"lightseagreen", 0x20B2AA},
    NamedColour{"lightskyblue", 0x87CEFA},
    NamedColour{"lightslategray", 0x778899},
    NamedColour{"lightslategrey", 0x778899},
    NamedColour{"lightsteelblue", 0xB0C4DE},
    NamedColour{"lightyellow", 0xFFFFE0},
    NamedColour{"lime", 0x00FF00},
    NamedColour{"limegreen", 0x32CD32},
    NamedColour{"linen", 0xFAF0E6},
    NamedColour{"magenta", 0xFF00FF},
    NamedColour{"maroon", 0x800000},
    NamedColour{"mediumaquamarine", 0x66CDAA},
    NamedColour{"mediumblue", 0x0000CD},
    NamedColour{"mediumorchid", 0xBA55D3},
    NamedColour{"mediumpurple", 0x9370DB},
    NamedColour{"mediumseagreen", 0x3CB371},
    NamedColour{"mediumslateblue", 0x7B68EE},
    NamedColour{"mediumspringgreen", 0x00FA9A},
    NamedColour{"mediumturquoise", 0x48D1CC},
    NamedColour{"mediumvioletred", 0xC71585},
    NamedColour{"midnightblue", 0x191970},
    NamedColour{"mintcream", 0xF5FFFA},
    NamedColour{"mistyrose", 0xFFE4E1},
    NamedColour{"moccasin", 0xFFE4B5},
    NamedColour{"navajowhite", 0xFFDEAD},
    NamedColour{"navy", 0x000080},
    NamedColour{"oldlace", 0xFDF5E6},
    NamedColour{"olive", 0x808000},
    NamedColour{"olivedrab", 0x6B8E23},
    NamedColour{"orange", 0xFFA500},
    NamedColour{"orangered", 0xFF4500},
    NamedColour{"orchid", 0xDA70D6},
    NamedColour{"palegoldenrod", 0xEEE8AA},
    NamedColour{"palegreen", 0x98FB98},
    NamedColour{"paleturquoise", 0xAFEEEE},
    NamedColour{"palevioletred", 0xDB7093},
    NamedColour{"papayawhip", 0xFFEFD5},
    NamedColour{"peachpuff", 0xFFDAB9},
    NamedColour{"peru", 0xCD853F},
    NamedColour{"pink", 0xFFC0CB},
    NamedColour{"plum", 0xDDA0DD},
    NamedColour{"powderblue", 0xB0E0E6},
    NamedColour{"purple", 0x800080},
    NamedColour{"rebeccapurple", 0x663399},
    NamedColour{"red", 0xFF0000},
    NamedColour{"rosybrown", 0xBC8F8F},
    NamedColour{"royalblue", 0x4169E1},
    NamedColour{"saddlebrown", 0x8B4513},
    NamedColour{"salmon", 0xFA8072},
    NamedColour{"sandybrown", 0xF4A460},
    NamedColour{"seagreen", 0x2E8B57},
    NamedColour{"seashell", 0xFFF5EE},
    NamedColour{"sienna", 0xA0522D},
    NamedColour{"silver", 0xC0C0C0},
    NamedColour{"skyblue", 0x87CEEB},
    NamedColour{"slateblue", 0x6A5ACD},
    NamedColour{"slategray", 0x708090},
    NamedColour{"slategrey", 0x708090},
    NamedColour{"snow", 0xFFFAFA},
    NamedColour{"springgreen", 0x00FF7F},
    NamedColour{"steelblue", 0x4682B4},
    NamedColour{"tan", 0xD2B48C},
    NamedColour{"teal", 0x008080},
    NamedColour{"thistle", 0xD8BFD8},
    NamedColour{"tomato", 0xFF6347},
    NamedColour{"turquoise", 0x40E0D0},
    NamedColour{"violet", 0xEE82EE},
    NamedColour{"wheat", 0xF5DEB3},
    NamedColour{"white", 0xFFFFFF},
    NamedColour{"whitesmoke", 0xF5F5F5},
    NamedColour{"yellow", 0xFFFF00},
    NamedColour{"yellowgreen", 0x9ACD32},
};
static_assert(std::ranges::is_sorted(namedColours, {}, &NamedColour::name));

std::optional<std::uint32_t> colourFromDigits(std::string_view digits) {
    std::string wide(digits);
    if (digits.size() == 3) wide = {digits[0], digits[0], digits[1], digits[1], digits[2], digits[2]};
    if (wide.size() != 6 && wide.size() != 8) return std::nullopt;
    std::uint32_t value = 0;
    const char* end = wide.data() + wide.size();
    const auto [stopped, error] = std::from_chars(wide.data(), end, value, 16);
    if (error != std::errc() || stopped != end) return std::nullopt;
    return wide.size() == 8 ? value >> 8 : value;
}

}  // namespace

std::optional<std::uint32_t> colourFromText(std::string_view text) {
    text = platform::withoutOuterBlanks(text);
    if (text.starts_with('#')) return colourFromDigits(text.substr(1));
    std::string name(text);
    std::ranges::transform(name, name.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    const auto found = std::ranges::lower_bound(namedColours, name, {}, &NamedColour::name);
    if (found == namedColours.end() || found->name != name) return std::nullopt;
    return found->colour;
}

}  // namespace device
