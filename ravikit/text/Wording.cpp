#include "ravikit/text/Wording.h"

#include "ravikit/text/Chars.h"

namespace ravikit {

std::u16string quoted(std::u16string_view text) {
    constexpr std::size_t longest = 40;
    std::u16string out = u"`";
    std::size_t i = 0;
    while (i < text.size() && i < longest) {
        const char32_t c = codePointAt(text, i);
        if (c < 0x20 && isBlank(c)) {
            out += u' ';
        } else if (isChar(c)) {
            out += text.substr(i, unitsOf(c));
        } else {
            out += u'?';
        }
        i += unitsOf(c);
    }
    if (i < text.size()) {
        out += u"...";
    }
    return out + u"`";
}

std::u16string quotedEndTag(std::u16string_view name) {
    return quoted(u"</" + std::u16string(name) + u">");
}

std::u16string decimal(std::uint32_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::u16string codePointName(char32_t c) {
    std::u16string digits;
    for (int shift = 20; shift >= 0; shift -= 4) {
        const char32_t digit = (c >> shift) & 0xF;
        if (digit != 0 || !digits.empty() || shift < 16) {
            digits.push_back(u"0123456789ABCDEF"[digit]);
        }
    }
    return u"U+" + digits;
}

std::u16string byteName(unsigned char byte) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    return {u'0', u'x', digits[byte >> 4], digits[byte & 0xF]};
}

} // namespace ravikit
