#pragma once

#include <cstdint>
#include <string_view>

namespace ravikit {

/// 1 for left, 2 for center, 3 for right, in any case of letters; 0 for anything else.
std::uint32_t alignCode(std::u16string_view value);
std::u16string_view alignName(std::uint32_t code);

/// What the attributes of an element of the page do to its text, as far as WML can say it.
enum Effect : std::uint32_t {
    Plain = 0,
    AlignBits = 3, ///< an alignCode
    Bold = 4,
    Italic = 8,
    Underlined = 16,
    Larger = 32,
    Smaller = 64,
    NormalSize = 128, ///< of what is around it `big` and `small` don't count, and so on
    NormalWeight = 256,
    NormalSlant = 512,
    AllNormal = NormalSize | NormalWeight | NormalSlant,
};

/// Of the value of a `style` attribute.
std::uint32_t styleEffects(std::u16string_view css);

/// Of the value of the `size` attribute of a FONT: 1 to 7, or a step as +1 or -1.
std::uint32_t fontSizeEffect(std::u16string_view size);

/// Whether the texts agree but for the case of ASCII letters; `lower` is in small ones.
bool sameWordInAnyCase(std::u16string_view text, std::u16string_view lower);
inline bool sameWord(std::u16string_view text, std::u16string_view lower) {
    return text.size() == lower.size() && (text == lower || sameWordInAnyCase(text, lower));
}

/// `text` without blanks at its ends.
std::u16string_view trimmed(std::u16string_view text);

} // namespace ravikit
