#pragma once

#include <cstdint>
#include <string_view>

namespace ravikit {

/// The character classes of XML 1.0, fifth edition.
constexpr bool isBlank(char32_t c) {
    constexpr std::uint64_t blanks = 1ULL << 0x20 | 1ULL << 0x9 | 1ULL << 0xA | 1ULL << 0xD;
    return c <= 0x20 && (blanks >> c & 1) != 0;
}

constexpr bool isChar(char32_t c) {
    return (c >= 0x20 && c <= 0xD7FF) || c == 0x9 || c == 0xA || c == 0xD ||
           (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

constexpr bool isNameStart(char32_t c) {
    if (c < 0x80) {
        return ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') || c == '_' || c == ':';
    }
    return (c >= 0xC0 && c <= 0x2FF && c != 0xD7 && c != 0xF7) ||
           (c >= 0x370 && c <= 0x1FFF && c != 0x37E) || (c >= 0x200C && c <= 0x200D) ||
           (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
           (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) ||
           (c >= 0xFDF0 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0xEFFFF);
}

constexpr bool isNameChar(char32_t c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == 0xB7 ||
           (c >= 0x300 && c <= 0x36F) || (c >= 0x203F && c <= 0x2040);
}

/// The code point at `at`, which a pair of surrogates makes from two units; a lone surrogate comes
/// back as itself, which is no Char.
constexpr char32_t codePointAt(std::u16string_view text, std::size_t at) {
    const char32_t high = text[at];
    if (high >= 0xD800 && high <= 0xDBFF && at + 1 < text.size()) {
        const char32_t low = text[at + 1];
        if (low >= 0xDC00 && low <= 0xDFFF) {
            return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return high;
}

/// How many units `c` takes.
constexpr std::uint32_t unitsOf(char32_t c) {
    return c >= 0x10000 ? 2 : 1;
}

/// Whether the whole of `text` is a Name.
constexpr bool isName(std::u16string_view text) {
    if (text.empty() || !isNameStart(codePointAt(text, 0))) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); i += unitsOf(codePointAt(text, i))) {
        if (!isNameChar(codePointAt(text, i))) {
            return false;
        }
    }
    return true;
}

} // namespace ravikit
